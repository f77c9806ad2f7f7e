#include "src/graphics/GraphicsLine.h"

#include "src/graphics/GraphicsArrow.h"
#include "src/graphics/ShapeParts.h"
#include "src/util/JsonUtil.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quillmark::lumen_deck {
namespace {

double asStored(double fraction)
{
    return static_cast<float>(fraction);
}

// What the key "direction" means for a line of each type: the values from 0 below `count` set `field` to one more.
struct DirectionRow
{
    int lineType;
    int GraphicsLine::*field;
    int count;
};
constexpr std::array<DirectionRow, 3> kDirections{{
    {1, &GraphicsLine::sideDirection, 2},
    {3, &GraphicsLine::crossDirection, 3},
    {4, &GraphicsLine::cutOffMode, 2},
}};
constexpr int kCountingLine = 4;

void readCountingMarks(const QJsonObject& object, GraphicsLine& line)
{
    const double position = parseOptional<double>(object, "demarcationLineWidth", -1.0).second;
    if (position > 0.0)
        line.demarcationPosition = position;
    line.showPDCLine = parseOptional<bool>(object, "showPDCLine", false).second;
    line.showShoulderLine = parseOptional<bool>(object, "showShoulderLine", false).second;
}

// Type and direction count only together.
void readDirection(const QJsonObject& object, GraphicsLine& line)
{
    const QVariant direction = parseOptional<int>(object, "direction").second;
    const QVariant lineType = parseOptional<int>(object, "lineType").second;
    if (!direction.isValid() || !lineType.isValid())
        return;
    line.lineType = lineType.toInt();
    for (const DirectionRow& row : kDirections) {
        if (row.lineType == line.lineType && direction.toInt() >= 0 && direction.toInt() < row.count)
            line.*row.field = direction.toInt() + 1;
    }
    if (line.lineType == kCountingLine)
        readCountingMarks(object, line);
}

void writeDirection(QJsonObject& object, const GraphicsLine& line)
{
    if (line.lineType == 3 && line.crossDirection >= 1 && line.crossDirection <= 3)
        object["direction"] = line.crossDirection - 1;
    if (line.lineType == kCountingLine && line.cutOffMode >= 0 && line.cutOffMode <= 2)
        object["direction"] = std::max(0, line.cutOffMode - 1);
}

void writeEditType(QJsonObject& object, const GraphicsLine& line)
{
    if (line.movable)
        object["editType"] = line.resizable ? 0 : 1;
    else if (!line.resizable)
        object["editType"] = 2;
}

std::shared_ptr<JsonError> readSegment(const QJsonObject& object, QLineF& segment)
{
    const auto [error, value] = parseRequired<QJsonArray>(object, "points");
    if (error)
        return error;
    const QJsonArray points = value.toJsonArray();
    if (points.size() != 2 || !points[0].isArray() || !points[1].isArray())
        return constructJsonError(
            "line json descriptor must contains an array of points descriptor of two points descriptor", object,
            "src/graphics/GraphicsLine", 90);
    const auto [firstError, first] = parsePointF(points[0].toArray());
    if (firstError)
        return firstError;
    const auto [secondError, second] = parsePointF(points[1].toArray());
    segment = QLineF(first.toPointF(), second.toPointF());
    return secondError;
}

std::shared_ptr<JsonError> readCutOffPositions(const QJsonObject& object, GraphicsLine& line)
{
    const auto [error, positions] = parseOptional<QJsonArray>(object, "cutOffPositions");
    if (positions.isValid())
        line.setCutOffPositions(positions.toJsonArray());
    return error;
}

} // namespace

GraphicsLine::GraphicsLine(const QLineF& segment, const QColor& color, const QString& text)
    : GraphicsBase(Line)
    , drawColor(color)
    , line(segment)
    , tips(text)
{
}

GraphicsLine& GraphicsLine::operator=(const GraphicsLine& other)
{
    GraphicsBase::operator=(other);
    drawColor = other.drawColor;
    line = other.line;
    tips = other.tips;
    movable = other.movable;
    resizable = other.resizable;
    crossDirection = other.crossDirection;
    sideDirection = other.sideDirection;
    lineType = other.lineType;
    demarcationPosition = asStored(other.demarcationPosition);
    cutOffMode = other.cutOffMode;
    showPDCLine = other.showPDCLine;
    showShoulderLine = other.showShoulderLine;
    setCutOffPositions(other.cutOffPositions_);
    return *this;
}

void GraphicsLine::setCutOffPositions(const QJsonArray& positions)
{
    cutOffPositions_ = positions;
    cutOffPlaces_.clear();
    std::transform(positions.begin(), positions.end(), std::back_inserter(cutOffPlaces_),
                   [](const QJsonValue& position) { return position.toDouble(); });
}

bool GraphicsLine::showsDemarcation() const
{
    return cutOffMode != 0 && demarcationPosition > 0.0;
}

QPointF GraphicsLine::demarcationPoint() const
{
    return line.pointAt(demarcationPosition);
}

