#pragma once

#include "src/graphics/GraphicsBase.h"
#include "src/graphics/PeopleCount.h"

namespace quillmark::lumen_deck {

// A segment, with the marks of a counting line as `lineType` and its direction ask for.
class GraphicsLine : public GraphicsBase
{
    Q_OBJECT
public:
    enum Where
    {
        Body,
        FirstEnd,
        SecondEnd,
        Elsewhere,
        Demarcation,
        CutOff
    };

    GraphicsLine(const QLineF& segment, const QColor& color, const QString& text);

    using GraphicsBase::operator=;
    virtual GraphicsLine& operator=(const GraphicsLine& other);
    void mouseMove(const QPointF& previous, const QPointF& current, const QSize& size) override;
    void mouseDown(const QPointF& position, const QSize& size) override;
    void mouseUp(const QPointF& position, const QSize& size) override;
    void render(void* drawContext, const QSize& size) override;
    bool contains(const QPointF& position, const QSize& size) const override;
    int distance(const QPointF& position, const QSize& size) const override;
    QJsonObject toJson() const override;

    // The marks along the line, each a fraction of it from its first end.
    const QJsonArray& cutOffPositions() const { return cutOffPositions_; }
    void setCutOffPositions(const QJsonArray& positions);

    int lineKind = 2;
    QColor drawColor;
    QLineF line;
    QString tips; // shown at the first end
    bool movable = true;
    bool resizable = true;
    int crossDirection = 0; // block arrows: 0 none, 1 to one side, 2 to the other, 3 both
    int sideDirection = 0;  // an arrow head: 0 none, 1 at the second end, 2 at the first
    int lineType = 0;
    int where = Elsewhere;
    bool showPDCLine = false;
    bool showShoulderLine = false;
    double demarcationPosition = -1.0; // a fraction of the line from its first end
    int cutOffMode = 0;                // 0 none; 1 and 2 are also the directions of the side mark
    int grabbedCutOff = -1;            // index of the mark under the press

    const std::shared_ptr<PeopleCounts> pdcLengths = std::make_shared<PeopleCounts>();
    std::unique_ptr<PeopleCountRegistration> registration; // main thread

private:
    std::pair<Where, int> pointWhere(const QPointF& point, const QSize& size) const;
    double alongLine(const QPointF& previous, const QPointF& current) const;
    void dragCutOff(double step);
    bool showsDemarcation() const;
    QPointF demarcationPoint() const;
    void renderCrossDirection(const DrawColor& color, const QSize& size) const;
    void renderSideDirection(const DrawColor& color, const QSize& size) const;
    void renderCutOffMode(const DrawColor& color, const QSize& size) const;
    void renderParallels(const DrawColor& color, const QSize& size) const;
    void renderTick(const DrawColor& color, double fraction, const QSize& size) const;

    QJsonArray cutOffPositions_;       // as the host gave them
    std::vector<double> cutOffPlaces_; // the same as numbers, for the draw thread
};

ParsedGraphics parseLine(const QJsonObject& object);

// A segment of the given length parallel to a-b, level with its left end.
void GetParallel(QPointF a, QPointF b, double offset, double length, QPointF& outA, QPointF& outB);

} // namespace quillmark::lumen_deck
