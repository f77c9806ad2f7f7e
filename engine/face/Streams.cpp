#include "engine/face/WithStream.h"
#include "include/tide_pipe/tide_pipe.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

using tide::Engine;
using tide::fail;
using tide::Failure;
using tide::Stream;
using tide::withStream;

namespace {

constexpr int kMaxBufferFrames = 50;
constexpr int kCaptureFlag = -1; // the part of an overlay that says whether snapshots show it

std::string textOf(const char* text)
{
    return text ? text : "";
}

int play(tide::StreamOptions options)
{
    int playId = -1;
    const Failure failure = Engine::instance().play(std::move(options), playId);
    return failure == Failure::None ? playId : fail(failure);
}

bool isInside(const _TP_REGION& region, const tide::PictureSize& size)
{
    return region.left >= 0 && region.top >= 0 && region.left < region.right && region.top < region.bottom &&
           region.right <= size.width && region.bottom <= size.height;
}

Failure setRegion(int id, std::optional<tide::Region> region)
{
    return Engine::instance().presenter().setRegion(id, region) ? Failure::None : Failure::NoSuchId;
}

Failure setRegion(int id, const Stream& stream, const _TP_REGION* region, TP_WId window, int enable)
{
    if (window != 0 && window != Engine::instance().windowOf(id))
        return Failure::NoWindow;
    if (!region || enable == 0)
        return setRegion(id, std::nullopt);
    const auto size = stream.pictureSize();
    if (!size)
        return Failure::NoPicture;
    if (!isInside(*region, *size))
        return Failure::BadArgument;
    return setRegion(id, tide::Region{region->left, region->top, region->right, region->bottom});
}

Failure setHook(int id, TP_DrawFun function, void* user)
{
    tide::DrawHook hook;
    if (function)
        hook = [id, function, user](void* drawContext) { function(id, drawContext, user); };
    return Engine::instance().presenter().setHook(id, std::move(hook)) ? Failure::None : Failure::NoSuchId;
}

// The flag is a byte that a host has filled in; any other value than 0 counts.
std::optional<tide::EagleEyeOptions> eagleEyeOf(const void* block)
{
    _TP_EAGLEEYEPARAM param{};
    unsigned char flag = 0;
    if (block) {
        std::memcpy(&flag, block, 1);
        std::memcpy(&param.expandType, static_cast<const char*>(block) + offsetof(_TP_EAGLEEYEPARAM, expandType),
                    sizeof(param.expandType));
    }
    return flag != 0 ? std::optional(tide::EagleEyeOptions{param.expandType == 1}) : std::nullopt;
}

} // namespace

int TP_SetDisplayBuf(int frames)
{
    Engine::instance().setDisplayBuffer(std::clamp(frames, 1, kMaxBufferFrames));
    return 0;
}

// What a transcoding server is asked for stands in the url; playGroup has no meaning for streams that play each by
// itself.
int TP_Play(const char* url, const char* auth, int protocol, TP_WId window, const char* startTime, const char* stopTime,
            int correctionType, const void*, const void* eagleEye, int)
{
    tide::StreamOptions options;
    options.url = textOf(url);
    options.auth = textOf(auth);
    options.protocol = protocol;
    options.window = window;
    options.startTime = textOf(startTime);
    options.stopTime = textOf(stopTime);
    options.correctionType = correctionType;
    options.eagleEye = eagleEyeOf(eagleEye);
    return play(std::move(options));
}

int TP_ReversePlay(const char* url, const char* auth, int, TP_WId window, const char* startTime, const char* stopTime)
{
    tide::StreamOptions options;
    options.url = textOf(url);
    options.auth = textOf(auth);
    options.window = window;
    options.startTime = textOf(startTime);
    options.stopTime = textOf(stopTime);
    options.direction = tide::Direction::Backward;
    return play(std::move(options));
}

int TP_Stop(int playId)
{
    return Engine::instance().stop(playId) ? 0 : fail(Failure::NoSuchId);
}

int TP_Pause(int playId)
{
    return withStream(playId, [](Stream& stream) { return stream.pause(); });
}

int TP_Resume(int playId)
{
    return withStream(playId, [](Stream& stream) { return stream.resume(); });
}

int TP_Fast(int playId)
{
    return withStream(playId, [](Stream& stream) { return stream.fast(); });
}

int TP_Slow(int playId)
{
    return withStream(playId, [](Stream& stream) { return stream.slow(); });
}

int TP_FrameForward(int playId)
{
    return withStream(playId, [](Stream& stream) { return stream.frameForward(); });
}

float TP_GetScale(int playId)
{
    const auto stream = Engine::instance().findStream(playId);
    if (stream)
        return stream->scale();
    fail(Failure::NoSuchId);
    return 0.0F;
}

int TP_GetPictureSize(int playId, int* width, int* height)
{
    if (!width || !height)
        return fail(Failure::BadArgument);
    return withStream(playId, [&](const Stream& stream) {
        const auto size = stream.pictureSize();
        if (!size)
            return Failure::NoPicture;
        *width = size->width;
        *height = size->height;
        return Failure::None;
    });
}

int TP_SetReconnectInfo(int playId, const char* auth)
{
    return withStream(playId, [&](Stream& stream) { return stream.setReconnectAuth(textOf(auth)); });
}

int TP_SetDisplayRegion(int playId, int, const _TP_REGION* region, TP_WId window, int enable)
{
    return withStream(playId, [&](const Stream& stream) { return setRegion(playId, stream, region, window, enable); });
}

int TP_RigisterDrawFun(int playId, TP_DrawFun fn, void* user)
{
    return withStream(playId, [&](const Stream&) { return setHook(playId, fn, user); });
}

int TP_EnableIVS(int playId, int selector, int enable)
{
    return TP_RenderPrivateDataEx(playId, selector, 0, enable);
}

int TP_RenderPrivateDataEx(int playId, int selector, int part, int enable)
{
    return withStream(playId, [&](Stream& stream) { return stream.setOverlay(selector, part, enable); });
}

int TP_SetOverlayPriInfoFlag(int playId, int selector, int enable)
{
    return TP_RenderPrivateDataEx(playId, selector, kCaptureFlag, enable);
}

int TP_RegAdditionFun(int playId, int type, TP_AdditionFun fn, void* user)
{
    return withStream(playId, [&](Stream& stream) {
        stream.setAddition(type, fn, user);
        return Failure::None;
    });
}
