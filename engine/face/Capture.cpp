#include "engine/face/WithStream.h"
#include "engine/record/Snapshot.h"
#include "include/tide_pipe/tide_pipe.h"

#include <algorithm>
#include <climits>
#include <ctime>

using tide::answer;
using tide::Engine;
using tide::fail;
using tide::Failure;
using tide::PictureFile;
using tide::Stream;
using tide::withStream;

namespace {

bool isPath(const char* path)
{
    return path && *path;
}

int capture(int playId, PictureFile kind, const char* path)
{
    if (!isPath(path))
        return fail(Failure::BadArgument);
    return withStream(playId, [&](const Stream& stream) {
        const tide::PicturePtr picture = stream.current();
        return picture ? saveSnapshot(*picture->frame, kind, path) : Failure::NoPicture;
    });
}

_TP_OSDTIME toLocal(std::chrono::system_clock::time_point time)
{
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local{};
    localtime_r(&seconds, &local);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

} // namespace

int TP_JPEGCapture(int playId, const char* path)
{
    return capture(playId, PictureFile::Jpeg, path);
}

int TP_BMPCapture(int playId, const char* path)
{
    return capture(playId, PictureFile::Bmp, path);
}

int TP_GetOSDTime(int playId, _TP_OSDTIME* time)
{
    if (!time)
        return fail(Failure::BadArgument);
    return withStream(playId, [&](const Stream& stream) {
        const auto now = stream.pictureTime();
        if (!now)
            return Failure::NoPicture;
        *time = toLocal(*now);
        return Failure::None;
    });
}

// The container is MP4 whatever the package type.
int TP_StartSave(int playId, const char* path, int)
{
    if (!isPath(path))
        return fail(Failure::BadArgument);
    return answer(Engine::instance().record(playId, path));
}

int TP_StopSave(int playId)
{
    return answer(Engine::instance().recordings().stop(playId));
}

int TP_SwitchFile(int playId, const char* path)
{
    return isPath(path) ? answer(Engine::instance().recordings().switchFile(playId, path)) : fail(Failure::BadArgument);
}

// The host compares signed 32-bit numbers; sizes beyond them are "more than any limit".
int TP_GetRecordFileSize(int playId)
{
    const auto size = Engine::instance().recordings().size(playId);
    return size ? static_cast<int>(std::min<std::int64_t>(*size, INT_MAX)) : fail(Failure::WrongState);
}
