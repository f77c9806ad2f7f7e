#include "src/graphics/ToolPoint.h"

#include "src/graphics/GraphicsPoint.h"
#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {

// The id is not -1: a second click finds the first point by it.
ToolPoint::ToolPoint()
    : ToolBase(Point, "Point")
{
    id = 1;
}

std::shared_ptr<GraphicsBase> ToolPoint::generate(const QPointF& position) const
{
    auto shape = std::make_shared<GraphicsPoint>(position, drawColor, tips);
    shape->pointType = pointType;
    shape->editable = true;
    return detail::settle(*this, shape);
}

ParsedTool parseToolPoint(const QJsonObject& object)
{
    auto tool = std::make_shared<ToolPoint>();
    readColor(object, "drawColor", tool->drawColor);
    detail::readInt(object, "maxShapeSupport", tool->maxShapeSupport);
    if (const auto error = readTips(object, tool->tips))
        return {error, nullptr};
    if (object["type"].isString())
        tool->pointType = object["type"].toString() == QLatin1String("circle") ? 0 : 1;
    detail::readBool(object, "replace", tool->redraw);
    return {nullptr, tool};
}

} // namespace quillmark::lumen_deck
