#include "tests/graphics/Shapes.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/WindowDirectory.h"
#include "tests/support/GlCanvas.h"

#include <QDateTime>
#include <QPolygonF>

#include <GL/gl.h>

#include <cmath>

using namespace shapes;

namespace {

const QSize kSize(200, 100);
const DrawColor kRed(QColor(Qt::red));

QImage picture(GlCanvas& canvas, const std::function<void()>& draw)
{
    canvas.clear();
    draw();
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
    return canvas.picture();
}

QImage hooked(GlCanvas& canvas, const std::vector<std::shared_ptr<GraphicsBase>>& shapes)
{
    const Window window(canvas.size());
    for (const auto& shape : shapes)
        window->addGraphics(shape);
    return picture(canvas, [&] { WindowDirectory::instance().visit(&*window).view()->render(nullptr); });
}

// A draw hook of a window with this shape paints what `draw` does.
void expectDrawn(GlCanvas& canvas, const std::shared_ptr<GraphicsBase>& shape, const std::function<void()>& draw)
{
    ASSERT_TRUE(shape);
    const QImage expected = picture(canvas, draw);
    EXPECT_GT(paintedPixels(expected), 0);
    EXPECT_EQ(differingPixels(hooked(canvas, {shape}), expected), 0);
}

void stroke(const QVector<QLineF>& lines)
{
    for (const QLineF& line : lines)
        renderLine(kRed, line, kSize, 1);
}

QVector<QLineF> chain(const QVector<QPointF>& points, int count)
{
    QVector<QLineF> lines;
    for (int i = 1; i < count; ++i)
        lines.append({points[i - 1], points[i]});
    return lines;
}

QVector<QLineF> outline(const QRectF& rect)
{
    return chain(QPolygonF(rect), 5);
}

// The barbs of a head at `tip`, in a window of 200 pixels, for a line that comes from `back` degrees.
QVector<QLineF> head(const QPointF& tip, double back)
{
    QVector<QLineF> barbs;
    for (const double turn : {-15.0, 15.0}) {
        const double angle = (back + turn) * std::acos(-1.0) / 180.0;
        barbs.append({tip, tip + 0.1 * QPointF(std::cos(angle), -std::sin(angle))});
    }
    return barbs;
}

QVector<QLineF> arrow(const QLineF& line, double back)
{
    return QVector<QLineF>{line} + head(line.p2(), back);
}

std::shared_ptr<GraphicsBase> pick(std::shared_ptr<GraphicsBase> shape)
{
    shape->selected = true;
    return shape;
}

QByteArray circle(QVector<QPointF>& points)
{
    QJsonArray document;
    for (int i = 0; i < 25; ++i) {
        points.append({0.5 + 0.4 * std::cos(i * 0.25), 0.5 + 0.4 * std::sin(i * 0.25)});
        document.append(QJsonArray{points[i].x(), points[i].y()});
    }
    return QJsonDocument(document).toJson();
}

} // namespace

TEST(Pictures, primitivesHaveTheirPixels)
{
    GlCanvas canvas({100, 100});
    ASSERT_TRUE(canvas.isValid());
    const QImage line = picture(canvas, [] { renderLine(kRed, {0.105, 0.505}, {0.905, 0.505}, {}, 9); });
    EXPECT_EQ(line.pixelColor(50, 50), QColor(254, 0, 0));
    EXPECT_EQ(paintedPixels(line), 80);
    const QImage mark = picture(canvas, [] { renderVertex(kRed, {0.5, 0.25}, {}, kVertexMarkSize); });
    EXPECT_EQ(mark.pixelColor(50, 25), QColor(254, 0, 0));
    EXPECT_EQ(paintedPixels(mark), 100);
    const QRectF rect(0.105, 0.205, 0.5, 0.3);
    EXPECT_EQ(paintedPixels(picture(canvas, [&] { renderRectangle(kRed, rect, {}, true); })), 1500);
    const QImage loop = picture(canvas, [&] {
        glBegin(GL_LINE_LOOP);
        glColor4f(kRed.red, 0.0F, 0.0F, 1.0F);
        for (const QPointF& corner : {rect.bottomLeft(), rect.bottomRight(), rect.topRight(), rect.topLeft()})
            glVertex2d(pointPosToOpenGL(corner).x(), pointPosToOpenGL(corner).y());
        glEnd();
    });
    EXPECT_EQ(differingPixels(picture(canvas, [&] { renderRectangle(kRed, rect, {}, false); }), loop), 0);
}

