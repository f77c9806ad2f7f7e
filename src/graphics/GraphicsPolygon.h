#pragma once

#include "src/graphics/GraphicsBase.h"

namespace quillmark::lumen_deck {

// A closed figure of straight edges, moved by its inside and shaped by its vertices.
class GraphicsPolygon : public GraphicsBase
{
    Q_OBJECT
public:
    enum Where
    {
        Vertex = 0,
        Inside = 2,
        Elsewhere = 3
    };

    GraphicsPolygon(std::vector<QPointF> vertices, const QColor& color, const QVariant& fill, const QString& text);

    using GraphicsBase::operator=;
    virtual GraphicsPolygon& operator=(const GraphicsPolygon& other);
    void mouseMove(const QPointF& previous, const QPointF& current, const QSize& size) override;
    void mouseDown(const QPointF& position, const QSize& size) override;
    void mouseUp(const QPointF& position, const QSize& size) override;
    void render(void* drawContext, const QSize& size) override;
    bool contains(const QPointF& position, const QSize& size) const override;
    int distance(const QPointF& position, const QSize& size) const override;
    QJsonObject toJson() const override;

    std::vector<QPointF> points;
    QColor drawColor;
    QVariant fillColor; // kept, not drawn
    QString tips;       // shown at the centre
    bool movable = true;
    bool resizable = true;
    int where = Elsewhere;
    int index = -1;      // the vertex under the press
    bool closed = true;  // a tool has ended the drawing; before that the last point follows the pointer
    bool showWH = false; // the letters H and W on the first and the last edge

private:
    void renderEdges(const DrawColor& color, const QSize& size) const;
    void renderLetters(const DrawColor& color, size_t vertex, const QSize& size) const;
};

ParsedGraphics parsePolygon(const QJsonObject& object);

} // namespace quillmark::lumen_deck
