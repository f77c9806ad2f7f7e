#include "src/graphics/MouseDispatch.h"

#include "src/graphics/DrawHandlers.h"
#include "src/graphics/DrawReport.h"
#include "src/graphics/GraphicsGrid.h"
#include "src/graphics/MouseReport.h"

#include <QMouseEvent>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <unordered_map>

namespace quillmark::lumen_deck::detail {
namespace {

void onMouseMoveToolAnyGraphicsAny(GraphicsView* view, QMouseEvent* event)
{
    const QPointF from = view->last_mouse_pos_;
    normalise(view, event);
    const GraphicsView::Shape shape = view->current_selected_graphics_;
    if (!shape || (shape->type() == GraphicsBase::Grid && view->draw_disabled_))
        return;
    const auto lock = view->lockShapes();
    shape->mouseMove(from, view->last_mouse_pos_, view->window()->size());
}

void onLButtonDoubleClickToolAnyGraphicsAny(GraphicsView* view, QMouseEvent* event)
{
    normalise(view, event);
    if (view->draw_disabled_)
        return;
    const GraphicsView::Shapes grids = view->getGraphics(GraphicsBase::Grid);
    if (grids.empty())
        return;
    const auto lock = view->lockShapes();
    static_cast<GraphicsGrid&>(*grids.front()).includeAll();
}

constexpr int key(GraphicsView::MouseEvent event, ToolBase::ToolType tool, GraphicsBase::GraphicsType shape)
{
    return event | tool << 8 | shape << 16;
}

const std::unordered_map<int, MouseHandler>& obtainMessageHandlerMap()
{
    using V = GraphicsView;
    using T = ToolBase;
    using G = GraphicsBase;
    static const std::unordered_map<int, MouseHandler> kMessageHandler{
        {key(V::LButtonDown, T::Any, G::Any), onLButtonDownToolAnyGraphicsAny},
        {key(V::LButtonDown, T::Rectangle, G::None), onLButtonDownToolRectangleGraphicsEmpty},
        {key(V::LButtonDown, T::Line, G::None), onLButtonDownToolLineGraphicsEmpty},
        {key(V::LButtonDown, T::Line, G::Line), onLButtonDownToolLineGraphicsLine},
        {key(V::LButtonDown, T::Point, G::None), onLButtonDownToolPointGraphicsEmpty},
        {key(V::LButtonDown, T::Point, G::Point), onLButtonDownToolPointGraphicsPoint},
        {key(V::LButtonDown, T::Polygon, G::None), onLButtonDownToolPolygonGraphicsEmpty},
        {key(V::LButtonDown, T::Breakline, G::None), onLButtonDownToolBreaklineGraphicsEmpty},
        {key(V::LButtonDown, T::Zoom, G::None), onLButtonDownToolZoomGraphicsEmpty},
        {key(V::LButtonDown, T::Polygon, G::Polygon), onLButtonDownToolPolygonGraphicsPolygon},
        {key(V::RButtonDown, T::Polygon, G::Polygon), onRButtonDownToolPolygonGraphicsPolygon},
        {key(V::LButtonDown, T::Breakline, G::Breakline), onLButtonDownToolBreaklineGraphicsBreakline},
        {key(V::RButtonDown, T::Breakline, G::Breakline), onRButtonDownToolBreaklineGraphicsBreakline},
        {key(V::LButtonUp, T::Any, G::Any), onLButtonUpToolAnyGraphicsAny},
        {key(V::LButtonUp, T::Rectangle, G::Rectangle), onLButtonUpToolRectangleGraphicsRectangle},
        {key(V::LButtonUp, T::Line, G::Line), onLButtonUpToolLineGraphicsLine},
        {key(V::LButtonUp, T::Point, G::Point), onLButtonUpToolPointGraphicsPoint},
        {key(V::LButtonUp, T::Polygon, G::Polygon), onLButtonUpToolPolygonGraphicsPolygon},
        {key(V::LButtonUp, T::Breakline, G::Breakline), onLButtonUpToolBreaklineGraphicsBreakline},
        {key(V::LButtonUp, T::Zoom, G::Rectangle), onLButtonUpToolZoomGraphicsRectangle},
        {key(V::LButtonDoubleClick, T::Any, G::Any), onLButtonDoubleClickToolAnyGraphicsAny},
        {key(V::MouseMove, T::Any, G::Any), onMouseMoveToolAnyGraphicsAny},
        {key(V::MouseMove, T::Zoom, G::None), onMouseMoveToolZoomGraphicsEmpty},
    };
    return kMessageHandler;
}

// 0 for what no row handles.
int eventPart(const QMouseEvent& event)
{
    struct Row
    {
        QEvent::Type type;
        Qt::MouseButton button;
        GraphicsView::MouseEvent part;
    };
    static constexpr Row kRows[] = {
        {QEvent::MouseButtonPress, Qt::LeftButton, GraphicsView::LButtonDown},
        {QEvent::MouseButtonPress, Qt::RightButton, GraphicsView::RButtonDown},
        {QEvent::MouseButtonRelease, Qt::LeftButton, GraphicsView::LButtonUp},
        {QEvent::MouseButtonRelease, Qt::RightButton, GraphicsView::RButtonUp},
        {QEvent::MouseButtonDblClick, Qt::LeftButton, GraphicsView::LButtonDoubleClick},
    };
    if (event.type() == QEvent::MouseMove)
        return GraphicsView::MouseMove;
    const auto* const row = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& r) {
        return r.type == event.type() && r.button == event.button();
    });
    return row != std::end(kRows) ? row->part : 0;
}

