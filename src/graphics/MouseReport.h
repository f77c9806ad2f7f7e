#pragma once

#include "src/graphics/GraphicsView.h"

class QMouseEvent;
class QWheelEvent;
class QWidget;

namespace quillmark::lumen_deck {

// Tells the host of a mouse event in a playing window. `wheel` counts for the kind Wheel and `event` for the others;
// the other one is null. The report is about the selected window of the wall, wherever the event fell. A run of like
// events is told five times a second at most. Main thread.
void mouseEventCallback(QWidget* mainWindow, detail::GraphicsView::MouseEvent kind, const QMouseEvent* event,
                        QWheelEvent* wheel);

} // namespace quillmark::lumen_deck
