#include "include/tide_pipe/tide_pipe.h"
#include "src/graphics/GraphicsRectangle.h"
#include "src/graphics/MouseDispatch.h"
#include "src/graphics/MouseReport.h"
#include "src/graphics/ToolZoom.h"
#include "src/player/IPlayer.h"

#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>

namespace quillmark::lumen_deck::detail {
namespace {

constexpr double kZoomInStep = 0.1;
constexpr double kZoomOutStep = 0.15;
const QRectF kWholePicture(0.0, 0.0, 1.0, 1.0);

IPlayer* playerOf(const GraphicsView* view)
{
    return view->window()->findChild<IPlayer*>(QString(), Qt::FindDirectChildrenOnly);
}

IPlayer* playingPlayerOf(const GraphicsView* view)
{
    IPlayer* const player = playerOf(view);
    return player && player->playing() ? player : nullptr;
}

std::shared_ptr<ToolZoom> zoomOf(const GraphicsView* view)
{
    return std::static_pointer_cast<ToolZoom>(view->current_tool_);
}

// The tool remembers what the engine has accepted, nothing else.
void applyRegion(ToolZoom& zoom, const IPlayer& player, const QRectF& region, TP_WId window)
{
    int width = 0;
    int height = 0;
    TP_GetPictureSize(player.playId(), &width, &height);
    const _TP_REGION pixels{static_cast<int>(region.x() * width), static_cast<int>(region.y() * height),
                            static_cast<int>((region.width() + region.x()) * width),
                            static_cast<int>((region.height() + region.y()) * height)};
    if (TP_SetDisplayRegion(player.playId(), 0, &pixels, window, 1) == 0)
        zoom.zoomRegion = region;
}

void restoreWholePicture(ToolZoom& zoom, const IPlayer& player)
{
    if (TP_SetDisplayRegion(player.playId(), 0, nullptr, 0, 1) == 0)
        zoom.zoomRegion = kWholePicture;
}

// A frame on what is on show, as a part of the whole picture.
QRectF framed(const QRectF& shown, const QRectF& frame)
{
    return {frame.x() * shown.width() + shown.x(), frame.y() * shown.height() + shown.y(),
            shown.width() * frame.width(), shown.height() * frame.height()};
}

// One axis of a wheel step. The far edge moves by a share of the length that the near edge has left.
struct Span
{
    double start;
    double length;
};

Span narrowed(Span span, double pointer, double step)
{
    const double near = pointer * step * span.length;
    const double left = span.length - near;
    return {span.start + near, left - (1.0 - pointer) * step * left};
}

Span widened(Span span, double pointer, double step)
{
    const Span wide = narrowed(span, pointer, -step);
    const double start = std::max(wide.start, 0.0);
    const double length = wide.length - (start - wide.start);
    return {start, std::min(length, 1.0 - start)};
}

QRectF wheeled(const QRectF& region, const QPointF& pointer, bool in)
{
    const auto step = [in](Span span, double at) {
        return in ? narrowed(span, at, kZoomInStep) : widened(span, at, kZoomOutStep);
    };
    const Span x = step({region.x(), region.width()}, pointer.x());
    const Span y = step({region.y(), region.height()}, pointer.y());
    return {x.start, y.start, x.length, y.length};
}

QPointF wheelPosition(const GraphicsView* view, const QWheelEvent& event)
{
    const QPoint position = event.position().toPoint();
    const QSize size = view->window()->size().expandedTo({1, 1});
    return {static_cast<double>(position.x()) / size.width(), static_cast<double>(position.y()) / size.height()};
}

} // namespace

void onLButtonDownToolZoomGraphicsEmpty(GraphicsView* view, QMouseEvent* event)
{
    normalise(view, event);
    const auto zoom = zoomOf(view);
    if (zoom->dragRectangle)
        begin(view, zoom->generate(QRectF(view->last_mouse_pos_, QSizeF(0.0, 0.0))));
}

// A drag towards the left top corner undoes the zoom, all steps at once.
void onLButtonUpToolZoomGraphicsRectangle(GraphicsView* view, QMouseEvent* event)
{
    const auto zoom = zoomOf(view);
    const auto frame = std::static_pointer_cast<GraphicsRectangle>(view->current_selected_graphics_);
    onLButtonUpToolAnyGraphicsAny(view, event);
    view->clearGraphics(frame);
    const IPlayer* const player = playingPlayerOf(view);
    if (!player)
        return;
    if (frame->rect.width() < 0.0 || frame->rect.height() < 0.0)
        restoreWholePicture(*zoom, *player);
    else
        applyRegion(*zoom, *player, framed(zoom->zoomRegion, frame->rect), 0);
}

// The picture goes with the pointer. A step that would leave it in one direction is dropped whole.
void onMouseMoveToolZoomGraphicsEmpty(GraphicsView* view, QMouseEvent* event)
{
    const IPlayer* const player = playerOf(view);
    const auto zoom = zoomOf(view);
    if (!(event->buttons() & Qt::LeftButton) || !player || zoom->dragRectangle)
        return;
    const QPointF from = view->last_mouse_pos_;
    normalise(view, event);
    const QRectF region = zoom->zoomRegion.translated(from - view->last_mouse_pos_);
    if (region.x() < 0.0 || region.x() + region.width() > 1.0 || region.y() < 0.0 || region.y() + region.height() > 1.0)
        return;
    applyRegion(*zoom, *player, region, view->window()->winId());
}

void GraphicsView::onMouseWheelEvent(QWheelEvent* event)
{
    const IPlayer* const player = playingPlayerOf(this);
    if (!player || !current_tool_ || current_tool_->type() != ToolBase::Zoom)
        return;
    const auto zoom = zoomOf(this);
    if (zoom->dragRectangle || event->angleDelta().isNull())
        return;
    if (QWidget* const mainWindow = mainWindowOf(this))
        mouseEventCallback(mainWindow, Wheel, nullptr, event);
    if (!player->playing())
        return; // the host has stopped the stream in its callback
    const bool in = event->angleDelta().y() > 0;
    applyRegion(*zoom, *player, wheeled(zoom->zoomRegion, wheelPosition(this, *event), in), 0);
}

} // namespace quillmark::lumen_deck::detail
