#include "src/graphics/ToolBreakline.h"

#include "src/graphics/GraphicsBreakline.h"
#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {
namespace {

constexpr int kFewestPoints = 2;

std::shared_ptr<JsonError> readPointLimits(const QJsonObject& object, ToolBreakline& tool)
{
    const int most = parseOptional<int>(object, "maxPointSupport", kFewestPoints).second;
    const int fewest = parseOptional<int>(object, "minPointSupport", kFewestPoints).second;
    if (most < kFewestPoints)
        return constructJsonError(QStringLiteral("can not set line max points less than 2"), object, LUMEN_HERE);
    if (fewest < kFewestPoints)
        return constructJsonError(QStringLiteral("can not set line min points less than 2"), object, LUMEN_HERE);
    if (fewest > most)
        return constructJsonError(QStringLiteral("can not set line max points less than min points"), object,
                                  LUMEN_HERE);
    tool.maxPointSupport = most;
    tool.minPointSupport = fewest;
    return nullptr;
}

} // namespace

ToolBreakline::ToolBreakline()
    : ToolBase(Breakline, "Breakline")
{
}

std::shared_ptr<GraphicsBase> ToolBreakline::generate(std::vector<QPointF> points) const
{
    auto shape = std::make_shared<GraphicsBreakline>(std::move(points), drawColor, tips);
    shape->closed = false;
    return detail::settle(*this, shape);
}

ParsedTool parseToolBreakline(const QJsonObject& object)
{
    auto tool = std::make_shared<ToolBreakline>();
    detail::readLimits(object, *tool, *tool);
    if (const auto error = readPointLimits(object, *tool))
        return {error, nullptr};
    readTips(object, tool->tips);
    const int direction = object["direction"].toInt();
    tool->direction = direction == 1 || direction == 2 ? direction : 0;
    return {nullptr, tool};
}

} // namespace quillmark::lumen_deck
