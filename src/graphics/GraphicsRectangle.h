#pragma once

#include "src/graphics/GraphicsBase.h"

namespace quillmark::lumen_deck {

// An axis-parallel rectangle, moved by its inside and resized by its corners; its edges are no handles.
class GraphicsRectangle : public GraphicsBase
{
    Q_OBJECT
public:
    enum Where
    {
        TopLeft,
        TopRight,
        BottomLeft,
        BottomRight,
        Inside,
        Elsewhere
    };

    explicit GraphicsRectangle(const QRectF& rectangle);

    using GraphicsBase::operator=;
    virtual GraphicsRectangle& operator=(const GraphicsRectangle& other);
    void mouseMove(const QPointF& previous, const QPointF& current, const QSize& size) override;
    void mouseDown(const QPointF& position, const QSize& size) override;
    void mouseUp(const QPointF& position, const QSize& size) override;
    void render(void* drawContext, const QSize& size) override;
    bool contains(const QPointF& position, const QSize& size) const override;
    int distance(const QPointF& position, const QSize& size) const override;
    QJsonObject toJson() const override;

    QRectF rect; // negative in width or height when drawn leftwards or upwards, until the next press
    QColor drawColor = Qt::red;
    QVariant fillColor; // a QColor when the rectangle is filled
    QString tips;       // shown in the middle
    bool movable = true;
    bool resizable = true;
    double widthHeightRate = 1.0; // height to width that a corner drag holds; 0 or less: none
    QPointF pressPoint;           // of the last press that hit
    QPointF releasePoint;
    QSize pressSize; // the window at that press
    int where = Elsewhere;
    int tipsPos = 0;

private:
    void move(const QPointF& delta);
    void dragCorner(const QPointF& to);
};

ParsedGraphics parseRectangle(const QJsonObject& object);

} // namespace quillmark::lumen_deck
