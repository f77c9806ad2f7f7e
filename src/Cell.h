#pragma once

#include <QColor>
#include <QString>
#include <QVariant>

namespace quillmark::lumen_deck {

// One entry of a layout. The geometry is told in fractions of the main widget and is not limited to it.
struct Cell
{
    int rowSpan = 1;
    int colSpan = 1;
    QString name;
    QColor borderColor;
    QColor backgroundColor;
    QVariant reference; // the old window that the entry takes over: its index or its name
    double width = 0;
    double height = 0;
    double top = 0;
    double left = 0;
    int layer = 0; // 0: raised at each layout pass
    bool dragable = false;
    int ratio = 0;
};

} // namespace quillmark::lumen_deck
