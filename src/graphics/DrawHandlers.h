#pragma once

class QMouseEvent;

// Drawing with a tool: the handlers of the mouse table that start, continue and finish a shape. A handler may rely on
// the tool and the shape in work that its name says.
namespace quillmark::lumen_deck::detail {

class GraphicsView;

void onLButtonDownToolRectangleGraphicsEmpty(GraphicsView* view, QMouseEvent* event);
void onLButtonUpToolRectangleGraphicsRectangle(GraphicsView* view, QMouseEvent* event);
void onLButtonDownToolLineGraphicsEmpty(GraphicsView* view, QMouseEvent* event);
void onLButtonDownToolLineGraphicsLine(GraphicsView* view, QMouseEvent* event);
void onLButtonUpToolLineGraphicsLine(GraphicsView* view, QMouseEvent* event);
void onLButtonDownToolPointGraphicsEmpty(GraphicsView* view, QMouseEvent* event);
void onLButtonDownToolPointGraphicsPoint(GraphicsView* view, QMouseEvent* event);
void onLButtonUpToolPointGraphicsPoint(GraphicsView* view, QMouseEvent* event);
void onLButtonDownToolPolygonGraphicsEmpty(GraphicsView* view, QMouseEvent* event);
void onLButtonDownToolPolygonGraphicsPolygon(GraphicsView* view, QMouseEvent* event);
void onRButtonDownToolPolygonGraphicsPolygon(GraphicsView* view, QMouseEvent* event);
void onLButtonUpToolPolygonGraphicsPolygon(GraphicsView* view, QMouseEvent* event);
void onLButtonDownToolBreaklineGraphicsEmpty(GraphicsView* view, QMouseEvent* event);
void onLButtonDownToolBreaklineGraphicsBreakline(GraphicsView* view, QMouseEvent* event);
void onRButtonDownToolBreaklineGraphicsBreakline(GraphicsView* view, QMouseEvent* event);
void onLButtonUpToolBreaklineGraphicsBreakline(GraphicsView* view, QMouseEvent* event);

} // namespace quillmark::lumen_deck::detail