TEST(Pictures, shapesAreTheStrokesTheyPromise)
{
    QVector<QPointF> points;
    const QByteArray many = R"({"id":1,"points":)" + circle(points) + "}";
    const QRectF rect(0.203, 0.203, 0.3, 0.4);
    const auto rectangle = [] { return make(G::Rectangle, R"({"id":1,"points":[[0.203,0.203],0,[0.503,0.603],0]})"); };
    const auto line = [](const char* more, G::GraphicsType type = G::Line) {
        return make(type, QByteArray(R"({"id":1,"points":[[0.2,0.505],[0.8,0.505]])") + more + "}");
    };
    const QLineF body(0.2, 0.505, 0.8, 0.505);
    const QLineF tick(0.5, 0.5675, 0.5, 0.4425);
    const QLineF sideMark(0.5, 0.505, 0.5, 0.28);
    const QLineF otherMark(0.5, 0.505, 0.5, 0.73);
    using Lines = QVector<QLineF>;
    const auto shoulder =
        R"({"id":1,"points":[[0.5,0.505],[0.8,0.505]],"lineType":4,"direction":1,"showShoulderLine":true})";
    // clang-format off
    const std::tuple<const char*, std::shared_ptr<GraphicsBase>, Lines, QVector<QPointF>> cases[] = {
        {"rectangle", rectangle(), outline(rect), {}},
        {"selected rectangle", pick(rectangle()), outline(rect),
         {rect.topLeft(), rect.topRight(), rect.bottomLeft(), rect.bottomRight()}},
        {"selected line", pick(line("")), {body}, {body.p1(), body.p2()}},
        {"head at the second end", line(R"(,"lineType":1,"direction":0)"), arrow(body, 180), {}},
        {"head at the first end", line(R"(,"lineType":1,"direction":1)"), arrow({body.p2(), body.p1()}, 0), {}},
        {"cut-off marks", line(R"(,"cutOffPositions":[0.5])"), {body, tick}, {}},
        {"demarcation", line(R"(,"lineType":4,"direction":0,"demarcationLineWidth":0.5)"),
         Lines{body, tick} + arrow(sideMark, 270), {}},
        {"other side, shoulder before the line", make(G::Line, shoulder),
         Lines{{0.5, 0.505, 0.2, 0.505}, {0.5, 0.505, 0.8, 0.505}} + arrow({0.65, 0.505, 0.65, 0.73}, 90), {}},
        {"chain of 25", pick(make(G::Breakline, many)), chain(points, 20), points.mid(0, 20)},
        {"side marks", line(R"(,"direction":2)", G::Breakline), Lines{body} + arrow(otherMark, 90), {}},
        {"polygon of 25", pick(make(G::Polygon, many)), chain(points, 20) + Lines{{points[0], points[24]}},
         points.mid(0, 20)},
        {"polygon of two", line(R"(,"fillColor":"red")", G::Polygon), {body}, {}},
        {"point", pick(make(G::Point, R"({"id":1,"points":[0.5,0.5],"tips":"t","type":"cross"})")), {}, {{0.5, 0.5}}},
    };
    // clang-format on
    GlCanvas canvas(kSize);
    for (const auto& [what, shape, lines, marks] : cases) {
        SCOPED_TRACE(what);
        expectDrawn(canvas, shape, [&, &strokes = lines, &corners = marks] {
            stroke(strokes);
            for (const QPointF& point : corners)
                renderVertex(kRed, point, kSize, kVertexMarkSize);
        });
    }
}

