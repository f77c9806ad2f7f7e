#pragma once

#include "src/graphics/GraphicsBase.h"

namespace quillmark::lumen_deck {

// A marked position.
class GraphicsPoint : public GraphicsBase
{
    Q_OBJECT
public:
    GraphicsPoint(const QPointF& position, const QColor& color, const QString& text);

    using GraphicsBase::operator=;
    virtual GraphicsPoint& operator=(const GraphicsPoint& other);
    void mouseMove(const QPointF& previous, const QPointF& current, const QSize& size) override;
    void mouseDown(const QPointF& position, const QSize& size) override;
    void mouseUp(const QPointF& position, const QSize& size) override;
    void render(void* drawContext, const QSize& size) override;
    bool contains(const QPointF& position, const QSize& size) const override;
    int distance(const QPointF& position, const QSize& size) const override;
    QJsonObject toJson() const override;

    QColor drawColor;
    QPointF point;
    QString tips;
    bool editable = false;
    int pointType = 0; // 0 circle, 1 cross; both look alike
    bool grabbed = false;
};

ParsedGraphics parsePoint(const QJsonObject& object);

} // namespace quillmark::lumen_deck
