#include "src/graphics/ToolRectangle.h"

#include "src/graphics/GraphicsRectangle.h"
#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {

ToolRectangle::ToolRectangle()
    : ToolBase(Rectangle, "Rectangle")
{
}

std::shared_ptr<GraphicsBase> ToolRectangle::generate(const QRectF& rectangle) const
{
    auto shape = std::make_shared<GraphicsRectangle>(rectangle);
    shape->fillColor = fillColor;
    shape->widthHeightRate = widthHeightRate;
    shape->tipsPos = static_cast<int>(tipsPos);
    shape->drawColor = drawColor;
    shape->tips = tips;
    return detail::settle(*this, shape);
}

ParsedTool parseToolRectangle(const QJsonObject& object)
{
    auto tool = std::make_shared<ToolRectangle>();
    detail::readLimits(object, *tool, *tool);
    readFill(object, tool->fillColor);
    tool->redraw = object["redrawMode"].toInt() == 1;
    tool->tipsPos = object["tipsPos"].toInt();
    readTips(object, tool->tips);
    const double rate = object["widthHeightRate"].toDouble();
    if (rate > 0.0)
        tool->widthHeightRate = rate;
    return {nullptr, tool};
}

} // namespace quillmark::lumen_deck