TEST(Pictures, fillsTextsAndArrows)
{
    GlCanvas canvas(kSize);
    const auto text = [](const DrawColor& color, const char* what, QPointF at) {
        renderText(color, what, at, kSize, kTextSize);
    };
    const QByteArray rectangle = R"({"id":1,"points":[[0.2,0.2],0,[0.6,0.6],0],"fillColor":"blue","tips":"in"})";
    expectDrawn(canvas, make(G::Rectangle, rectangle), [&] {
        renderRectangle(DrawColor(QColor(Qt::blue)), {0.2, 0.2, 0.4, 0.4}, kSize, true);
        stroke(outline({0.2, 0.2, 0.4, 0.4}));
        text(kRed, "in", {0.4, 0.4});
    });
    const QByteArray polygon = R"({"id":1,"points":[[0.1,0.1],[0.9,0.1],[0.5,0.9]],"showWH":true,"tips":"x"})";
    expectDrawn(canvas, make(G::Polygon, polygon), [&] {
        text(kRed, "H", {0.5, 0.1});
        stroke({{0.1, 0.1, 0.9, 0.1}});
        text(kRed, "W", {0.3, 0.5});
        stroke({{0.9, 0.1, 0.5, 0.9}, {0.1, 0.1, 0.5, 0.9}});
        text(kRed, "x", {0.5, 1.1 / 3});
    });
    const QByteArray line =
        R"({"id":1,"points":[[0.2,0.5],[0.8,0.5]],"lineType":3,"direction":2,"tips":"t","drawColor":"blue"})";
    expectDrawn(canvas, make(G::Line, line), [&] {
        const DrawColor blue(QColor(Qt::blue));
        const QPointF aside(0.2 * std::cos(1.57075), 0.4 * std::sin(1.57075));
        renderLine(blue, {0.2, 0.5}, {0.8, 0.5}, kSize, 1);
        GraphicsArrow(Qt::blue, {0.5, 0.5}, 1.57075).render(nullptr, kSize);
        GraphicsArrow(Qt::blue, {0.5, 0.5}, 4.71225).render(nullptr, kSize);
        text(blue, "B", QPointF(0.5, 0.5) + aside);
        text(blue, "A", QPointF(0.5, 0.5) - aside);
        text(kRed, "t", {0.2, 0.5});
    });
    const QImage arrow = picture(canvas, [&] { GraphicsArrow(Qt::red, {0.5025, 0.505}, 0.0).render(nullptr, kSize); });
    for (const QPoint& pixel : {QPoint(106, 54), QPoint(106, 46), QPoint(112, 57), QPoint(128, 50)})
        EXPECT_NE(paintedPixels(arrow.copy(QRect(pixel - QPoint(1, 1), QSize(3, 3)))), 0) << pixel.x();
}

TEST(Pictures, parallelsShowWhatWasCounted)
{
    GlCanvas canvas(kSize);
    const auto line = make<GraphicsLine>(
        G::Line, R"({"id":1,"points":[[0.2,0.5],[0.8,0.5]],"lineType":4,"direction":0,"showPDCLine":true})");
    const QImage without = hooked(canvas, {line});
    std::array<std::uint32_t, 16> thousandths{0, 0, 300, 0, 0, 0, 0, 0, 0, 0, 0, 600};
    line->pdcLengths->store({2049, 0, 0, sizeof thousandths, 0, thousandths.data()});
    expectDrawn(canvas, line, [&] {
        stroke({{0.2, 0.5, 0.8, 0.5}, {0.5, 0.53, 0.2, 0.53}, {0.2, 0.455, 0.8, 0.455}, {0.5, 0.5, 0.5, 0.275}});
        stroke(head({0.5, 0.275}, 270));
    });
    EXPECT_GT(differingPixels(without, hooked(canvas, {line})), 100);
}

TEST(Pictures, aGridHasThePixelsOfItsCells)
{
    const char* const maps[] = {"fffffc", "aaaaa8", "f0f0f0", "800000", "13579b"};
    for (const QSize size : {QSize(704, 576), QSize(353, 287), QSize(200, 100)}) {
        GlCanvas canvas(size);
        for (const char* const map : maps) {
            const auto grid = make<GraphicsGrid>(G::Grid, R"({"gridColNum":22,"gridRowNum":18,"gridMap":")" +
                                                              QByteArray(map).repeated(17) + R"("})");
            const auto cellByCell = [&] {
                for (int cell = 0; cell < 17 * 22; ++cell) {
                    const int column = cell % 22;
                    if (QByteArray::fromHex(map)[column / 8] & (0x80 >> column % 8))
                        renderRectangle(kRed,
                                        QRectF(static_cast<float>(column) / 22, static_cast<float>(cell / 22) / 18,
                                               1.0F / 22, 1.0F / 18),
                                        size, false);
                }
            };
            for (const bool blending : {false, true}) {
                blending ? glEnable(GL_BLEND) : glDisable(GL_BLEND);
                const QImage drawn = picture(canvas, [&] { grid->render(nullptr, size); });
                EXPECT_EQ(differingPixels(drawn, picture(canvas, cellByCell)), 0)
                    << map << " " << size.width() << " blending " << blending;
            }
            glDisable(GL_BLEND);
        }
    }
}

