// What a frame of shapes costs the processor: drawn by the library, by QPainter on a QOpenGLPaintDevice and by a
// QGraphicsScene, the same scene in the same GL context; and text alone, against a window-sized buffer that is uploaded
// after each character. The software rasteriser's own threads do not count: they do what a graphics card does.

#include "src/LayoutDetail.h"
#include "src/graphics/GraphicsView.h"
#include "src/graphics/ShapeTable.h"
#include "tests/graphics/LiteralText.h"
#include "tests/support/GlCanvas.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QJsonDocument>
#include <QOpenGLPaintDevice>
#include <QPainter>

#include <GL/gl.h>

#include <cmath>
#include <cstdio>
#include <functional>

using namespace quillmark::lumen_deck;

namespace {

const QSize kWindow(704, 576);
constexpr int kRows = 18;
constexpr int kColumns = 22;

struct Label
{
    QString text;
    QPointF position;
};

struct Scene
{
    QVector<QRectF> rectangles;
    QVector<QPolygonF> polygons;
    QVector<QLineF> lines;
    QVector<Label> texts;
    QVector<QRectF> cells;
};

// In relative coordinates.
Scene makeScene()
{
    Scene scene;
    for (int i = 0; i < 10; ++i) {
        const double x = 0.05 + 0.08 * i;
        scene.rectangles.append({x, 0.1 + 0.05 * i, 0.1, 0.12});
        scene.lines.append({x, 0.9, 0.95 - x, 0.2 + 0.03 * i});
        QPolygonF polygon;
        for (int corner = 0; corner < 6; ++corner)
            polygon << QPointF(x + 0.05 * std::cos(corner * 1.0472), 0.5 + 0.05 * std::sin(corner * 1.0472));
        scene.polygons.append(polygon);
    }
    for (int i = 0; i < 5; ++i)
        scene.texts.append({QStringLiteral("Gate %1 north side").arg(i + 1), {0.1, 0.1 + 0.15 * i}});
    for (int cell = 0; cell < kRows * kColumns; ++cell)
        scene.cells.append(
            {cell % kColumns / double(kColumns), cell / kColumns / double(kRows), 1.0 / kColumns, 1.0 / kRows});
    return scene;
}

QJsonArray toJson(const QVector<QPointF>& points)
{
    QJsonArray array;
    for (const QPointF& point : points)
        array.append(QJsonArray{point.x(), point.y()});
    return array;
}

void add(detail::GraphicsView& view, GraphicsBase::GraphicsType type, const QJsonObject& object)
{
    const ParsedGraphics parsed = shapeRow(type).parse(object);
    if (parsed.first)
        qFatal("%s", qPrintable(parsed.first->toString()));
    parsed.second->creating = false;
    view.addGraphics(parsed.second);
}

void fill(detail::GraphicsView& view, const Scene& scene)
{
    int id = 0;
    for (const QRectF& rect : scene.rectangles) {
        const QVector<QPointF> corners{rect.topLeft(), rect.topRight(), rect.bottomRight(), rect.bottomLeft()};
        add(view, GraphicsBase::Rectangle, {{"id", ++id}, {"points", toJson(corners)}});
    }
    for (const QPolygonF& polygon : scene.polygons)
        add(view, GraphicsBase::Polygon, {{"id", ++id}, {"points", toJson(polygon)}});
    for (const QLineF& line : scene.lines)
        add(view, GraphicsBase::Line, {{"id", ++id}, {"points", toJson({line.p1(), line.p2()})}});
    add(view, GraphicsBase::Grid,
        {{"gridMap", QString("fffffc").repeated(kRows)}, {"gridColNum", kColumns}, {"gridRowNum", kRows}});
    for (const Label& label : scene.texts)
        add(view, GraphicsBase::Overlay,
            {{"id", ++id}, {"enable", true}, {"text", label.text}, {"point", toJson({label.position})[0]}});
}

QTransform toPixels()
{
    return QTransform::fromScale(kWindow.width(), kWindow.height());
}

QFont textFont()
{
    const int id = QFontDatabase::addApplicationFont("/usr/share/fonts/opentype/unifont/unifont.otf");
    QFont font(QFontDatabase::applicationFontFamilies(id).value(0));
    font.setPixelSize(16);
    return font;
}

QRectF frameOf(const Label& label)
{
    return {label.position, QSizeF(16 * label.text.size() * 0.6 / kWindow.width(), 32.0 / 576)};
}

// The scene in pixels, as somebody who uses QPainter keeps it ready.
class PainterScene
{
public:
    explicit PainterScene(const Scene& scene)
    {
        for (const QRectF& rect : scene.rectangles)
            rectangles_.append(toPixels().mapRect(rect));
        for (const QPolygonF& polygon : scene.polygons)
            polygons_.append(toPixels().map(polygon));
        for (const QLineF& line : scene.lines)
            lines_.append(toPixels().map(line));
        for (const QRectF& cell : scene.cells)
            cells_.append(toPixels().mapRect(cell));
        for (const Label& label : scene.texts) {
            texts_.append({label.text, toPixels().map(label.position) + QPointF(0, 16)});
            frames_.append(toPixels().mapRect(frameOf(label)));
        }
    }

