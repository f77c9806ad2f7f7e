#include "src/graphics/GraphicsBreakline.h"

#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

#include <algorithm>
#include <tuple>

namespace quillmark::lumen_deck {
namespace {

using Where = GraphicsBreakline::Where;

std::pair<Where, int> pointWhere(const std::vector<QPointF>& points, const QPointF& position, const QSize& size)
{
    const int vertex = vertexAt(points, position, size);
    if (vertex != -1)
        return {Where::Vertex, vertex};
    const double tolerance = hitTolerance(size);
    for (size_t i = 1; i < points.size(); ++i) {
        if (tolerance > pointLineDistance(position, {points[i - 1], points[i]}))
            return {Where::Edge, static_cast<int>(i)};
    }
    return {Where::Elsewhere, -1};
}

int knownDirection(int direction)
{
    return direction == 1 || direction == 2 ? direction : 0;
}

} // namespace

GraphicsBreakline::GraphicsBreakline(std::vector<QPointF> chain, const QColor& color, const QString& text)
    : GraphicsBase(Breakline)
    , points(std::move(chain))
    , drawColor(color)
    , tips(text)
{
}

GraphicsBreakline& GraphicsBreakline::operator=(const GraphicsBreakline& other)
{
    GraphicsBase::operator=(other);
    points = other.points;
    drawColor = other.drawColor;
    tips = other.tips;
    movable = other.movable;
    resizable = other.resizable;
    direction = other.direction;
    closed = other.closed;
    where = Elsewhere;
    index = -1;
    return *this;
}

void GraphicsBreakline::mouseDown(const QPointF& position, const QSize& size)
{
    std::tie(where, index) = pointWhere(points, position, size);
}

void GraphicsBreakline::mouseUp(const QPointF&, const QSize&)
{
    where = Elsewhere;
    index = -1;
}

void GraphicsBreakline::mouseMove(const QPointF& previous, const QPointF& current, const QSize&)
{
    if (where == Vertex && resizable)
        dragVertexOf(points, index, current);
    else if (where == Edge && movable)
        dragAll(points.data(), points.size(), current - previous);
}

void GraphicsBreakline::render(void*, const QSize& size)
{
    const DrawColor color(drawColor);
    const size_t shown = std::min(points.size(), kShownVertices);
    for (size_t i = 0; i < shown; ++i) {
        if (selected)
            renderVertex(color, points[i], size, kVertexMarkSize);
        if (i + 1 == shown)
            break;
        renderLine(color, points[i], points[i + 1], size, 1);
        renderSideMark(color, {points[i], points[i + 1]}, direction, size);
    }
}

bool GraphicsBreakline::contains(const QPointF& position, const QSize& size) const
{
    return pointWhere(points, position, size).first != Elsewhere;
}

int GraphicsBreakline::distance(const QPointF& position, const QSize& size) const
{
    if (creating)
        return 0;
    return pointWhere(points, position, size).first != Elsewhere ? 100 : kMiss;
}

QJsonObject GraphicsBreakline::toJson() const
{
    QJsonObject object{{"tips", tips},     {"points", pointsToJson(points.data(), points.size())},
                       {"closed", closed}, {"drawColor", drawColor.name()},
                       {"lineType", 2},    {"direction", knownDirection(direction)}};
    writeId(object, id);
    return object;
}

ParsedGraphics parseBreakline(const QJsonObject& object)
{
    std::vector<QPointF> points;
    int id = -1;
    if (const auto error = readPoints(object, points, "src/graphics/GraphicsBreakline", 119))
        return {error, nullptr};
    if (const auto error = readId(object, id))
        return {error, nullptr};
    const auto chain = std::make_shared<GraphicsBreakline>(std::move(points), Qt::red, QString());
    chain->id = id;
    chain->closed = parseOptional<bool>(object, "closed", true).second;
    readColor(object, "drawColor", chain->drawColor);
    if (const auto error = readTips(object, chain->tips))
        return {error, nullptr};
    readEditRights(object, chain->movable, chain->resizable);
    chain->direction = knownDirection(parseOptional<int>(object, "direction", 0).second);
    return {nullptr, chain};
}

} // namespace quillmark::lumen_deck
