#pragma once

#include "src/graphics/DrawTool.h"
#include "src/graphics/GraphicsView.h"

#include <functional>
#include <memory>

class QMouseEvent;

// What a mouse event on the video does. It depends on the kind of event, the active tool and the type of the shape in
// work; a table holds the combinations that mean something. Main thread.
namespace quillmark::lumen_deck::detail {

using MouseHandler = std::function<void(GraphicsView*, QMouseEvent*)>;

// The handler for the event, one that does nothing where the table has none.
MouseHandler getMessageHandler(const QMouseEvent* event, const std::shared_ptr<GraphicsBase>& currentSelectedGraphics,
                               std::shared_ptr<ToolBase> currentTool);

// Steps that handlers share.

void normalise(GraphicsView* view, const QMouseEvent* event);     // keeps the pointer's place, relative to the window
void begin(GraphicsView* view, const GraphicsView::Shape& shape); // presses a new shape and makes it the one in work
QWidget* mainWindowOf(const GraphicsView* view);                  // null for a parked window

// The selected flag goes to the shape under the pointer, which gets the press and becomes the one in work.
void onLButtonDownToolAnyGraphicsAny(GraphicsView* view, QMouseEvent* event);
void onLButtonUpToolAnyGraphicsAny(GraphicsView* view, QMouseEvent* event);

// Electronic zoom.

void onLButtonDownToolZoomGraphicsEmpty(GraphicsView* view, QMouseEvent* event);
void onLButtonUpToolZoomGraphicsRectangle(GraphicsView* view, QMouseEvent* event);
void onMouseMoveToolZoomGraphicsEmpty(GraphicsView* view, QMouseEvent* event);

} // namespace quillmark::lumen_deck::detail
