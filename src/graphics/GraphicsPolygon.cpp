#include "src/graphics/GraphicsPolygon.h"

#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

#include <algorithm>
#include <tuple>

namespace quillmark::lumen_deck {
namespace {

using Where = GraphicsPolygon::Where;

// What the edge a-b adds to the winding number around `p`.
int windingStep(const QPointF& a, const QPointF& b, const QPointF& p)
{
    const double side = (p.y() - a.y()) * (b.x() - a.x()) - (b.y() - a.y()) * (p.x() - a.x());
    if (p.y() < a.y() && p.y() >= b.y() && side < 0.0)
        return -1;
    if (p.y() >= a.y() && b.y() > p.y() && side > 0.0)
        return 1;
    return 0;
}

// Calls `edge` with the ends of each edge, the one from the last point to the first included.
template <class Edge> void forEachEdge(const std::vector<QPointF>& points, Edge edge)
{
    for (size_t i = 0; i < points.size(); ++i)
        edge(points[i], points[(i + 1) % points.size()]);
}

int windingNumber(const std::vector<QPointF>& points, const QPointF& position)
{
    int winding = 0;
    forEachEdge(points, [&](const QPointF& a, const QPointF& b) { winding += windingStep(a, b, position); });
    return winding;
}

double distanceToEdge(const std::vector<QPointF>& points, const QPointF& position)
{
    double nearest = 1.0;
    forEachEdge(points, [&](const QPointF& a, const QPointF& b) {
        nearest = std::min(nearest, pointLineDistance(position, {a, b}));
    });
    return nearest;
}

std::pair<Where, int> pointWhere(const std::vector<QPointF>& points, const QPointF& position, const QSize& size)
{
    const int vertex = vertexAt(points, position, size);
    if (vertex != -1)
        return {Where::Vertex, vertex};
    return {windingNumber(points, position) != 0 ? Where::Inside : Where::Elsewhere, -1};
}

} // namespace

GraphicsPolygon::GraphicsPolygon(std::vector<QPointF> vertices, const QColor& color, const QVariant& fill,
                                 const QString& text)
    : GraphicsBase(Polygon)
    , points(std::move(vertices))
    , drawColor(color)
    , fillColor(fill)
    , tips(text)
{
}

GraphicsPolygon& GraphicsPolygon::operator=(const GraphicsPolygon& other)
{
    GraphicsBase::operator=(other);
    points = other.points;
    drawColor = other.drawColor;
    fillColor = other.fillColor;
    tips = other.tips;
    movable = other.movable;
    resizable = other.resizable;
    closed = other.closed;
    showWH = other.showWH;
    where = Elsewhere;
    index = -1;
    return *this;
}

void GraphicsPolygon::mouseDown(const QPointF& position, const QSize& size)
{
    std::tie(where, index) = pointWhere(points, position, size);
}

void GraphicsPolygon::mouseUp(const QPointF&, const QSize&)
{
    where = Elsewhere;
    index = -1;
}

void GraphicsPolygon::mouseMove(const QPointF& previous, const QPointF& current, const QSize&)
{
    if (where == Vertex && resizable)
        dragVertexOf(points, index, current);
    else if (where == Inside && movable)
        dragAll(points.data(), points.size(), current - previous);
}

void GraphicsPolygon::render(void*, const QSize& size)
{
    const DrawColor color(drawColor);
    renderEdges(color, size);
    if (!tips.isEmpty() && !points.empty())
        renderText(color, tips, calculateCenter(points), size, kTextSize);
}

void GraphicsPolygon::renderEdges(const DrawColor& color, const QSize& size) const
{
    const size_t shown = std::min(points.size(), kShownVertices);
    for (size_t i = 0; i < shown; ++i) {
        if (showWH)
            renderLetters(color, i, size);
        if (i > 0)
            renderLine(color, points[i - 1], points[i], size, 1);
        if (selected)
            renderVertex(color, points[i], size, kVertexMarkSize);
    }
    if (points.size() >= 3)
        renderLine(color, points.front(), points.back(), size, 1);
}

void GraphicsPolygon::renderLetters(const DrawColor& color, size_t vertex, const QSize& size) const
{
    if (vertex == 1)
        renderText(color, QStringLiteral("H"), (points[0] + points[1]) / 2.0, size, kTextSize);
    else if (vertex == points.size() - 1)
        renderText(color, QStringLiteral("W"), (points.back() + points.front()) / 2.0, size, kTextSize);
}

bool GraphicsPolygon::contains(const QPointF& position, const QSize& size) const
{
    return pointWhere(points, position, size).first != Elsewhere;
}

int GraphicsPolygon::distance(const QPointF& position, const QSize& size) const
{
    if (creating)
        return 0;
    switch (pointWhere(points, position, size).first) {
    case Vertex:
        return 0;
    case Inside:
        return rankByEdge(distanceToEdge(points, position));
    default:
        return kMiss;
    }
}

QJsonObject GraphicsPolygon::toJson() const
{
    const size_t fixed = closed || points.empty() ? points.size() : points.size() - 1;
    QJsonObject object{{"tips", tips},
                       {"points", pointsToJson(points.data(), fixed)},
                       {"closed", closed},
                       {"drawColor", drawColor.name()}};
    writeId(object, id);
    return object;
}

ParsedGraphics parsePolygon(const QJsonObject& object)
{
    std::vector<QPointF> points;
    int id = -1;
    if (const auto error = readPoints(object, points, "src/graphics/GraphicsPolygon", 126))
        return {error, nullptr};
    if (const auto error = readId(object, id))
        return {error, nullptr};
    const auto polygon = std::make_shared<GraphicsPolygon>(std::move(points), Qt::red, QVariant(), QString());
    polygon->id = id;
    polygon->closed = parseOptional<bool>(object, "closed", true).second;
    readColor(object, "drawColor", polygon->drawColor);
    readFill(object, polygon->fillColor);
    if (const auto error = readTips(object, polygon->tips))
        return {error, nullptr};
    readEditRights(object, polygon->movable, polygon->resizable);
    polygon->showWH = parseOptional<bool>(object, "showWH", false).second;
    return {nullptr, polygon};
}

} // namespace quillmark::lumen_deck
