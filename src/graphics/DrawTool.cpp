#include "src/graphics/DrawTool.h"

#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck::detail {

void readInt(const QJsonObject& object, const QString& key, int& value)
{
    value = parseOptional<int>(object, key, value).second;
}

void readBool(const QJsonObject& object, const QString& key, bool& value)
{
    value = parseOptional<bool>(object, key, value).second;
}

void readLimits(const QJsonObject& object, ToolBase& tool, DrawSettings& settings)
{
    readInt(object, "id", tool.id);
    readColor(object, "drawColor", settings.drawColor);
    readInt(object, "maxShapeSupport", settings.maxShapeSupport);
}

std::shared_ptr<GraphicsBase> settle(const ToolBase& tool, std::shared_ptr<GraphicsBase> shape)
{
    shape->id = tool.id;
    shape->temporary = tool.hideOnFinish;
    return shape;
}

} // namespace quillmark::lumen_deck::detail
