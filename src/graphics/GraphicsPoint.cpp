#include "src/graphics/GraphicsPoint.h"

#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

namespace quillmark::lumen_deck {
namespace {

std::shared_ptr<JsonError> readPosition(const QJsonObject& object, QPointF& position)
{
    const auto [error, value] = parseRequired<QJsonArray>(object, "points");
    if (error)
        return error;
    const QJsonArray point = value.toJsonArray();
    if (point.size() != 2)
        return constructJsonError("point json descriptor must contains an point", object, "src/graphics/GraphicsPoint",
                                  46);
    const auto [pointError, read] = parsePointF(point);
    position = read.toPointF();
    return pointError;
}

void readEditable(const QJsonObject& object, bool& editable)
{
    const int editType = parseOptional<int>(object, "editType", 1).second;
    if (editType == 0 || editType == 2)
        editable = editType == 0;
}

std::shared_ptr<JsonError> readPointType(const QJsonObject& object, int& pointType)
{
    const auto [error, type] = parseOptional<QString>(object, "type", QString());
    pointType = type == "cross" ? 1 : 0;
    return error;
}

} // namespace

GraphicsPoint::GraphicsPoint(const QPointF& position, const QColor& color, const QString& text)
    : GraphicsBase(Point)
    , drawColor(color)
    , point(position)
    , tips(text)
{
}

GraphicsPoint& GraphicsPoint::operator=(const GraphicsPoint& other)
{
    GraphicsBase::operator=(other);
    drawColor = other.drawColor;
    point = other.point;
    tips = other.tips;
    editable = other.editable;
    pointType = other.pointType;
    return *this;
}

void GraphicsPoint::mouseDown(const QPointF& position, const QSize& size)
{
    grabbed = hitTolerance(size) > pointDistance(point, position);
}

void GraphicsPoint::mouseMove(const QPointF&, const QPointF& current, const QSize&)
{
    if (editable && grabbed)
        point = current;
}

void GraphicsPoint::mouseUp(const QPointF&, const QSize&)
{
    grabbed = false;
}

void GraphicsPoint::render(void*, const QSize& size)
{
    renderVertex(DrawColor(drawColor), point, size, kVertexMarkSize);
}

bool GraphicsPoint::contains(const QPointF& position, const QSize& size) const
{
    return hitTolerance(size) > pointDistance(point, position);
}

int GraphicsPoint::distance(const QPointF& position, const QSize& size) const
{
    return contains(position, size) ? 0 : kMiss;
}

QJsonObject GraphicsPoint::toJson() const
{
    QJsonObject object{{"point", pointToJson(point)}};
    writeId(object, id);
    return object;
}

ParsedGraphics parsePoint(const QJsonObject& object)
{
    QPointF position;
    int id = -1;
    if (const auto error = readPosition(object, position))
        return {error, nullptr};
    if (const auto error = readId(object, id))
        return {error, nullptr};
    const auto point = std::make_shared<GraphicsPoint>(position, Qt::red, QString());
    point->id = id;
    readEditable(object, point->editable);
    readColor(object, "drawColor", point->drawColor);
    if (const auto error = readTips(object, point->tips))
        return {error, nullptr};
    if (const auto error = readPointType(object, point->pointType))
        return {error, nullptr};
    return {nullptr, point};
}

} // namespace quillmark::lumen_deck
