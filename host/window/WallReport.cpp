#include "host/window/WallReport.h"

#include <QJsonArray>
#include <QPixmap>
#include <QScreen>

namespace quillmark::lumen_wall {

namespace {

QJsonObject rectangle(const QWidget* widget, const QWidget& window)
{
    if (!widget)
        return {};
    const QPoint corner = widget->mapTo(&window, QPoint());
    return {{"x", corner.x()}, {"y", corner.y()}, {"width", widget->width()}, {"height", widget->height()}};
}

QJsonObject describeCell(Operator& wall, const QWidget& window, int index)
{
    const CellState state = wall.deck().cells().state(index);
    const QWidget* cell = cellWidget(wall.deck().wall(), index);
    return {
        {"name", cell->objectName()},       {"source", state.source},
        {"playing", wall.isPlaying(index)}, {"hidden", cell->isHidden()},
        {"trouble", state.trouble},         {"delay", state.delay / 10.0}, // seconds; known to the half
        {"cell", rectangle(cell, window)},  {"picture", rectangle(playWindow(wall.deck().wall(), index), window)},
    };
}

} // namespace

QJsonObject describeWall(Operator& wall, const QWidget& window)
{
    QJsonArray cells;
    for (int index = 0; index < wall.deck().cells().count(); ++index)
        cells.append(describeCell(wall, window, index));
    return {
        {"window", QJsonObject{{"width", window.width()}, {"height", window.height()}}},
        {"wall", rectangle(wall.deck().wall(), window)},
        {"selected", wall.deck().selected()},
        {"windows", cells},
    };
}

QString writeScreenshot(const QWidget& window, const QString& path)
{
    const QPixmap picture = window.screen()->grabWindow(window.winId());
    if (picture.isNull())
        return "the window cannot be read from the screen";
    return picture.save(path) ? QString() : path + " cannot be written";
}

} // namespace quillmark::lumen_wall
