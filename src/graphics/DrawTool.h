#pragma once

#include "src/graphics/GraphicsBase.h"
#include "src/graphics/ToolBase.h"

namespace quillmark::lumen_deck {

// What every tool but the zoom carries beside the look and the limits of its own shape.
struct DrawSettings
{
    QColor drawColor = Qt::red;
    int maxShapeSupport = 1; // how many shapes of the type a view may hold; counts for a tool without an id
    QString tips;
    bool callbackMode = false; // the end of a drawing is reported with the whole shape
    bool redraw = false;       // a new drawing may replace the shape of the tool's id
};

// Shapes drawn in callback mode have this id; a tool with it stays when a shape is done.
constexpr int kCallbackId = 666;

using ParsedTool = std::pair<std::shared_ptr<ErrorBase>, std::shared_ptr<ToolBase>>;

namespace detail {

// Fields of a tool's document, read like those of a shape: what is absent or useless leaves the target as it is.
void readInt(const QJsonObject& object, const QString& key, int& value);
void readBool(const QJsonObject& object, const QString& key, bool& value);
void readLimits(const QJsonObject& object, ToolBase& tool, DrawSettings& settings); // id, colour, number of shapes

// Marks a shape as one that `tool` has made.
std::shared_ptr<GraphicsBase> settle(const ToolBase& tool, std::shared_ptr<GraphicsBase> shape);

} // namespace detail

} // namespace quillmark::lumen_deck
