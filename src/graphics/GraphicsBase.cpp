#include "src/graphics/GraphicsBase.h"

#include <QUuid>

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace quillmark::lumen_deck {

GraphicsBase::GraphicsBase(GraphicsType type)
    : type_(type)
{
    setObjectName(QUuid::createUuid().toString());
}

GraphicsBase& GraphicsBase::operator=(const GraphicsBase& other)
{
    if (this == &other)
        return *this;
    Q_ASSERT(type_ == other.type_);
    setObjectName(QUuid::createUuid().toString());
    selected = false;
    id = other.id;
    return *this;
}

double pointDistance(const QPointF& a, const QPointF& b)
{
    const QPointF d = b - a;
    return std::sqrt(d.x() * d.x() + d.y() * d.y());
}

double pointLineDistance(const QPointF& point, const QLineF& line)
{
    const double a = pointDistance(line.p1(), line.p2());
    const double b = pointDistance(line.p1(), point);
    const double c = pointDistance(line.p2(), point);
    if (c == 0.0 || b == 0.0)
        return 0.0;
    if (a == 0.0 || c * c >= a * a + b * b)
        return b;
    if (b * b >= c * c + a * a)
        return c;
    const double s = (a + b + c) / 2.0;
    // Rounding takes the product below zero for a point on the line.
    return 2.0 * std::sqrt(std::max(0.0, s * (s - a) * (s - b) * (s - c))) / a;
}

QPointF calculateCenter(const QPointF* points, size_t count)
{
    const QPointF sum = std::accumulate(points, points + count, QPointF());
    return sum / static_cast<double>(count);
}

QPointF calculateCenter(const std::vector<QPointF>& points)
{
    return calculateCenter(points.data(), points.size());
}

double hitTolerance(const QSize& size)
{
    return 5.0 / std::max(size.width(), size.height());
}

bool insideWindow(const QPointF& point)
{
    return point.x() >= 0.0 && point.x() <= 1.0 && point.y() >= 0.0 && point.y() <= 1.0;
}

QRectF rectPosToOpenGL(const QRectF& rect)
{
    const double y = -2.0 * (rect.y() + rect.height() - 0.5);
    const double h = 2.0 * rect.height();
    if (rect.width() > 0.0)
        return {2.0 * (rect.x() - 0.5), y, 2.0 * rect.width(), h};
    return {2.0 * (rect.x() + rect.width() - 0.5), y, -2.0 * rect.width(), h};
}

QPointF pointPosToOpenGL(const QPointF& point)
{
    return {2.0 * (point.x() - 0.5), -2.0 * (point.y() - 0.5)};
}

std::pair<std::shared_ptr<JsonError>, QVariant> parsePointF(const QJsonArray& array)
{
    if (array.size() == 2 && array[0].isDouble() && array[1].isDouble())
        return {nullptr, QPointF(array[0].toDouble(), array[1].toDouble())};
    const QString message = QStringLiteral("point descriptor should be json array and should contains at least two "
                                           "entry of double");
    return {constructJsonError(message, array, QStringLiteral("src/graphics/GraphicsBase"), 524), {}};
}

DrawColor::DrawColor(const QColor& color)
    : DrawColor(static_cast<float>(color.red()) * 0.00390625F, static_cast<float>(color.green()) * 0.00390625F,
                static_cast<float>(color.blue()) * 0.00390625F, 1.0F)
{
}

DrawColor::DrawColor(float r, float g, float b, float a)
    : red(r)
    , green(g)
    , blue(b)
    , alpha(a)
{
}

namespace {

// Far outside the window a host's coordinates stop meaning pixels; this keeps the clipper's products finite.
float glCoordinate(double value)
{
    return static_cast<float>(std::clamp(value, -1e15, 1e15));
}

void setColor(const DrawColor& color)
{
    glColor4f(color.red, color.green, color.blue, color.alpha);
}

void addVertex(const QPointF& point)
{
    const QPointF p = pointPosToOpenGL(point);
    glVertex2f(glCoordinate(p.x()), glCoordinate(p.y()));
}

} // namespace

void renderLine(const DrawColor& color, const QPointF& from, const QPointF& to, const QSize&, int)
{
    glLineWidth(1.0F);
    glBegin(GL_LINES);
    setColor(color);
    addVertex(from);
    addVertex(to);
    glEnd();
}

void renderLine(const DrawColor& color, const QLineF& line, const QSize& size, int width)
{
    renderLine(color, line.p1(), line.p2(), size, width);
}

void renderVertex(const DrawColor& color, const QPointF& point, const QSize&, int pointSize)
{
    glPointSize(static_cast<float>(pointSize));
    glBegin(GL_POINTS);
    setColor(color);
    addVertex(point);
    glEnd();
}

namespace {

struct Corners
{
    float x1, y1, x2, y2;
};

Corners cornersOf(const QRectF& rect)
{
    const QRectF r = rectPosToOpenGL(rect);
    return {glCoordinate(r.x()), glCoordinate(r.y()), glCoordinate(r.x() + r.width()),
            glCoordinate(r.y() + r.height())};
}

} // namespace

// Four separate strokes have the pixels of a loop, and GL draws the strokes of many rectangles in one go.
void emitStrokes(const QRectF& rect)
{
    const auto [x1, y1, x2, y2] = cornersOf(rect);
    glVertex2f(x1, y1);
    glVertex2f(x2, y1);
    glVertex2f(x2, y1);
    glVertex2f(x2, y2);
    glVertex2f(x2, y2);
    glVertex2f(x1, y2);
    glVertex2f(x1, y2);
    glVertex2f(x1, y1);
}

void renderRectangle(const DrawColor& color, const QRectF& rect, const QSize&, bool fill)
{
    glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    if (fill) {
        const auto [x1, y1, x2, y2] = cornersOf(rect);
        setColor(color);
        glRectf(x1, y1, x2, y2);
        return;
    }
    glLineWidth(1.0F);
    glBegin(GL_LINES);
    setColor(color);
    emitStrokes(rect);
    glEnd();
}

bool strokesBlend()
{
    return glIsEnabled(GL_BLEND) == GL_TRUE;
}

} // namespace quillmark::lumen_deck