    // Each shape has a colour of its own, as the library's have; the cells of the grid share one.
    void draw(QPainter& painter) const
    {
        for (const QRectF& rect : rectangles_) {
            painter.setPen(Qt::red);
            painter.drawRect(rect);
        }
        for (const QPolygonF& polygon : polygons_) {
            painter.setPen(Qt::red);
            painter.drawPolygon(polygon);
        }
        for (const QLineF& line : lines_) {
            painter.setPen(Qt::red);
            painter.drawLine(line);
        }
        painter.setPen(Qt::red);
        painter.drawRects(cells_);
        painter.setFont(font_);
        for (int i = 0; i < texts_.size(); ++i) {
            painter.setPen(Qt::red);
            painter.drawRect(frames_[i]);
            painter.setPen(Qt::green);
            painter.drawText(texts_[i].position, texts_[i].text);
        }
    }

private:
    QVector<QRectF> rectangles_;
    QVector<QPolygonF> polygons_;
    QVector<QLineF> lines_;
    QVector<QRectF> cells_;
    QVector<QRectF> frames_;
    QVector<Label> texts_;
    QFont font_ = textFont();
};

void fill(QGraphicsScene& target, const Scene& scene)
{
    for (const QRectF& rect : scene.rectangles)
        target.addRect(toPixels().mapRect(rect), QPen(Qt::red, 0));
    for (const QPolygonF& polygon : scene.polygons)
        target.addPolygon(toPixels().map(polygon), QPen(Qt::red, 0));
    for (const QLineF& line : scene.lines)
        target.addLine(toPixels().map(line), QPen(Qt::red, 0));
    for (const QRectF& cell : scene.cells)
        target.addRect(toPixels().mapRect(cell), QPen(Qt::red, 0));
    for (const Label& label : scene.texts) {
        target.addRect(toPixels().mapRect(frameOf(label)), QPen(Qt::red, 0));
        auto* const item = target.addSimpleText(label.text, textFont());
        item->setPos(toPixels().map(label.position));
        item->setBrush(Qt::green);
    }
    target.setSceneRect(QRectF(QPointF(), kWindow));
}

bool isRasteriser(const QDir& task)
{
    QFile name(task.filePath("comm"));
    return name.open(QIODevice::ReadOnly) && name.readAll().startsWith("llvmpipe");
}

double nanoseconds(const QDir& task)
{
    QFile statistics(task.filePath("schedstat"));
    return statistics.open(QIODevice::ReadOnly) ? statistics.readAll().split(' ').value(0).toDouble() : 0.0;
}

double processorMicroseconds()
{
    double sum = 0.0;
    const QDir tasks("/proc/self/task");
    for (const QString& id : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QDir task(tasks.filePath(id));
        if (!isRasteriser(task))
            sum += nanoseconds(task);
    }
    return sum / 1000.0;
}

// The cheapest of five rounds, per frame.
double cost(GlCanvas& canvas, int frames, const std::function<void()>& draw)
{
    double best = 1e300;
    for (int round = 0; round < 5; ++round) {
        const double before = processorMicroseconds();
        for (int frame = 0; frame < frames; ++frame) {
            canvas.makeCurrent();
            draw();
            glFinish();
        }
        best = std::min(best, (processorMicroseconds() - before) / frames);
    }
    return best;
}

void report(const char* what, double microseconds, double base)
{
    std::printf("%-44s %10.1f us  %7.1f x\n", what, microseconds, microseconds / base);
}

template <class Draw> double painterCost(GlCanvas& canvas, Draw draw)
{
    QOpenGLPaintDevice device(kWindow);
    return cost(canvas, 100, [&] {
        QPainter painter(&device);
        draw(painter);
    });
}

void benchScene(GlCanvas& canvas, const Scene& scene)
{
    const std::unique_ptr<QWidget> window(MakePlayWindow());
    window->resize(kWindow);
    auto* const view = static_cast<detail::GraphicsView*>(UseGraphicsView(window.get()));
    fill(*view, scene);
    const PainterScene painterScene(scene);
    QGraphicsScene graphicsScene;
    fill(graphicsScene, scene);

    const double idle = cost(canvas, 1000, [] {});
    const double library = cost(canvas, 1000, [&] { view->render(nullptr); });
    report("frame without shapes", idle, library);
    report("scene: library", library, library);
    report("scene: QPainter", painterCost(canvas, [&](QPainter& painter) { painterScene.draw(painter); }), library);
    report("scene: QGraphicsScene", painterCost(canvas, [&](QPainter& painter) { graphicsScene.render(&painter); }),
           library);
}

void benchText(GlCanvas& canvas, const Scene& scene)
{
    const auto drawTexts = [&](auto draw) {
        for (const Label& label : scene.texts)
            draw(DrawColor(), label.text, label.position, kWindow, kTextSize);
    };
    const double library = cost(canvas, 1000, [&] { drawTexts(renderText); });
    report("5 texts: library", library, library);
    report("5 texts: window-sized buffer", cost(canvas, 3, [&] { drawTexts(literalText); }), library);
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    GlCanvas canvas(kWindow);
    if (!canvas.isValid())
        qFatal("no GL context");
    std::printf("%s, %dx%d\n", reinterpret_cast<const char*>(glGetString(GL_RENDERER)), kWindow.width(),
                kWindow.height());
    const Scene scene = makeScene();
    benchScene(canvas, scene);
    benchText(canvas, scene);
    return 0;
}
