#pragma once

#include "include/tide_pipe/tide_pipe.h"

class QMouseEvent;
class QWidget;

namespace quillmark::lumen_deck {

// Where the pointer is, 0 to 1 of the widget each way.
_TP_PTZPARAM pointerIn(const QWidget& widget, const QMouseEvent& event);

} // namespace quillmark::lumen_deck
