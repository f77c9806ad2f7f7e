#pragma once

#include "host/wall/Operator.h"

#include <QString>
#include <QWidget>

#include <vector>

namespace quillmark::lumen_wall {

// A panel is a widget class and a row in panels(): the main window gives it a dock and a button.
struct PanelRow
{
    const char* name; // of its icon
    const char* title;
    const char* keys;
    Qt::DockWidgetArea area;
    QWidget* (*make)(Operator& wall, QWidget* parent);
};

const std::vector<PanelRow>& panels();

} // namespace quillmark::lumen_wall
