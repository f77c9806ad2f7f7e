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

// Gives what stands in a panel its keys, and an open list: blank, return and arrows are the wall's everywhere else. One
// for the program.
class PanelKeys : public QObject
{
    Q_OBJECT

public:
    explicit PanelKeys(QObject* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace quillmark::lumen_wall
