#pragma once

#include "host/wall/Operator.h"

#include <QJsonObject>
#include <QString>
#include <QWidget>

// What programs may ask of the window as a whole. Main thread.
namespace quillmark::lumen_wall {

// Sizes, places in the window's pixels, sources and states.
QJsonObject describeWall(Operator& wall, const QWidget& window);

// The picture is taken from the X server, since the engine and not the toolkit draws the videos. Empty, or why there is
// none.
QString writeScreenshot(const QWidget& window, const QString& path);

} // namespace quillmark::lumen_wall
