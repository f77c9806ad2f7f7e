#include "src/graphics/GraphicsRectangle.h"

#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

#include <algorithm>
#include <array>

namespace quillmark::lumen_deck {
namespace {

using Where = GraphicsRectangle::Where;
using Corners = std::array<QPointF, 4>; // in the order of Where

Corners cornersOf(const QRectF& rect)
{
    return {rect.topLeft(), rect.topRight(), rect.bottomLeft(), rect.bottomRight()};
}

// The bottom right corner comes first: on a rectangle of no size it is the one that a drawing drags.
Where pointWhere(const QRectF& rect, const QPointF& point, const QSize& size)
{
    const Corners corners = cornersOf(rect);
    const double tolerance = hitTolerance(size);
    for (const Where corner : {Where::BottomRight, Where::TopLeft, Where::TopRight, Where::BottomLeft}) {
        if (tolerance > pointDistance(point, corners[corner]))
            return corner;
    }
    const bool inside = rect.x() < point.x() && point.x() < rect.x() + rect.width() && rect.y() < point.y() &&
                        point.y() < rect.y() + rect.height();
    return inside ? Where::Inside : Where::Elsewhere;
}

double distanceToEdge(const QRectF& rect, const QPointF& point)
{
    const Corners c = cornersOf(rect);
    return std::min({pointLineDistance(point, {c[0], c[1]}), pointLineDistance(point, {c[1], c[3]}),
                     pointLineDistance(point, {c[3], c[2]}), pointLineDistance(point, {c[2], c[0]})});
}

// The corners in the order of a report: the pressed one first, then along its vertical side.
Corners cornersFrom(const QRectF& rect, Where pressed)
{
    static constexpr size_t kOrders[][4] = {{0, 2, 3, 1}, {1, 3, 2, 0}, {2, 0, 1, 3}, {3, 1, 0, 2}};
    const auto& order = kOrders[pressed < Where::Inside ? pressed : Where::TopLeft];
    const Corners c = cornersOf(rect);
    return {c[order[0]], c[order[1]], c[order[2]], c[order[3]]};
}

std::shared_ptr<JsonError> readRect(const QJsonObject& object, QRectF& rect)
{
    const auto [error, value] = parseRequired<QJsonArray>(object, "points");
    if (error)
        return error;
    const QJsonArray points = value.toJsonArray();
    if (points.size() != 4 || !points[0].isArray() || !points[2].isArray())
        return constructJsonError("rectangle descriptor should contains at least four points.", object,
                                  "src/graphics/GraphicsRectangle", 72);
    const auto [firstError, first] = parsePointF(points[0].toArray());
    if (firstError)
        return firstError;
    const auto [oppositeError, opposite] = parsePointF(points[2].toArray());
    const QPointF extent = opposite.toPointF() - first.toPointF();
    rect = QRectF(first.toPointF(), QSizeF(extent.x(), extent.y()));
    return oppositeError;
}

} // namespace

GraphicsRectangle::GraphicsRectangle(const QRectF& rectangle)
    : GraphicsBase(Rectangle)
    , rect(rectangle)
{
}

GraphicsRectangle& GraphicsRectangle::operator=(const GraphicsRectangle& other)
{
    GraphicsBase::operator=(other);
    rect = other.rect;
    drawColor = other.drawColor;
    fillColor = other.fillColor;
    tips = other.tips;
    movable = other.movable;
    resizable = other.resizable;
    widthHeightRate = other.widthHeightRate;
    tipsPos = other.tipsPos;
    where = Elsewhere;
    return *this;
}

void GraphicsRectangle::mouseDown(const QPointF& position, const QSize& size)
{
    rect = rect.normalized();
    where = pointWhere(rect, position, size);
    if (where == Elsewhere)
        return;
    pressPoint = position;
    pressSize = size;
}

void GraphicsRectangle::mouseUp(const QPointF& position, const QSize&)
{
    if (where != Elsewhere)
        releasePoint = position;
    where = Elsewhere;
}

void GraphicsRectangle::mouseMove(const QPointF& previous, const QPointF& current, const QSize&)
{
    if (where == Elsewhere)
        return;
    if (resizable && where != Inside)
        dragCorner(current);
    else if (movable)
        move(current - previous);
}

void GraphicsRectangle::move(const QPointF& delta)
{
    const QRectF moved = rect.normalized();
    if (moved.x() + delta.x() > 0.0 && moved.y() + delta.y() > 0.0 && moved.x() + moved.width() + delta.x() < 1.0 &&
        moved.y() + moved.height() + delta.y() < 1.0)
        rect.translate(delta);
}

void GraphicsRectangle::dragCorner(const QPointF& to)
{
    const bool left = where == TopLeft || where == BottomLeft;
    const bool top = where == TopLeft || where == TopRight;
    double y = to.y();
    if (widthHeightRate > 0.0) {
        const double height = (left ? rect.x() + rect.width() - to.x() : to.x() - rect.x()) * widthHeightRate;
        y = top ? rect.y() + rect.height() - height : rect.y() + height;
    }
    if (!insideWindow({to.x(), y}))
        return;
    left ? rect.setLeft(to.x()) : rect.setWidth(to.x() - rect.x());
    top ? rect.setTop(y) : rect.setHeight(y - rect.y());
}

void GraphicsRectangle::render(void*, const QSize& size)
{
    const DrawColor color(drawColor);
    if (fillColor.isValid())
        renderRectangle(DrawColor(fillColor.value<QColor>()), rect, size, true);
    renderRectangle(color, rect, size, false);
    const Corners corners = cornersOf(rect);
    if (selected) {
        renderRectangle(color, rect, size, false);
        for (const QPointF& corner : corners)
            renderVertex(color, corner, size, kVertexMarkSize);
    }
    if (!tips.isEmpty())
        renderText(color, tips, calculateCenter(corners.data(), corners.size()), size, kTextSize);
}

bool GraphicsRectangle::contains(const QPointF& position, const QSize& size) const
{
    return pointWhere(rect.normalized(), position, size) != Elsewhere;
}

int GraphicsRectangle::distance(const QPointF& position, const QSize& size) const
{
    if (creating)
        return 0;
    const QRectF normalized = rect.normalized();
    const Where hit = pointWhere(normalized, position, size);
    if (hit == Elsewhere)
        return kMiss;
    return hit == Inside ? rankByEdge(distanceToEdge(normalized, position)) : 0;
}

QJsonObject GraphicsRectangle::toJson() const
{
    const QRectF normalized = rect.normalized();
    const Corners corners = cornersFrom(normalized, pointWhere(normalized, pressPoint, pressSize));
    QJsonObject object{{"points", pointsToJson(corners.data(), corners.size())},
                       {"tips", QString("")},
                       {"drawColor", drawColor.name()}};
    writeId(object, id);
    return object;
}

ParsedGraphics parseRectangle(const QJsonObject& object)
{
    QRectF rect;
    int id = -1;
    if (const auto error = readRect(object, rect))
        return {error, nullptr};
    if (const auto error = readId(object, id))
        return {error, nullptr};
    const auto rectangle = std::make_shared<GraphicsRectangle>(rect);
    rectangle->id = id;
    readEditRights(object, rectangle->movable, rectangle->resizable);
    readColor(object, "drawColor", rectangle->drawColor);
    rectangle->tipsPos = parseOptional<int>(object, "tipsPos", 0).second;
    readFill(object, rectangle->fillColor);
    readTips(object, rectangle->tips); // what is no text counts as none
    const double rate = parseOptional<double>(object, "widthHeightRate", 1.0).second;
    if (rate > 0.0)
        rectangle->widthHeightRate = rate;
    return {nullptr, rectangle};
}

} // namespace quillmark::lumen_deck
