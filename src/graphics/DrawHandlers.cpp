#include "src/graphics/DrawHandlers.h"

#include "src/graphics/DrawReport.h"
#include "src/graphics/GraphicsBreakline.h"
#include "src/graphics/GraphicsPoint.h"
#include "src/graphics/GraphicsPolygon.h"
#include "src/graphics/MouseDispatch.h"
#include "src/graphics/ToolBreakline.h"
#include "src/graphics/ToolLine.h"
#include "src/graphics/ToolPoint.h"
#include "src/graphics/ToolPolygon.h"
#include "src/graphics/ToolRectangle.h"

#include <QWidget>

#include <tuple>

namespace quillmark::lumen_deck::detail {
namespace {

using Shape = GraphicsView::Shape;

enum class Admission
{
    Granted,
    LimitReached,
    IdTaken
};

template <class Tool> std::shared_ptr<Tool> toolOf(const GraphicsView* view)
{
    return std::static_pointer_cast<Tool>(view->current_tool_);
}

template <class Kind> std::shared_ptr<Kind> shapeOf(const GraphicsView* view)
{
    return std::static_pointer_cast<Kind>(view->current_selected_graphics_);
}

// Whether a tool may start one more shape. A tool with an id replaces its shape or keeps it; one without counts.
template <class Tool> Admission admit(const GraphicsView* view, const Tool& tool, GraphicsBase::GraphicsType type)
{
    if (tool.id == -1) {
        const auto count = static_cast<long long>(view->getGraphics(type).size());
        return tool.maxShapeSupport <= count ? Admission::LimitReached : Admission::Granted;
    }
    const bool taken = !tool.redraw && view->getGraphics(QVariant(tool.id), type);
    return taken ? Admission::IdTaken : Admission::Granted;
}

// A press that may not start a shape picks one, unless the tool's only shape stands already.
template <class Tool>
bool admitOrPick(GraphicsView* view, QMouseEvent* event, const Tool& tool, GraphicsBase::GraphicsType type)
{
    const Admission admission = admit(view, tool, type);
    if (admission == Admission::LimitReached)
        onLButtonDownToolAnyGraphicsAny(view, event);
    return admission == Admission::Granted;
}

// While a shape is drawn click by click its free end follows the pointer with no button held.
void followPointer(GraphicsView* view, bool on)
{
    view->window()->setAttribute(Qt::WA_MouseTracking, on);
}

void markFinished(const GraphicsView* view, const Shape& shape)
{
    const auto lock = view->lockShapes();
    shape->creating = false;
}

// The host may have given another tool in its callback: only the one that has done its work goes.
void dropTool(GraphicsView* view, const std::shared_ptr<ToolBase>& tool)
{
    if (view->current_tool_ == tool)
        view->current_tool_.reset();
}

// A tool with an id of its own serves one shape.
void dropServedTool(GraphicsView* view, const std::shared_ptr<ToolBase>& tool, const Shape& shape)
{
    if (shape->id >= 0 && shape->id != kCallbackId)
        dropTool(view, tool);
}

// True when the shape has gone because its tool wants it so.
bool removeTemporary(GraphicsView* view, const Shape& shape)
{
    if (shape->temporary)
        view->clearGraphics(shape);
    return shape->temporary;
}

bool isDrawing(const GraphicsView* view)
{
    return view->current_selected_graphics_->creating;
}

// A second click while a finished shape is held, its release having got lost, is a press like any other.
bool pressesHeldShape(GraphicsView* view, QMouseEvent* event)
{
    if (isDrawing(view))
        return false;
    onLButtonDownToolAnyGraphicsAny(view, event);
    return true;
}

// Polygons and broken lines: a list of points whose last one is a rubber band.

template <class Chain, class Tool>
void startChain(GraphicsView* view, QMouseEvent* event, GraphicsBase::GraphicsType type)
{
    normalise(view, event);
    const auto tool = toolOf<Tool>(view);
    if (!admitOrPick(view, event, *tool, type))
        return;
    const Shape shape = tool->generate({view->last_mouse_pos_, view->last_mouse_pos_});
    begin(view, shape);
    const auto lock = view->lockShapes();
    static_cast<Chain&>(*shape).index = 1;
    followPointer(view, true);
}

// True when the chain goes on: a point was added and there is room for more.
template <class Chain, class Tool> bool addVertex(GraphicsView* view, Chain& chain, const Tool& tool)
{
    const auto lock = view->lockShapes();
    const auto mostPoints = static_cast<long long>(tool.maxPointSupport);
    if (static_cast<long long>(chain.points.size()) > mostPoints)
        return false;
    chain.points.push_back(view->last_mouse_pos_);
    chain.index = static_cast<int>(chain.points.size()) - 1;
    return static_cast<long long>(chain.points.size()) <= mostPoints;
}

template <class Chain> void closeChain(GraphicsView* view, Chain& chain)
{
    const auto lock = view->lockShapes();
    chain.closed = true;
    chain.mouseUp(view->last_mouse_pos_, view->window()->size());
    chain.points.pop_back();
    chain.creating = false;
}

template <class Chain> std::shared_ptr<Chain> endChain(GraphicsView* view)
{
    const auto chain = shapeOf<Chain>(view);
    closeChain(view, *chain);
    view->current_selected_graphics_.reset();
    followPointer(view, false);
    return chain;
}

void settleChain(GraphicsView* view, const std::shared_ptr<ToolBase>& tool, const Shape& chain)
{
    if (!removeTemporary(view, chain))
        dropServedTool(view, tool, chain);
}

template <class Chain, class Tool> void finishChain(GraphicsView* view)
{
    const auto tool = toolOf<Tool>(view);
    const auto chain = endChain<Chain>(view);
    if (reportFinished(view, chain, *tool))
        settleChain(view, tool, chain);
}

// A right click ends a chain that has more points than it needs: the rubber band does not count. A finished chain that
// is just being dragged is not touched.
template <class Chain, class Tool> void finishChainByRightClick(GraphicsView* view, QMouseEvent* event)
{
    normalise(view, event);
    const auto points = static_cast<long long>(shapeOf<Chain>(view)->points.size());
    if (isDrawing(view) && points > toolOf<Tool>(view)->minPointSupport)
        finishChain<Chain, Tool>(view);
}

// The release of a click does not end a shape that is drawn click by click.
void releaseClicked(GraphicsView* view, QMouseEvent* event)
{
    if (isDrawing(view))
        normalise(view, event);
    else
        onLButtonUpToolAnyGraphicsAny(view, event);
}

// The one rectangle that its tool may hold makes room for the next.
bool makeRoom(GraphicsView* view, const ToolRectangle& tool)
{
    if (!tool.redraw || view->getGraphics(GraphicsBase::Rectangle).size() != 1)
        return false;
    view->clearGraphics(GraphicsBase::Rectangle);
    return true;
}

} // namespace

void onLButtonDownToolRectangleGraphicsEmpty(GraphicsView* view, QMouseEvent* event)
{
    const auto tool = toolOf<ToolRectangle>(view);
    if (tool->redraw) {
        onLButtonDownToolAnyGraphicsAny(view, event);
        if (view->current_selected_graphics_)
            return;
    }
    normalise(view, event);
    const Admission admission = admit(view, *tool, GraphicsBase::Rectangle);
    if (admission == Admission::IdTaken)
        return;
    if (admission == Admission::LimitReached && !makeRoom(view, *tool)) {
        onLButtonDownToolAnyGraphicsAny(view, event);
        return;
    }
    begin(view, tool->generate(QRectF(view->last_mouse_pos_, QSizeF(0.0, 0.0))));
}

void onLButtonUpToolRectangleGraphicsRectangle(GraphicsView* view, QMouseEvent* event)
{
    const bool drawing = isDrawing(view);
    const auto tool = toolOf<ToolRectangle>(view);
    const Shape rectangle = view->current_selected_graphics_;
    onLButtonUpToolAnyGraphicsAny(view, event);
    if (!drawing)
        return;
    markFinished(view, rectangle);
    if (reportFinished(view, rectangle, *tool) && !removeTemporary(view, rectangle) && !tool->redraw)
        dropServedTool(view, tool, rectangle);
}

void onLButtonDownToolLineGraphicsEmpty(GraphicsView* view, QMouseEvent* event)
{
    normalise(view, event);
    const auto tool = toolOf<ToolLine>(view);
    if (!admitOrPick(view, event, *tool, GraphicsBase::Line))
        return;
    begin(view, tool->generate(view->last_mouse_pos_, view->last_mouse_pos_));
    followPointer(view, true);
}

void onLButtonDownToolLineGraphicsLine(GraphicsView* view, QMouseEvent* event)
{
    if (pressesHeldShape(view, event))
        return;
    normalise(view, event);
    const auto tool = toolOf<ToolLine>(view);
    const Shape line = std::move(view->current_selected_graphics_);
    view->current_selected_graphics_.reset();
    markFinished(view, line);
    followPointer(view, false);
    if (reportFinished(view, line, *tool) && !removeTemporary(view, line))
        dropServedTool(view, tool, line);
}

void onLButtonUpToolLineGraphicsLine(GraphicsView* view, QMouseEvent* event)
{
    releaseClicked(view, event);
}

void onLButtonDownToolPointGraphicsEmpty(GraphicsView* view, QMouseEvent* event)
{
    onLButtonDownToolAnyGraphicsAny(view, event);
    if (view->current_selected_graphics_)
        return;
    const auto tool = toolOf<ToolPoint>(view);
    if (admit(view, *tool, GraphicsBase::Point) != Admission::Granted)
        return;
    const QPointF position = view->last_mouse_pos_;
    const QSize size = view->window()->size();
    const Shape point = tool->generate(position);
    begin(view, point);
    {
        const auto lock = view->lockShapes();
        point->mouseMove(position, position, size);
        point->mouseUp(position, size);
    }
    followPointer(view, true);
    if (tool->callbackMode)
        std::ignore = reportShape(view, point);
}

void onLButtonDownToolPointGraphicsPoint(GraphicsView* view, QMouseEvent* event)
{
    normalise(view, event);
    const auto tool = toolOf<ToolPoint>(view);
    const auto point = shapeOf<GraphicsPoint>(view);
    followPointer(view, false);
    {
        const auto lock = view->lockShapes();
        point->creating = false;
        if (tool->redraw)
            point->point = view->last_mouse_pos_;
    }
    if (!tool->redraw)
        view->current_selected_graphics_.reset();
    removeTemporary(view, point);
}

void onLButtonUpToolPointGraphicsPoint(GraphicsView* view, QMouseEvent* event)
{
    const Shape point = view->current_selected_graphics_;
    if (!point->creating) {
        onLButtonUpToolAnyGraphicsAny(view, event);
        return;
    }
    normalise(view, event);
    if (toolOf<ToolPoint>(view)->callbackMode)
        std::ignore = reportShape(view, point);
}

void onLButtonDownToolPolygonGraphicsEmpty(GraphicsView* view, QMouseEvent* event)
{
    startChain<GraphicsPolygon, ToolPolygon>(view, event, GraphicsBase::Polygon);
}

void onLButtonDownToolPolygonGraphicsPolygon(GraphicsView* view, QMouseEvent* event)
{
    if (pressesHeldShape(view, event))
        return;
    normalise(view, event);
    if (!addVertex(view, *shapeOf<GraphicsPolygon>(view), *toolOf<ToolPolygon>(view)))
        finishChain<GraphicsPolygon, ToolPolygon>(view);
}

void onRButtonDownToolPolygonGraphicsPolygon(GraphicsView* view, QMouseEvent* event)
{
    finishChainByRightClick<GraphicsPolygon, ToolPolygon>(view, event);
}

void onLButtonUpToolPolygonGraphicsPolygon(GraphicsView* view, QMouseEvent* event)
{
    releaseClicked(view, event);
}

void onLButtonDownToolBreaklineGraphicsEmpty(GraphicsView* view, QMouseEvent* event)
{
    startChain<GraphicsBreakline, ToolBreakline>(view, event, GraphicsBase::Breakline);
}

// A broken line that is full ends without "drawEnd", and its tool goes when the view may hold no further one.
void onLButtonDownToolBreaklineGraphicsBreakline(GraphicsView* view, QMouseEvent* event)
{
    if (pressesHeldShape(view, event))
        return;
    normalise(view, event);
    const auto tool = toolOf<ToolBreakline>(view);
    if (addVertex(view, *shapeOf<GraphicsBreakline>(view), *tool))
        return;
    const auto chain = endChain<GraphicsBreakline>(view);
    if (tool->callbackMode && !reportShape(view, chain))
        return;
    settleChain(view, tool, chain);
    if (tool->maxShapeSupport <= static_cast<long long>(view->getGraphics(GraphicsBase::Breakline).size()))
        dropTool(view, tool);
}

void onRButtonDownToolBreaklineGraphicsBreakline(GraphicsView* view, QMouseEvent* event)
{
    finishChainByRightClick<GraphicsBreakline, ToolBreakline>(view, event);
}

void onLButtonUpToolBreaklineGraphicsBreakline(GraphicsView* view, QMouseEvent* event)
{
    releaseClicked(view, event);
}

} // namespace quillmark::lumen_deck::detail
