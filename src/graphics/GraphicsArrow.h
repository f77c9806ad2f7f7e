#pragma once

#include "src/graphics/GraphicsBase.h"

namespace quillmark::lumen_deck {

// The outline of a block arrow. `angle` is in radians: 0 points right, and it grows towards the bottom.
void renderBlockArrow(const DrawColor& color, const QPointF& position, double angle, const QSize& size);

// A block arrow as a shape. No view holds one, and the mouse never finds it.
class GraphicsArrow : public GraphicsBase
{
    Q_OBJECT
public:
    GraphicsArrow(const QColor& arrowColor, const QPointF& arrowPosition, double arrowAngle);

    using GraphicsBase::operator=;
    virtual GraphicsArrow& operator=(const GraphicsArrow& other);
    void mouseMove(const QPointF&, const QPointF&, const QSize&) override {}
    void mouseDown(const QPointF&, const QSize&) override {}
    void mouseUp(const QPointF&, const QSize&) override {}
    void render(void* drawContext, const QSize& size) override;
    virtual void render(const DrawColor& drawColor, const QSize& size);
    bool contains(const QPointF&, const QSize&) const override { return false; }
    int distance(const QPointF&, const QSize&) const override { return kMiss; }
    QJsonObject toJson() const override { return {}; }

    QColor color;
    QPointF position;
    double angle;
};

} // namespace quillmark::lumen_deck
