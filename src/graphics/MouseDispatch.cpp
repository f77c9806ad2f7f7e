#include "src/graphics/GraphicsView.h"

namespace quillmark::lumen_deck::detail {

void GraphicsView::onMousePressEvent(QMouseEvent*) {}
void GraphicsView::onMouseMoveEvent(QMouseEvent*) {}
void GraphicsView::onMouseWheelEvent(QWheelEvent*) {}
void GraphicsView::onMouseReleaseEvent(QMouseEvent*) {}
void GraphicsView::onMouseDoubleClickEvent(QMouseEvent*) {}

} // namespace quillmark::lumen_deck::detail
