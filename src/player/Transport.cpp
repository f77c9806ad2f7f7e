#include "src/player/Transport.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"
#include "src/player/IEagleEyeModule.h"
#include "src/player/IFisheyeModule.h"
#include "src/player/Player.h"
#include "src/player/Requests.h"
#include "src/util/JsonUtil.h"

#include <QDebug>

namespace quillmark::lumen_deck {

namespace {

// An operation that is one engine call on a playing window.
struct Operation
{
    const char* notAnObject;
    const char* notPlaying;
    int (*call)(int playId);
    const char* refused;
    bool (Player::*after)(); // null when the status stays
};

constexpr Operation pausing = {"pause json descriptor should a json object",
                               "the player is not playing, can not pause.", TP_Pause, "call tide_pipe TP_Pause error",
                               &Player::pause};
constexpr Operation resuming = {"resume json descriptor should be an object",
                                "the window is not playing, can not resume", TP_Resume,
                                "call tide_pipe TP_Resume error", &Player::resume};
constexpr Operation speedingUp = {"fast json descriptor should be an object", "the player is not playing, can not fast",
                                  TP_Fast, "call tide_pipe TP_Fast error", nullptr};
constexpr Operation slowingDown = {"slow json descriptor should be a json object",
                                   "the player is not playing, can not slow", TP_Slow, "call tide_pipe TP_Slow error",
                                   nullptr};
constexpr Operation stepping = {"FrameForward json descriptor should be a json object",
                                "the window is not playing, can not frame forward", TP_FrameForward,
                                "call tide_pipe TP_FrameForward error", &Player::frameForward};

detail::Target targetOf(const Operation& operation, QWidget* mainWindow, const QJsonDocument& request)
{
    return detail::requirePlaying(mainWindow, request, operation.notAnObject, operation.notPlaying);
}

std::shared_ptr<ErrorBase> run(const Operation& operation, const detail::Target& target)
{
    if (target.error)
        return target.error;
    if (operation.call(target.player->playId()) == -1)
        return constructTidePipeError(operation.refused, -1, __LINE__);
    if (operation.after)
        (target.player->*operation.after)();
    return nullptr;
}

std::shared_ptr<ErrorBase> run(const Operation& operation, QWidget* mainWindow, const QJsonDocument& request)
{
    return run(operation, targetOf(operation, mainWindow, request));
}

// The stream's end ends its recording too, so a refused end of the recording holds nothing up.
void endRecording(Player& player)
{
    if (!player.saving())
        return;
    if (TP_StopSave(player.playId()) != 0)
        qWarning("a recording did not end in order, last error %u", TP_GetLastError());
    player.setSaving(false);
}

void stopWindow(IPlayWindow* window)
{
    if (auto* player = detail::childOf<Player>(window)) {
        if (player->saving() && TP_StopSave(player->playId()) >= 0)
            player->setSaving(false);
        if (player->playing() && TP_Stop(player->playId()) >= 0)
            player->stop();
    }
    delete detail::childOf<IEagleEyeModule>(window);
    window->repaint();
}

} // namespace

// A window that is paused already stays so without a word to the engine.
std::shared_ptr<ErrorBase> pause(QWidget* mainWindow, const QJsonDocument& request)
{
    const detail::Target target = targetOf(pausing, mainWindow, request);
    if (!target.error && target.player->playStatus() == Player::Paused)
        return nullptr;
    return run(pausing, target);
}

std::shared_ptr<ErrorBase> resume(QWidget* mainWindow, const QJsonDocument& request)
{
    return run(resuming, mainWindow, request);
}

std::shared_ptr<ErrorBase> fast(QWidget* mainWindow, const QJsonDocument& request)
{
    return run(speedingUp, mainWindow, request);
}

std::shared_ptr<ErrorBase> slow(QWidget* mainWindow, const QJsonDocument& request)
{
    return run(slowingDown, mainWindow, request);
}

std::shared_ptr<ErrorBase> frameForward(QWidget* mainWindow, const QJsonDocument& request)
{
    return run(stepping, mainWindow, request);
}

std::shared_ptr<ErrorBase> stop(QWidget* mainWindow, const QJsonDocument& request)
{
    const detail::Target target =
        detail::requireWindow(mainWindow, request, "stop json descriptor should be a json object");
    if (target.error)
        return target.error;
    auto* player = detail::childOf<Player>(target.window);
    if (!player || !player->playing())
        return nullptr;
    endRecording(*player);
    if (TP_Stop(player->playId()) == -1)
        return constructTidePipeError("call tide_pipe TP_Stop error", -1, __LINE__);
    player->stop();
    delete detail::childOf<IEagleEyeModule>(target.window);
    if (IFisheyeModule* fisheye = findFisheyeModule(mainWindow))
        fisheye->resetParam(toInt(parseRequired<QVariant>(request.object(), "wndIndex").second));
    target.window->repaint();
    return nullptr;
}

void stopAll(QWidget* mainWindow)
{
    for (IPlayWindow* window : mainWindow->findChildren<IPlayWindow*>())
        stopWindow(window);
    for (IPlayWindow* window : Layout(mainWindow).getAllPlayWindow())
        stopWindow(window);
    delete findFisheyeModule(mainWindow);
}

std::pair<std::shared_ptr<ErrorBase>, QJsonDocument> queryPlayStatus(QWidget* mainWindow, const QJsonDocument& request)
{
    const detail::Target target =
        detail::requireWindow(mainWindow, request, "query play status json descriptor should be json object");
    if (target.error)
        return {target.error, {}};
    const auto* player = detail::childOf<Player>(target.window);
    int width = 0;
    int height = 0;
    if (!player || TP_GetPictureSize(player->playId(), &width, &height) < 0)
        return {};
    const QJsonObject size{{"width", width}, {"height", height}};
    return {nullptr, QJsonDocument(QJsonObject{{"playInfo", QJsonObject{{"pictureSize", size}}}})};
}

} // namespace quillmark::lumen_deck