// The marks come before the ends, or one that lies on an end could not be taken away from it.
std::pair<GraphicsLine::Where, int> GraphicsLine::pointWhere(const QPointF& point, const QSize& size) const
{
    const double tolerance = hitTolerance(size);
    const auto isAt = [&](const QPointF& place) { return tolerance > pointDistance(place, point); };
    if (showsDemarcation() && isAt(line.pointAt(asStored(demarcationPosition))))
        return {Demarcation, -1};
    const auto mark = std::find_if(cutOffPlaces_.begin(), cutOffPlaces_.end(),
                                   [&](double fraction) { return isAt(line.pointAt(fraction)); });
    if (mark != cutOffPlaces_.end())
        return {CutOff, static_cast<int>(mark - cutOffPlaces_.begin())};
    if (isAt(line.p1()))
        return {FirstEnd, -1};
    if (isAt(line.p2()))
        return {SecondEnd, -1};
    return {tolerance > pointLineDistance(point, line) ? Body : Elsewhere, -1};
}

void GraphicsLine::mouseDown(const QPointF& position, const QSize& size)
{
    std::tie(where, grabbedCutOff) = pointWhere(position, size);
}

void GraphicsLine::mouseUp(const QPointF&, const QSize&)
{
    where = Elsewhere;
    grabbedCutOff = -1;
}

void GraphicsLine::mouseMove(const QPointF& previous, const QPointF& current, const QSize&)
{
    std::array<QPointF, 2> ends{line.p1(), line.p2()};
    if (where == Body && movable)
        dragAll(ends.data(), ends.size(), current - previous);
    else if (where == FirstEnd && resizable)
        dragVertex(ends[0], current);
    else if (where == SecondEnd && resizable)
        dragVertex(ends[1], current);
    line.setPoints(ends[0], ends[1]);

    if (!movable && !resizable)
        return;
    const double step = alongLine(previous, current);
    if (where == Demarcation && demarcationPosition + step > 0.0 && demarcationPosition + step < 1.0)
        demarcationPosition += step;
    else if (where == CutOff)
        dragCutOff(step);
}

// The drag, projected on the line. Not divided by the line's length: a short line's marks move slowly.
double GraphicsLine::alongLine(const QPointF& previous, const QPointF& current) const
{
    const QLineF drag(previous, current);
    return std::cos(line.angleTo(drag) / 180.0 * 3.14159265) * drag.length();
}

void GraphicsLine::dragCutOff(double step)
{
    if (grabbedCutOff < 0 || grabbedCutOff >= cutOffPositions_.size())
        return;
    double& place = cutOffPlaces_[static_cast<size_t>(grabbedCutOff)];
    if (place + step <= 0.0 || place + step >= 1.0)
        return;
    place += step;
    cutOffPositions_[grabbedCutOff] = place;
}

void GraphicsLine::render(void*, const QSize& size)
{
    const DrawColor color(drawColor);
    renderLine(color, line, size, 1);
    if (selected) {
        renderVertex(color, line.p1(), size, kVertexMarkSize);
        renderVertex(color, line.p2(), size, kVertexMarkSize);
    }
    renderCrossDirection(color, size);
    renderSideDirection(color, size);
    if (!tips.isEmpty())
        renderText(DrawColor(1.0F, 0.0F, 0.0F, 1.0F), tips, line.p1(), size, kTextSize);
    if (cutOffMode != 0)
        renderCutOffMode(color, size);
    for (const double fraction : cutOffPlaces_)
        renderTick(color, fraction, size);
}

void GraphicsLine::renderCrossDirection(const DrawColor& color, const QSize& size) const
{
    if (crossDirection == 0)
        return;
    constexpr double kOneSide = 1.57075;
    constexpr double kOtherSide = 4.71225;
    const double angle = std::atan2(line.dy(), line.dx());
    const QPointF middle = (line.p1() + line.p2()) / 2.0;
    if (crossDirection == 1 || crossDirection == 3)
        renderBlockArrow(color, middle, angle + kOneSide, size);
    if (crossDirection == 2 || crossDirection == 3)
        renderBlockArrow(color, middle, angle + kOtherSide, size);
    const QPointF aside(40.0 / size.width() * std::cos(angle + kOneSide),
                        40.0 / size.height() * std::sin(angle + kOneSide));
    renderText(color, QStringLiteral("B"), middle + aside, size, kTextSize);
    renderText(color, QStringLiteral("A"), middle - aside, size, kTextSize);
}

void GraphicsLine::renderSideDirection(const DrawColor& color, const QSize& size) const
{
    if (sideDirection == 1)
        renderArrow(color, line, size);
    else if (sideDirection == 2)
        renderArrow(color, QLineF(line.p2(), line.p1()), size);
}

void GraphicsLine::renderCutOffMode(const DrawColor& color, const QSize& size) const
{
    if (showsDemarcation())
        renderTick(color, demarcationPosition, size);
    if (showShoulderLine && demarcationPosition != 0.0)
        renderLine(color, line.p1(), demarcationPoint(), size, 1);
    if (showPDCLine && !line.isNull())
        renderParallels(color, size);
    renderSideMark(color, line, cutOffMode, size);
}

