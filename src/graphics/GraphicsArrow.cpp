#include "src/graphics/GraphicsArrow.h"

#include <array>
#include <cmath>

namespace quillmark::lumen_deck {

void renderBlockArrow(const DrawColor& color, const QPointF& position, double angle, const QSize& size)
{
    const auto offset = [&](double pixels, double direction) {
        return QPointF(pixels * std::cos(direction) / size.width(), pixels * std::sin(direction) / size.height());
    };
    const double right = angle + 1.57075;
    const double left = angle - 1.57075;
    const QPointF a = position + offset(4, right);
    const QPointF b = a + offset(12, angle);
    const QPointF c = b + offset(6, right);
    const QPointF tip = position + offset(30, angle);
    const QPointF e = position + offset(4, left);
    const QPointF f = e + offset(12, angle);
    const QPointF g = f + offset(6, left);
    const std::array<QPointF, 8> outline{a, b, c, tip, g, f, e, a};
    for (size_t i = 1; i < outline.size(); ++i)
        renderLine(color, outline[i - 1], outline[i], size, 1);
}

GraphicsArrow::GraphicsArrow(const QColor& arrowColor, const QPointF& arrowPosition, double arrowAngle)
    : GraphicsBase(Arrow)
    , color(arrowColor)
    , position(arrowPosition)
    , angle(arrowAngle)
{
}

GraphicsArrow& GraphicsArrow::operator=(const GraphicsArrow& other)
{
    GraphicsBase::operator=(other);
    color = other.color;
    position = other.position;
    angle = other.angle;
    return *this;
}

void GraphicsArrow::render(void*, const QSize& size)
{
    render(DrawColor(color), size);
}

void GraphicsArrow::render(const DrawColor& drawColor, const QSize& size)
{
    renderBlockArrow(drawColor, position, angle, size);
}

} // namespace quillmark::lumen_deck
