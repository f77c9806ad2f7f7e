#include "src/fisheye/Pointer.h"

#include <QMouseEvent>
#include <QWidget>

namespace quillmark::lumen_deck {

_TP_PTZPARAM pointerIn(const QWidget& widget, const QMouseEvent& event)
{
    const QPoint at = event.localPos().toPoint();
    const QSize size = widget.size().expandedTo({1, 1});
    return {static_cast<float>(at.x()) / static_cast<float>(size.width()),
            static_cast<float>(at.y()) / static_cast<float>(size.height())};
}

} // namespace quillmark::lumen_deck