// Eight strokes to either side. One without data has no place.
void GraphicsLine::renderParallels(const DrawColor& color, const QSize& size) const
{
    for (size_t i = 0; i < PeopleCounts::kCount; ++i) {
        const double length = pdcLengths->length(i);
        if (!(length > 0.0))
            continue;
        const bool forward = (cutOffMode == 1) == (i < 8);
        QPointF from;
        QPointF to;
        GetParallel(forward ? line.p1() : line.p2(), forward ? line.p2() : line.p1(),
                    static_cast<double>(i % 8) * 0.015, length, from, to);
        renderLine(color, from, to, size, 1);
    }
}

void GraphicsLine::renderTick(const DrawColor& color, double fraction, const QSize& size) const
{
    const QPointF place = line.pointAt(fraction);
    QLineF tick(place, place + QPointF(line.dy(), -line.dx()));
    tick.setLength(25.0 / size.width());
    renderLine(color, tick.translated(-tick.dx() / 2.0, -tick.dy() / 2.0), size, 1);
}

bool GraphicsLine::contains(const QPointF& position, const QSize& size) const
{
    return pointWhere(position, size).first != Elsewhere;
}

int GraphicsLine::distance(const QPointF& position, const QSize& size) const
{
    return pointWhere(position, size).first != Elsewhere ? 100 : kMiss;
}

QJsonObject GraphicsLine::toJson() const
{
    const std::array<QPointF, 2> ends{line.p1(), line.p2()};
    QJsonObject object{
        {"lineType", lineType}, {"points", pointsToJson(ends.data(), ends.size())}, {"drawColor", drawColor.name()}};
    writeId(object, id);
    writeEditType(object, *this);
    writeDirection(object, *this);
    if (lineType == kCountingLine && demarcationPosition > 0.0)
        object["demarcationPoint"] = QJsonArray{pointToJson(line.p1()), pointToJson(demarcationPoint())};
    if (!cutOffPositions_.isEmpty())
        object["cutOffPositions"] = cutOffPositions_;
    return object;
}

ParsedGraphics parseLine(const QJsonObject& object)
{
    QLineF segment;
    int id = -1;
    if (const auto error = readSegment(object, segment))
        return {error, nullptr};
    if (const auto error = readId(object, id))
        return {error, nullptr};
    const auto line = std::make_shared<GraphicsLine>(segment, Qt::red, QString());
    line->id = id;
    readEditRights(object, line->movable, line->resizable);
    readColor(object, "drawColor", line->drawColor);
    readDirection(object, *line);
    if (const auto error = readTips(object, line->tips))
        return {error, nullptr};
    if (const auto error = readCutOffPositions(object, *line))
        return {error, nullptr};
    return {nullptr, line};
}

namespace {

struct Vector
{
    float x;
    float y;
};
Vector operator+(Vector a, Vector b)
{
    return {a.x + b.x, a.y + b.y};
}
Vector operator-(Vector a, Vector b)
{
    return {a.x - b.x, a.y - b.y};
}
Vector operator*(float factor, Vector v)
{
    return {factor * v.x, factor * v.y};
}
Vector operator/(Vector v, float divisor)
{
    return {v.x / divisor, v.y / divisor};
}
float lengthOf(Vector v)
{
    return std::sqrt(v.x * v.x + v.y * v.y);
}
Vector vectorOf(const QPointF& point)
{
    return {static_cast<float>(point.x()), static_cast<float>(point.y())};
}

// The way from the middle of a-b to its left end; up or down where the line is vertical.
Vector slideToEnd(Vector a, Vector from, Vector shift, float room)
{
    if ((room >= 0.0F && shift.x < 0.0F) || (room < 0.0F && shift.x > 0.0F))
        return shift;
    if (shift.x == 0.0F)
        return {0.0F, from.x > a.x ? -shift.y : shift.y};
    return -1.0F * shift;
}

} // namespace

// In single precision throughout.
void GetParallel(QPointF a, QPointF b, double offset, double length, QPointF& outA, QPointF& outB)
{
    const Vector start = vectorOf(a);
    const Vector whole = vectorOf(b) - start;
    const float wholeLength = lengthOf(whole);
    const Vector along = whole / wholeLength;
    const Vector aside = static_cast<float>(offset) * Vector{-along.y, along.x};
    const Vector half = static_cast<float>(length) / 2.0F * along;
    const Vector middle = (start + vectorOf(b)) / 2.0F + aside;
    const Vector from = middle + half;
    const Vector to = middle - half;
    const float room = (wholeLength - lengthOf(to - from)) / 2.0F;
    const Vector back = (to - from) / lengthOf(to - from);
    const Vector slide = slideToEnd(start, from, room * back, room);
    outA = QPointF((from + slide).x, (from + slide).y);
    outB = QPointF((to + slide).x, (to + slide).y);
}

} // namespace quillmark::lumen_deck
