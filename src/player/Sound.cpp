#include "src/player/Sound.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/player/Player.h"
#include "src/player/Requests.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {

namespace {

// Percent to the engine's 16 bits; what does not fit wraps.
std::uint16_t engineVolume(int percent)
{
    return static_cast<std::uint16_t>(static_cast<std::int64_t>(percent / 100.0 * 65535.0) & 0xFFFF);
}

} // namespace

std::shared_ptr<ErrorBase> openSound(QWidget* mainWindow, const QJsonDocument& request)
{
    const detail::Target target =
        detail::requirePlaying(mainWindow, request, "open sound json descriptor should be json object",
                               "the player is not playing, can not open sound");
    if (target.error)
        return target.error;
    if (TP_OpenSound(target.player->playId()) == -1)
        return constructTidePipeError("TP_OpenSound call failed", -1, __LINE__);
    return nullptr;
}

std::shared_ptr<ErrorBase> setVolume(QWidget* mainWindow, const QJsonDocument& request)
{
    const detail::Target target =
        detail::requirePlaying(mainWindow, request, "set volume json descriptor should be json object",
                               "the player is not playing can not set volume");
    if (target.error)
        return target.error;
    const auto [error, volume] = parseRequired<QVariant>(request.object(), "volume");
    if (error)
        return error;
    if (TP_SetVolume(target.player->playId(), engineVolume(toInt(volume))) == -1)
        return constructTidePipeError("TP_SetVolume call failed", -1, __LINE__);
    return nullptr;
}

std::shared_ptr<ErrorBase> closeSound()
{
    TP_CloseSound();
    return nullptr;
}

} // namespace quillmark::lumen_deck
