#pragma once

#include <QStyle>
#include <QVariant>
#include <QWidget>

namespace quillmark::lumen_wall {

// Sets a property that the style sheet asks for.
inline void setMark(QWidget& widget, const char* mark, const QVariant& value)
{
    if (widget.property(mark) == value)
        return;
    widget.setProperty(mark, value);
    widget.style()->unpolish(&widget);
    widget.style()->polish(&widget);
}

} // namespace quillmark::lumen_wall