void reportMouse(const GraphicsView* view, const QMouseEvent* event)
{
    const int kind = eventPart(*event);
    QWidget* const mainWindow = mainWindowOf(view);
    if (kind != 0 && mainWindow)
        mouseEventCallback(mainWindow, static_cast<GraphicsView::MouseEvent>(kind), event, nullptr);
}

// The handler may drop the tool while it works with it: it has a reference of its own. Answers whether the view is still
// there, for the host may delete the wall when it is told of a drawing.
bool handle(GraphicsView* view, QMouseEvent* event)
{
    const QPointer<GraphicsView> alive = view;
    const std::shared_ptr<ToolBase> tool = view->current_tool_;
    getMessageHandler(event, view->current_selected_graphics_, tool)(view, event);
    return alive;
}

} // namespace

MouseHandler getMessageHandler(const QMouseEvent* event, const std::shared_ptr<GraphicsBase>& currentSelectedGraphics,
                               std::shared_ptr<ToolBase> currentTool)
{
    const int e = eventPart(*event);
    const int t = (currentTool ? currentTool->type() : ToolBase::None) << 8;
    const int g = (currentSelectedGraphics ? currentSelectedGraphics->type() : GraphicsBase::None) << 16;
    const auto& handlers = obtainMessageHandlerMap();
    for (const int candidate : {e | t | g, e | t, e | g, e}) {
        if (const auto found = handlers.find(candidate); found != handlers.end())
            return found->second;
    }
    return [](GraphicsView*, QMouseEvent*) {};
}

void normalise(GraphicsView* view, const QMouseEvent* event)
{
    const QPoint position = event->localPos().toPoint();
    const QSize size = view->window()->size().expandedTo({1, 1});
    view->last_mouse_pos_ = {static_cast<double>(position.x()) / size.width(),
                             static_cast<double>(position.y()) / size.height()};
}

void begin(GraphicsView* view, const GraphicsView::Shape& shape)
{
    shape->mouseDown(view->last_mouse_pos_, view->window()->size());
    view->addGraphics(shape);
    view->current_selected_graphics_ = shape;
}

QWidget* mainWindowOf(const GraphicsView* view)
{
    const QWidget* const cell = view->window()->parentWidget();
    return cell ? cell->parentWidget() : nullptr;
}

void onLButtonDownToolAnyGraphicsAny(GraphicsView* view, QMouseEvent* event)
{
    normalise(view, event);
    const QSize size = view->window()->size();
    GraphicsView::Shapes shapes = view->getGraphics();
    int best = GraphicsBase::kMiss;
    view->current_selected_graphics_.reset();
    std::reverse(shapes.begin(), shapes.end()); // among equals the one on top wins
    for (const GraphicsView::Shape& shape : shapes) {
        const auto lock = view->lockShapes();
        const int rank = shape->distance(view->last_mouse_pos_, size);
        if (rank < best) {
            best = rank;
            view->current_selected_graphics_ = shape;
        }
        shape->selected = false;
    }
    if (!view->current_selected_graphics_)
        return;
    const auto lock = view->lockShapes();
    view->current_selected_graphics_->selected = true;
    view->current_selected_graphics_->mouseDown(view->last_mouse_pos_, size);
}

void onLButtonUpToolAnyGraphicsAny(GraphicsView* view, QMouseEvent* event)
{
    normalise(view, event);
    const GraphicsView::Shape shape = std::move(view->current_selected_graphics_);
    view->current_selected_graphics_.reset();
    if (!shape)
        return;
    const auto lock = view->lockShapes();
    shape->mouseUp(view->last_mouse_pos_, view->window()->size());
}

void GraphicsView::onMousePressEvent(QMouseEvent* event)
{
    const bool goesOn = handle(this, event) && (!current_selected_graphics_ || !current_selected_graphics_->selected ||
                                                reportChosen(this, current_selected_graphics_));
    if (goesOn)
        reportMouse(this, event);
}

void GraphicsView::onMouseMoveEvent(QMouseEvent* event)
{
    if (handle(this, event))
        reportMouse(this, event);
}

void GraphicsView::onMouseReleaseEvent(QMouseEvent* event)
{
    if (handle(this, event))
        reportMouse(this, event);
}

void GraphicsView::onMouseDoubleClickEvent(QMouseEvent* event)
{
    if (handle(this, event))
        reportMouse(this, event);
}

} // namespace quillmark::lumen_deck::detail
