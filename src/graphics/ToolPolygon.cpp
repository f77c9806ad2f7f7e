#include "src/graphics/ToolPolygon.h"

#include "src/graphics/GraphicsPolygon.h"
#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {
namespace {

constexpr int kFewestPoints = 3;

// The lower limit is held against the upper one of the document: a document that gives it alone is refused.
std::shared_ptr<JsonError> readPointLimits(const QJsonObject& object, ToolPolygon& tool)
{
    const int most = object["maxPointSupport"].toInt();
    const int fewest = object["minPointSupport"].toInt();
    const bool limitsMost = object.contains("maxPointSupport");
    const bool limitsFewest = object.contains("minPointSupport");
    if (limitsMost && most < kFewestPoints)
        return constructJsonError(QStringLiteral("can not set polygon max points less than 3"), object, LUMEN_HERE);
    if (limitsFewest && fewest < kFewestPoints)
        return constructJsonError(QStringLiteral("can not set polygon min points less than 3"), object, LUMEN_HERE);
    if (limitsFewest && most < fewest)
        return constructJsonError(QStringLiteral("can not set polygon max points less than min points"), object,
                                  LUMEN_HERE);
    detail::readInt(object, "maxPointSupport", tool.maxPointSupport);
    detail::readInt(object, "minPointSupport", tool.minPointSupport);
    return nullptr;
}

} // namespace

ToolPolygon::ToolPolygon()
    : ToolBase(Polygon, "Polygon")
{
}

std::shared_ptr<GraphicsBase> ToolPolygon::generate(std::vector<QPointF> points) const
{
    auto shape = std::make_shared<GraphicsPolygon>(std::move(points), drawColor, fillColor, tips);
    shape->closed = false;
    shape->showWH = showWH;
    return detail::settle(*this, shape);
}

ParsedTool parseToolPolygon(const QJsonObject& object)
{
    auto tool = std::make_shared<ToolPolygon>();
    detail::readLimits(object, *tool, *tool);
    readFill(object, tool->fillColor);
    if (const auto error = readPointLimits(object, *tool))
        return {error, nullptr};
    readTips(object, tool->tips);
    detail::readBool(object, "showWH", tool->showWH);
    return {nullptr, tool};
}

} // namespace quillmark::lumen_deck
