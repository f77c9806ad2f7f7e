#pragma once

#include "src/util/Errors.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonObject>
#include <QLineF>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QVariant>

#include <memory>
#include <utility>
#include <vector>

namespace quillmark::lumen_deck {

// A shape over the video of one play window. Positions are relative: (0, 0) is the window's left top corner and (1, 1)
// its right bottom corner; `size` is the window in pixels wherever pixels matter.
//
// What `render` reads and an edit writes is guarded by the lock of the view that holds the shape: the view takes it
// around each `render`, and whoever changes a shape in a view takes it by GraphicsView::lockShapes.
class GraphicsBase : public QObject
{
    Q_OBJECT
public:
    enum GraphicsType
    {
        Any, // a wildcard in queries; no shape has it
        None,
        Line,
        Rectangle,
        Overlay,
        Polygon,
        Grid,
        Arrow,
        Point,
        Breakline,
    };
    static constexpr int kMiss = 10000; // the rank of a miss, see distance

    explicit GraphicsBase(GraphicsType type);

    // Takes over the shape of `other`, which has the same type. The object's own name, its place in the drawing
    // (`temporary`, `creating`) and what the mouse holds are not part of it.
    virtual GraphicsBase& operator=(const GraphicsBase& other);

    virtual void mouseMove(const QPointF& previous, const QPointF& current, const QSize& size) = 0;
    virtual void mouseDown(const QPointF& position, const QSize& size) = 0;
    virtual void mouseUp(const QPointF& position, const QSize& size) = 0;
    virtual void render(void* drawContext, const QSize& size) = 0; // draw thread, its GL context current
    virtual bool contains(const QPointF& position, const QSize& size) const = 0;
    virtual int distance(const QPointF& position, const QSize& size) const = 0; // a rank: the smallest below kMiss wins
    virtual QJsonObject toJson() const = 0;

    GraphicsType type() const { return type_; }

    bool selected = false;
    int id = -1;            // the host's number; -1 for none
    bool temporary = false; // the view removes the shape once it is finished
    bool creating = true;   // a tool still draws it

private:
    const GraphicsType type_;
};

// What a parser of a shape gives: an error or a shape, or neither where the document switches the shape off.
using ParsedGraphics = std::pair<std::shared_ptr<ErrorBase>, std::shared_ptr<GraphicsBase>>;

// Geometry, in relative coordinates.

double pointDistance(const QPointF& a, const QPointF& b);
double pointLineDistance(const QPointF& point, const QLineF& line); // to the segment, not to the endless line
QPointF calculateCenter(const QPointF* points, size_t count);       // at least one point
QPointF calculateCenter(const std::vector<QPointF>& points);
double hitTolerance(const QSize& size);  // a press closer than this is on the vertex, corner or edge
bool insideWindow(const QPointF& point); // 0..1, bounds included
QRectF rectPosToOpenGL(const QRectF& rect);
QPointF pointPosToOpenGL(const QPointF& point);

// A QPointF in the QVariant; any finite coordinates pass.
std::pair<std::shared_ptr<JsonError>, QVariant> parsePointF(const QJsonArray& array);

// Drawing, in the GL context that is current on the calling thread. Every stroke is one pixel wide.

constexpr int kVertexMarkSize = 10;
constexpr int kTextSize = 16;

struct DrawColor
{
    DrawColor() = default;
    explicit DrawColor(const QColor& color); // always opaque
    DrawColor(float r, float g, float b, float a);

    float red = 1.0F;
    float green = 1.0F;
    float blue = 1.0F;
    float alpha = 1.0F;
};

void renderLine(const DrawColor& color, const QPointF& from, const QPointF& to, const QSize& size, int width);
void renderLine(const DrawColor& color, const QLineF& line, const QSize& size, int width);
void renderVertex(const DrawColor& color, const QPointF& point, const QSize& size, int pointSize);
void renderRectangle(const DrawColor& color, const QRectF& rect, const QSize& size, bool fill);

bool strokesBlend(); // whether what is drawn twice looks other than what is drawn once

void emitStrokes(const QRectF& rect); // the sides of a rectangle, between glBegin(GL_LINES) and glEnd

// `position` is the text's left top corner. Returns the estimated width in pixels, drawn or not.
int renderText(const DrawColor& color, const QString& text, const QPointF& position, const QSize& size, int fontSize);
int estimatedWidth(const QString& text, int fontSize);

struct TextFrame
{
    DrawColor color;
    QRectF rect;
};
// The pixels of renderText, the outline of the frame and renderText once more, for less.
void renderFramedText(const DrawColor& color, const QString& text, const QPointF& position, const TextFrame& frame,
                      const QSize& size, int fontSize);

} // namespace quillmark::lumen_deck
