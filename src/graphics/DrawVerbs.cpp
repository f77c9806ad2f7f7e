#include "src/graphics/DrawVerbs.h"

#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"
#include "src/graphics/GraphicsLine.h"
#include "src/graphics/GraphicsView.h"
#include "src/graphics/PeopleCount.h"
#include "src/graphics/ShapeTable.h"
#include "src/graphics/ToolTable.h"
#include "src/player/IPlayer.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {
namespace {

using detail::GraphicsView;
using Shape = GraphicsView::Shape;

GraphicsView* viewOf(const QWidget* window)
{
    return window ? window->findChild<GraphicsView*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

GraphicsView* selectedView(QWidget* mainWindow)
{
    return viewOf(Layout(mainWindow).getSelectedPlayWindow());
}

// A document that names no window, or none that there is, means the selected one.
GraphicsView* requiredView(QWidget* mainWindow, const QJsonObject& object)
{
    const QVariant reference = parseReference<QVariant>(object, "wndIndex").second; // null when it is none
    const QWidget* const window = Layout(mainWindow).getPlayWindow(reference);
    return window ? viewOf(window) : selectedView(mainWindow);
}

std::shared_ptr<ErrorBase> noView(const QString& message)
{
    return std::make_shared<InvalidStatusError>(message, LUMEN_HERE);
}

// A counting line hears of what the stream counts, from the moment it is added to a window that plays.
void listenToPeopleCount(const GraphicsView& view, GraphicsLine& line)
{
    const auto* const player = view.window()->findChild<IPlayer*>(QString(), Qt::FindDirectChildrenOnly);
    if (line.showPDCLine && line.cutOffMode != 0 && player && player->playing())
        registerPeopleCount(player->playId(), line);
}

// A shape under the id of the running tool ends that tool.
void endToolOf(GraphicsView& view, const GraphicsBase& shape, ToolBase::ToolType type)
{
    if (view.current_tool_ && view.current_tool_->type() == type && view.current_tool_->id == shape.id)
        view.current_tool_.reset();
}

void prepare(GraphicsView& view, GraphicsBase& shape)
{
    switch (shape.type()) {
    case GraphicsBase::Line:
        listenToPeopleCount(view, static_cast<GraphicsLine&>(shape));
        break;
    case GraphicsBase::Rectangle:
        endToolOf(view, shape, ToolBase::Rectangle);
        break;
    case GraphicsBase::Polygon:
        endToolOf(view, shape, ToolBase::Polygon);
        break;
    default:
        break;
    }
}

} // namespace

std::shared_ptr<ErrorBase> setTool(QWidget* mainWindow, const QJsonObject& object, ToolBase::ToolType type)
{
    GraphicsView* const view = selectedView(mainWindow);
    if (!view)
        return nullptr;
    const auto [error, tool] = parseTool(object, type);
    if (!error)
        view->setTool(tool);
    return error;
}

std::shared_ptr<ErrorBase> addGraphics(QWidget* mainWindow, const QJsonObject& object, GraphicsBase::GraphicsType type)
{
    GraphicsView* const view = requiredView(mainWindow, object);
    if (!view)
        return noView("can not find graphics view of target widget");
    const auto [error, shape] = shapeRow(type).parse(object);
    if (error || !shape)
        return error;
    prepare(*view, *shape);
    shape->creating = false;
    view->addGraphics(shape);
    return nullptr;
}

std::shared_ptr<ErrorBase> setDrawStatus(QWidget* mainWindow, const QJsonObject& object)
{
    GraphicsView* const view = requiredView(mainWindow, object);
    if (!view)
        return nullptr;
    const auto [error, enable] = parseRequired<bool>(object, "enable");
    if (error)
        return error;
    if (enable.toBool())
        view->enableDraw();
    else
        view->disableDraw();
    return nullptr;
}

std::shared_ptr<ErrorBase> setDrawCallback(QWidget* mainWindow, const QJsonObject& object)
{
    GraphicsView* const view = requiredView(mainWindow, object);
    if (!view)
        return noView("can not find graphics view");
    const auto [error, enable] = parseRequired<bool>(object, "enable");
    if (error)
        return error;
    if (!enable.toBool()) {
        view->disableDraw();
        view->setTool(nullptr);
        return nullptr;
    }
    const auto [toolError, tool] = parseCallbackTool(object);
    if (toolError)
        return toolError;
    view->enableDraw();
    view->setTool(tool);
    return nullptr;
}

std::pair<std::shared_ptr<ErrorBase>, std::shared_ptr<QJsonArray>> queryGraphics(QWidget* mainWindow,
                                                                                 GraphicsBase::GraphicsType type)
{
    const GraphicsView* const view = selectedView(mainWindow);
    if (!view)
        return {noView("internal error can not find graphics view"), nullptr};
    auto documents = std::make_shared<QJsonArray>();
    for (const Shape& shape : view->getGraphics(type)) {
        const auto lock = view->lockShapes();
        documents->append(shape->toJson());
    }
    return {nullptr, documents};
}

std::shared_ptr<ErrorBase> clearGraphics(QWidget* mainWindow, GraphicsBase::GraphicsType type)
{
    if (GraphicsView* const view = selectedView(mainWindow))
        view->clearGraphics(type);
    return nullptr;
}

std::shared_ptr<ErrorBase> clearGraphics(QWidget* mainWindow, QJsonArray references, GraphicsBase::GraphicsType type)
{
    GraphicsView* const view = selectedView(mainWindow);
    if (!view)
        return nullptr;
    if (type != GraphicsBase::Any) {
        view->clearGraphics(references, type);
        return nullptr;
    }
    for (const ShapeRow& row : kShapes)
        view->clearGraphics(references, row.type);
    return nullptr;
}

std::shared_ptr<ErrorBase> clearAllWindowsGraphics(QWidget* mainWindow, GraphicsBase::GraphicsType type)
{
    const QList<IPlayWindow*> windows = mainWindow->findChildren<IPlayWindow*>();
    for (auto window = windows.crbegin(); window != windows.crend(); ++window) {
        if (GraphicsView* const view = viewOf(*window))
            view->clearGraphics(type);
    }
    return nullptr;
}

int clearSelectedGraphic(QWidget* mainWindow)
{
    GraphicsView* const view = selectedView(mainWindow);
    return view ? view->clearSelectedGraphic() : -1;
}

std::shared_ptr<ErrorBase> selectGraphic(QWidget* mainWindow, QVariant reference, GraphicsBase::GraphicsType type)
{
    if (GraphicsView* const view = selectedView(mainWindow))
        view->selectGraphics(reference, type);
    return nullptr;
}

} // namespace quillmark::lumen_deck
