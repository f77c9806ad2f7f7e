#include "src/player/StreamSettings.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/LayoutDetail.h"
#include "src/player/PlayParam.h"
#include "src/player/Player.h"
#include "src/player/Requests.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {

std::shared_ptr<ErrorBase> setHttps(QWidget* mainWindow, const QJsonDocument& request)
{
    if (!request.isObject())
        return constructJsonError("set https enable json descriptor should be object", request, LUMEN_HERE);
    const auto [error, https] = parseRequired<bool>(request.object(), "https");
    if (error)
        return error;
    for (IPlayWindow* window : mainWindow->findChildren<IPlayWindow*>())
        detail::useChildOf<Player>(window)->setHttps(https.toBool());
    return nullptr;
}

std::shared_ptr<ErrorBase> setReconnectInfo(QWidget* mainWindow, const QJsonDocument& request)
{
    const detail::Target target =
        detail::requireWindow(mainWindow, request, "set reconnectinfo json descriptor should be object");
    if (target.error)
        return target.error;
    const auto [error, auth] = parseRequired<QString>(request.object(), "auth");
    if (error)
        return error;
    const auto* player = detail::childOf<Player>(target.window);
    if (!player)
        return std::make_shared<InvalidStatusError>("the player is not playing can not set reconnect info", LUMEN_HERE);
    TP_SetReconnectInfo(player->playId(), auth.toString().toLocal8Bit().constData());
    return nullptr;
}

std::shared_ptr<ErrorBase> setTrsPlayBackParam(QWidget* mainWindow, const QJsonDocument& request)
{
    const detail::Target target = detail::requireWindow(
        mainWindow, request, "set transcoding playback param json descriptor should be an object");
    if (target.error)
        return target.error;
    return detail::useChildOf<PlayParam>(target.window)->setTransParam(request.object().value("params").toObject());
}

} // namespace quillmark::lumen_deck