TEST(Pictures, anOverlayIsFramedAndMeasured)
{
    for (const QSize size : {kSize, QSize(353, 287)}) {
        GlCanvas canvas(size);
        const auto overlay =
            make<GraphicsOverlay>(G::Overlay, R"({"name":"Gate 1","enable":true,"point":[0.2,0.2],"height":100})");
        expectDrawn(canvas, overlay, [&] {
            const DrawColor green(0.0F, 1.0F, 0.0F, 1.0F);
            EXPECT_EQ(renderText(green, "Gate 1", {0.2, 0.2}, size, kTextSize), 57);
            renderRectangle(kRed, {0.2, 0.2, static_cast<float>(57.0 / size.width()), 0.32}, size, false);
            renderText(green, "Gate 1", {0.2, 0.2}, size, kTextSize);
        });
        EXPECT_NEAR(overlay->textWidth, 57, 1);
        EXPECT_EQ(overlay->textHeight, size.height() * 32 / 100);
        EXPECT_TRUE(overlay->contains({0.21, 0.51}, size));
        EXPECT_FALSE(overlay->contains({0.21, 0.53}, size));
    }
    GlCanvas canvas(kSize);
    const auto date = make<GraphicsOverlay>(G::Overlay, R"({"dateType":5,"timeFormat":"x","enable":true})");
    hooked(canvas, {date});
    EXPECT_EQ(QDateTime::fromString(date->text, "dd-MM-yyyy HH:mm:ss").secsTo(QDateTime::currentDateTime()) / 5, 0)
        << date->text.toStdString();
}

TEST(Pictures, wildShapesCostNoFrames)
{
    GlCanvas canvas(kSize);
    const QByteArray far = R"([[1e300,-1e300],[-1e300,1e300],[1e9,0.5],[-5,-5]])";
    const QByteArray manyPoints = "[" + QByteArray("[0.5,0.5],").repeated(99999) + "[0.1,0.1]]";
    const QByteArray marks = "[" + QByteArray("0.5,").repeated(9999) + R"("x",{}])";
    const QString longText = QString("x").repeated(100000);
    std::vector<std::shared_ptr<GraphicsBase>> wild = {
        make(G::Rectangle, R"({"id":1,"tips":"t","points":)" + far + "}"),
        make(G::Line,
             R"({"id":2,"lineType":4,"direction":1,"showShoulderLine":true,"points":[[1e300,0],[-1e300,1e-300]]})"),
        make(G::Line, R"({"id":3,"points":[[0.5,0.5],[0.5,0.5]],"cutOffPositions":)" + marks + "}"),
        make(G::Breakline, R"({"id":4,"direction":1,"points":)" + far + "}"),
        make(G::Polygon, R"({"id":5,"tips":"t","points":)" + far + "}"),
        make(G::Polygon, R"({"id":6,"tips":"t","showWH":true,"points":)" + manyPoints + "}"),
        make(G::Breakline, R"({"id":7,"points":)" + manyPoints + "}"),
        make(G::Polygon, R"({"id":8,"tips":"t","points":[]})"),
        make(G::Point, R"({"id":9,"points":[1e300,-1e300]})"),
        make(G::Grid, R"({"gridColNum":2000000000,"gridRowNum":2000000000,"gridMap":")" +
                          QByteArray("01").repeated(9999) + R"("})"),
        make(G::Overlay,
             R"({"id":10,"enable":true,"point":[1e300,-1e300],"height":1,"text":")" + longText.toUtf8() + R"("})"),
        make(G::Overlay, R"({"id":11,"enable":true,"text":")" + longText.toUtf8() + R"("})"),
    };
    for (const auto& shape : wild) {
        ASSERT_TRUE(shape);
        shape->mouseDown({0.5, 0.5}, kSize);
        shape->mouseMove({0.5, 0.5}, {0.6, 0.6}, kSize);
        shape->distance({0.5, 0.5}, kSize);
    }
    const auto start = std::chrono::steady_clock::now();
    hooked(canvas, wild);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    for (const QSize size : {QSize(0, 0), QSize(1, 1), QSize(3, 500)}) {
        for (const auto& shape : wild)
            shape->render(nullptr, size);
    }
}
