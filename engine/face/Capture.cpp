#include "engine/face/WithStream.h"
#include "engine/present/fisheye/WarpedPicture.h"
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

// Of a view it is what the view shows.
Failure save(int id, const Stream& stream, PictureFile kind, const char* path)
{
    const tide::PicturePtr picture = stream.current();
    if (!picture)
        return Failure::NoPicture;
    const auto views = Engine::instance().findViews(stream.id(), id);
    const auto shown = views ? views->shown(id) : std::nullopt;
    if (!shown)
        return saveSnapshot(*picture->frame, kind, path);
    const tide::FramePtr frame = tide::warpedPicture(*picture->frame, shown->first, shown->second);
    return frame ? saveSnapshot(*frame, kind, path) : Failure::NoPicture;
}

int capture(int id, PictureFile kind, const char* path)
{
    if (!isPath(path))
        return fail(Failure::BadArgument);
    return withStream(id, [&](const Stream& stream) { return save(id, stream, kind, path); });
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

int TP_FEC_CapturePIC(int isBmp, int playId, int viewId, const char* path)
{
    if (!Engine::instance().findViews(playId, viewId))
        return fail(Failure::NoSuchId);
    return capture(viewId, isBmp != 0 ? PictureFile::Bmp : PictureFile::Jpeg, path);
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
    return answer(Engine::instance().recordings().stop(Engine::instance().streamOf(playId)));
}

int TP_SwitchFile(int playId, const char* path)
{
    Engine& engine = Engine::instance();
    return isPath(path) ? answer(engine.recordings().switchFile(engine.streamOf(playId), path))
                        : fail(Failure::BadArgument);
}

// The host compares signed 32-bit numbers; sizes beyond them are "more than any limit".
int TP_GetRecordFileSize(int playId)
{
    Engine& engine = Engine::instance();
    const auto size = engine.recordings().size(engine.streamOf(playId));
    return size ? static_cast<int>(std::min<std::int64_t>(*size, INT_MAX)) : fail(Failure::WrongState);
}
