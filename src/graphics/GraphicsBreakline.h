#pragma once

#include "src/graphics/GraphicsBase.h"

namespace quillmark::lumen_deck {

// An open chain of points; a segment can carry a side arrow.
class GraphicsBreakline : public GraphicsBase
{
    Q_OBJECT
public:
    enum Where
    {
        Vertex = 0,
        Edge = 1,
        Elsewhere = 3
    };

    GraphicsBreakline(std::vector<QPointF> chain, const QColor& color, const QString& text);

    using GraphicsBase::operator=;
    virtual GraphicsBreakline& operator=(const GraphicsBreakline& other);
    void mouseMove(const QPointF& previous, const QPointF& current, const QSize& size) override;
    void mouseDown(const QPointF& position, const QSize& size) override;
    void mouseUp(const QPointF& position, const QSize& size) override;
    void render(void* drawContext, const QSize& size) override;
    bool contains(const QPointF& position, const QSize& size) const override;
    int distance(const QPointF& position, const QSize& size) const override;
    QJsonObject toJson() const override;

    std::vector<QPointF> points;
    QColor drawColor;
    QString tips;
    bool movable = true;
    bool resizable = true;
    int where = Elsewhere;
    int index = -1;     // the vertex, or the second vertex of the edge
    bool closed = true; // a tool has ended the drawing
    int direction = 0;  // of the side arrows: 0 none, 1 or 2
};

ParsedGraphics parseBreakline(const QJsonObject& object);

} // namespace quillmark::lumen_deck
