#include "src/player/Requests.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"
#include "src/player/IFisheyeModule.h"
#include "src/player/Player.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {

namespace {

std::pair<std::shared_ptr<ErrorBase>, QWidget*> foundOr(QWidget* window, const QString& notFound)
{
    if (window)
        return {nullptr, window};
    return {std::make_shared<ReferenceError>(notFound, LUMEN_HERE), nullptr};
}

} // namespace

std::pair<std::shared_ptr<ErrorBase>, QWidget*> getRequiredWidget(QWidget* mainWindow, const QJsonObject& object)
{
    const IFisheyeModule* fisheye = findFisheyeModule(mainWindow);
    if (fisheye && fisheye->getCorrectionType() == 1)
        return foundOr(fisheye->getSoftwarePlayRealWindow(), "get fisheye realWindow error");
    const auto [error, reference] = parseReference<QVariant>(object, "wndIndex");
    if (error)
        return {error, nullptr};
    return foundOr(Layout(mainWindow).getPlayWindow(reference), "play_window reference can not be found");
}

bool isPlaying(QWidget* mainWindow, int index)
{
    const QWidget* window = Layout(mainWindow).getPlayWindow(index);
    const auto* player = window ? window->findChild<Player*>() : nullptr;
    return player && player->playing();
}

std::shared_ptr<TidePipeError> constructTidePipeError(const QString& what, int returned, int line)
{
    const QString message = QStringLiteral("%1, TidePipe Call returns %2, TP_GetLastError() returns %3")
                                .arg(what, QString::number(returned), QString::number(TP_GetLastError()));
    return std::make_shared<TidePipeError>(message, "src/player/Player", line, static_cast<int>(TP_GetLastError()));
}

namespace detail {

Target requireWindow(QWidget* mainWindow, const QJsonDocument& request, const QString& notAnObject)
{
    if (!request.isObject())
        return {constructJsonError(notAnObject, request, LUMEN_HERE)};
    const auto [error, window] = getRequiredWidget(mainWindow, request.object());
    return {error, window};
}

Target requirePlaying(QWidget* mainWindow, const QJsonDocument& request, const QString& notAnObject,
                      const QString& notPlaying)
{
    Target target = requireWindow(mainWindow, request, notAnObject);
    if (target.error)
        return target;
    target.player = childOf<Player>(target.window);
    if (!target.player || !target.player->playing())
        target.error = std::make_shared<InvalidStatusError>(notPlaying, LUMEN_HERE);
    return target;
}

} // namespace detail

} // namespace quillmark::lumen_deck
