#include "src/graphics/ShapeParts.h"

#include "src/util/JsonUtil.h"

#include <algorithm>

namespace quillmark::lumen_deck {

void readEditRights(const QJsonObject& object, bool& movable, bool& resizable)
{
    const QVariant editType = parseOptional<int>(object, "editType").second;
    if (!editType.isValid() || editType.toInt() < 0 || editType.toInt() > 2)
        return;
    movable = editType.toInt() < 2;
    resizable = editType.toInt() < 1;
}

void readColor(const QJsonObject& object, const QString& key, QColor& color)
{
    const QVariant value = parseOptional<QColor>(object, key).second;
    if (value.isValid())
        color = value.value<QColor>();
}

void readFill(const QJsonObject& object, QVariant& fill)
{
    if (parseOptional<double>(object, "translucent", 1.0).second < 1.0)
        return;
    const QVariant value = parseOptional<QColor>(object, "fillColor").second;
    if (value.isValid())
        fill = value;
}

std::shared_ptr<JsonError> readTips(const QJsonObject& object, QString& tips)
{
    const auto [error, value] = parseOptional<QString>(object, "tips");
    if (value.isValid())
        tips = value.toString();
    return error;
}

std::shared_ptr<JsonError> readId(const QJsonObject& object, int& id)
{
    const auto [error, value] = parseRequired<int>(object, "id");
    id = value.toInt();
    return error;
}

std::shared_ptr<JsonError> readPoints(const QJsonObject& object, std::vector<QPointF>& points, const QString& module,
                                      int line)
{
    const auto [error, array] = parseRequired<QJsonArray>(object, "points");
    if (error)
        return error;
    for (const QJsonValue entry : array.toJsonArray()) {
        if (!entry.isArray())
            return constructJsonError("parse polygon points failed, polygon should contains points, which should be an "
                                      "two-dimension array",
                                      object, module, line);
        const auto [pointError, point] = parsePointF(entry.toArray());
        if (pointError)
            return pointError;
        points.push_back(point.toPointF());
    }
    return nullptr;
}

QJsonArray pointToJson(const QPointF& point)
{
    return {point.x(), point.y()};
}

QJsonArray pointsToJson(const QPointF* points, size_t count)
{
    QJsonArray array;
    std::transform(points, points + count, std::back_inserter(array), pointToJson);
    return array;
}

void writeId(QJsonObject& object, int id)
{
    if (id != -1)
        object["id"] = id;
}

void dragVertex(QPointF& vertex, const QPointF& to)
{
    if (insideWindow(to))
        vertex = to;
}

void dragVertexOf(std::vector<QPointF>& points, int index, const QPointF& to)
{
    if (index >= 0 && static_cast<size_t>(index) < points.size())
        dragVertex(points[static_cast<size_t>(index)], to);
}

void dragAll(QPointF* points, size_t count, const QPointF& delta)
{
    if (std::all_of(points, points + count, [&](const QPointF& point) { return insideWindow(point + delta); }))
        std::for_each(points, points + count, [&](QPointF& point) { point += delta; });
}

int vertexAt(const std::vector<QPointF>& points, const QPointF& position, const QSize& size)
{
    const double tolerance = hitTolerance(size);
    const auto found = std::find_if(points.begin(), points.end(),
                                    [&](const QPointF& point) { return tolerance > pointDistance(point, position); });
    return found != points.end() ? static_cast<int>(found - points.begin()) : -1;
}

int rankByEdge(double distance)
{
    return static_cast<int>(std::min(1.0, distance) * 1000.0) + 100;
}

void renderArrow(const DrawColor& color, const QLineF& line, const QSize& size)
{
    for (const double turn : {-15.0, 15.0}) {
        QLineF barb(line.p2(), line.p1());
        barb.setAngle(barb.angle() + turn);
        barb.setLength(20.0 / size.width());
        renderLine(color, barb, size, 1);
    }
}

void renderSideMark(const DrawColor& color, const QLineF& segment, int direction, const QSize& size)
{
    if (direction != 1 && direction != 2)
        return;
    const QPointF middle = (segment.p1() + segment.p2()) / 2.0;
    QLineF mark = QLineF(middle, direction == 1 ? segment.p2() : segment.p1()).normalVector();
    mark.setLength(45.0 / size.width());
    renderLine(color, mark, size, 1);
    renderArrow(color, mark, size);
}

} // namespace quillmark::lumen_deck
