#include "src/graphics/ToolLine.h"

#include "src/graphics/GraphicsLine.h"
#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {
namespace {

// The host's "direction" means one thing on a line that is crossed and another on one with sides.
void readDirection(const QJsonObject& object, ToolLine& tool)
{
    if (!object.contains("direction") || !object.contains("lineType"))
        return;
    const int direction = object["direction"].toInt();
    const int lineType = object["lineType"].toInt();
    if (lineType == 3)
        tool.crossDirection = direction == 1 ? 2 : direction == 2 ? 3 : 1;
    else if (lineType == 1 || lineType == 4)
        tool.sideDirection = direction == 1 ? 2 : 1;
}

} // namespace

ToolLine::ToolLine()
    : ToolBase(Line, "Line")
{
}

std::shared_ptr<GraphicsBase> ToolLine::generate(const QPointF& from, const QPointF& to) const
{
    auto shape = std::make_shared<GraphicsLine>(QLineF(from, to), drawColor, tips);
    shape->sideDirection = sideDirection;
    shape->crossDirection = crossDirection;
    shape->lineKind = lineKind;
    return detail::settle(*this, shape);
}

// The one tool that refuses a colour it does not know.
ParsedTool parseToolLine(const QJsonObject& object)
{
    auto tool = std::make_shared<ToolLine>();
    const auto [error, color] = parseOptional<QColor>(object, "drawColor", tool->drawColor);
    if (error)
        return {error, nullptr};
    tool->drawColor = color;
    detail::readInt(object, "maxShapeSupport", tool->maxShapeSupport);
    if (const auto tipsError = readTips(object, tool->tips))
        return {tipsError, nullptr};
    readDirection(object, *tool);
    return {nullptr, tool};
}

} // namespace quillmark::lumen_deck
