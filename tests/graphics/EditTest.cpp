#include "tests/graphics/Shapes.h"

using namespace shapes;

namespace {

const QSize kSize(500, 400); // the hit tolerance is 0.01

const char* const kRectangle = "[[0.2,0.2],[0.2,0.5],[0.4,0.5],[0.4,0.2]]"; // as it is when nothing moved
const char* const kLine = "[[0.25,0.5],[0.75,0.5]]";
const char* const kTriangle = "[[0.25,0.25],[0.75,0.25],[0.5,0.75]]";

QByteArray with(const char* points, const char* more)
{
    return QByteArray(R"({"id":1,"points":)") + points + more + "}";
}

const auto rectangle = [](const char* more = "") { return with("[[0.2,0.2],0,[0.4,0.5],0]", more); };
const auto line = [](const char* more = "") { return with(kLine, more); };
const auto triangle = [](const char* more = "") { return with(kTriangle, more); };

// Rounded, so that the last digits of sums do not count.
QByteArray rounded(const QJsonValue& value)
{
    if (value.isDouble())
        return QByteArray::number(value.toDouble(), 'g', 6);
    QByteArrayList entries;
    for (const QJsonValue entry : value.toArray())
        entries.append(rounded(entry));
    return "[" + entries.join(',') + "]";
}

} // namespace

TEST(Edit, dragsApplyWholeOrNotAtAll)
{
    const char* const cutOff = R"(,"lineType":4,"direction":0,"demarcationLineWidth":0.5,"cutOffPositions":[0.25,0])";
    // clang-format off
    const std::tuple<const char*, G::GraphicsType, QByteArray, QPointF, QPointF, const char*, QByteArray> drags[] = {
        {"corner", G::Rectangle, rectangle(), {0.4, 0.5}, {0.5, 0.9}, "points", "[[0.2,0.2],[0.2,0.5],[0.5,0.5],[0.5,0.2]]"},
        {"top left at rate 2", G::Rectangle, rectangle(R"(,"widthHeightRate":2.0)"), {0.2, 0.2}, {0.3, 0.9}, "points", "[[0.3,0.3],[0.3,0.5],[0.4,0.5],[0.4,0.3]]"},
        {"corner to the edge", G::Rectangle, rectangle(R"(,"widthHeightRate":0.5)"), {0.4, 0.2}, {1.0, 0.0}, "points", "[[0.2,0.1],[0.2,0.5],[1,0.5],[1,0.1]]"},
        {"corner too low by its rate", G::Rectangle, rectangle(R"(,"widthHeightRate":4.0)"), {0.2, 0.5}, {0.1, 0.6}, "points", "[[0.2,0.5],[0.2,0.2],[0.4,0.2],[0.4,0.5]]"},
        {"inside", G::Rectangle, rectangle(), {0.3, 0.3}, {0.4, 0.2}, "points", "[[0.3,0.1],[0.3,0.4],[0.5,0.4],[0.5,0.1]]"},
        {"inside to the edge", G::Rectangle, rectangle(), {0.3, 0.3}, {0.9, 0.3}, "points", kRectangle},
        {"fixed size: a corner moves all", G::Rectangle, rectangle(R"(,"editType":1)"), {0.4, 0.5}, {0.5, 0.5}, "points", "[[0.3,0.2],[0.3,0.5],[0.5,0.5],[0.5,0.2]]"},
        {"fixed", G::Rectangle, rectangle(R"(,"editType":2)"), {0.4, 0.5}, {0.5, 0.5}, "points", "[[0.4,0.5],[0.4,0.2],[0.2,0.2],[0.2,0.5]]"},
        {"top left out of the window", G::Rectangle, rectangle(), {0.2, 0.2}, {2.0, 2.0}, "points", kRectangle},
        {"top right out of the window", G::Rectangle, rectangle(), {0.4, 0.2}, {2.0, 2.0}, "points", "[[0.4,0.2],[0.4,0.5],[0.2,0.5],[0.2,0.2]]"},
        {"side", G::Rectangle, rectangle(), {0.3, 0.2}, {0.3, 0.1}, "points", kRectangle},

        {"end", G::Line, line(), {0.25, 0.5}, {0.0, 1.0}, "points", "[[0,1],[0.75,0.5]]"},
        {"end too far", G::Line, line(), {0.75, 0.5}, {1.01, 0.5}, "points", kLine},
        {"body to the edge", G::Line, line(), {0.5, 0.5}, {0.75, 0.5}, "points", "[[0.5,0.5],[1,0.5]]"},
        {"body too far", G::Line, line(), {0.5, 0.5}, {0.76, 0.4}, "points", kLine},
        {"end, fixed size", G::Line, line(R"(,"editType":1)"), {0.25, 0.5}, {0.1, 0.5}, "points", kLine},
        {"mark", G::Line, line(cutOff), {0.375, 0.5}, {0.475, 0.9}, "cutOffPositions", "[0.35,0]"},
        {"mark on an end", G::Line, line(cutOff), {0.25, 0.5}, {0.35, 0.5}, "cutOffPositions", "[0.25,0.1]"},
        {"mark past the end", G::Line, line(cutOff), {0.375, 0.5}, {0.1, 0.5}, "cutOffPositions", "[0.25,0]"},
        {"demarcation", G::Line, line(cutOff), {0.5, 0.5}, {0.6, 0.5}, "demarcationPoint", "[[0.25,0.5],[0.55,0.5]]"},

        {"vertex", G::Polygon, triangle(), {0.5, 0.75}, {0.5, 1.0}, "points", "[[0.25,0.25],[0.75,0.25],[0.5,1]]"},
        {"inside", G::Polygon, triangle(), {0.5, 0.4}, {0.75, 0.4}, "points", "[[0.5,0.25],[1,0.25],[0.75,0.75]]"},
        {"inside too far", G::Polygon, triangle(), {0.5, 0.4}, {0.5, 0.7}, "points", kTriangle},
        {"edge of a polygon", G::Polygon, triangle(), {0.6, 0.249}, {0.6, 0.1}, "points", kTriangle},
        {"edge of a chain", G::Breakline, triangle(), {0.6, 0.249}, {0.6, 0.149}, "points", "[[0.25,0.15],[0.75,0.15],[0.5,0.65]]"},
        {"vertex, fixed size", G::Breakline, triangle(R"(,"editType":1)"), {0.5, 0.75}, {0.5, 0.8}, "points", kTriangle},

        {"point", G::Point, R"({"id":1,"points":[0.5,0.5],"editType":0})", {0.505, 0.5}, {1.5, -1.0}, "point", "[1.5,-1]"},
        {"fixed point", G::Point, R"({"id":1,"points":[0.5,0.5]})", {0.5, 0.5}, {0.6, 0.6}, "point", "[0.5,0.5]"},
    };
    // clang-format on
    for (const auto& [what, type, document, press, to, key, after] : drags) {
        const auto shape = make(type, document);
        ASSERT_TRUE(shape) << what;
        shape->mouseDown(press, kSize);
        shape->mouseMove(press, to, kSize);
        shape->mouseUp(to, kSize);
        shape->mouseMove(to, {0.5, 0.5}, kSize); // nothing is held any more
        EXPECT_EQ(rounded(shape->toJson()[key]), after) << type << " " << what;
    }
}

TEST(Edit, ranksSayWhoIsMeant)
{
    // clang-format off
    const std::tuple<G::GraphicsType, QByteArray, QPointF, int> cases[] = {
        {G::Rectangle, rectangle(), {0.409, 0.5}, 0},
        {G::Rectangle, rectangle(), {0.411, 0.5}, 10000},
        {G::Rectangle, rectangle(), {0.3, 0.25}, 150},
        {G::Rectangle, rectangle(), {0.3, 0.2}, 10000},
        {G::Line, line(), {0.5, 0.505}, 100},
        {G::Line, line(), {0.5, 0.515}, 10000},
        {G::Line, line(), {0.25, 0.5}, 100},
        {G::Line, line(), {0.79, 0.5}, 10000},
        {G::Line, R"({"id":1,"points":[[0.5,0.5],[0.5,0.5]]})", {0.5, 0.9}, 10000},
        {G::Breakline, triangle(), {0.3, 0.252}, 100},
        {G::Breakline, triangle(), {0.5, 0.4}, 10000},
        {G::Breakline, R"({"id":1,"points":[]})", {0.0, 0.0}, 10000},
        {G::Polygon, triangle(), {0.5, 0.75}, 0},
        {G::Polygon, triangle(), {0.5, 0.375}, 225},
        {G::Polygon, R"({"id":1,"points":[[0.5,0.75],[0.75,0.25],[0.25,0.25]]})", {0.5, 0.375}, 225},
        {G::Polygon, triangle(), {0.2, 0.5}, 10000},
        {G::Polygon, R"({"id":1,"points":[]})", {0.0, 0.0}, 10000},
        {G::Point, R"({"id":1,"points":[0.5,0.5]})", {0.5, 0.509}, 0},
        {G::Point, R"({"id":1,"points":[0.5,0.5]})", {0.5, 0.511}, 10000},
        {G::Grid, R"({"gridColNum":22,"gridRowNum":18})", {9.0, 9.0}, 0},
        {G::Overlay, R"({"name":"x","enable":true})", {0.001, 0.001}, 10000}, // was never drawn
    };
    // clang-format on
    for (const auto& [type, document, at, rank] : cases)
        EXPECT_EQ(make(type, document)->distance(at, kSize), rank) << type << " " << at.x() << " " << at.y();
    for (const auto& [type, document] :
         {std::pair(G::Rectangle, rectangle()), {G::Polygon, triangle()}, {G::Breakline, triangle()}})
        EXPECT_EQ(parse(type, document).second->distance({0.9, 0.9}, kSize), 0) << "while it is being drawn";
    EXPECT_EQ(GraphicsArrow(Qt::red, {0.5, 0.5}, 0.0).distance({0.5, 0.5}, kSize), 10000);
}

TEST(Edit, aGridIsPaintedFromThePressedCell)
{
    const auto paint = [](GraphicsGrid& grid, QPointF from, QPointF to) {
        grid.mouseDown(from, kSize);
        grid.mouseMove(from, to, kSize);
        grid.mouseUp(to, kSize);
        grid.mouseMove(to, {0.0, 0.0}, kSize);
        return grid.toJson()["gridMap"].toString();
    };
    const QByteArray empty = R"({"gridColNum":22,"gridRowNum":18})";
    const auto grid = [&] { return make<GraphicsGrid>(G::Grid, empty); };
    EXPECT_EQ(paint(*grid(), {0.1, 0.1}, {0.0, 0.0}), "e00000e0");
    EXPECT_EQ(paint(*grid(), {0.0, 0.96}, {0.0, 0.96}), QString("00").repeated(51) + "80");
    EXPECT_EQ(paint(*grid(), {0.99, 0.0}, {1.0, 0.0}), "000006"); // one past the last, unseen
    EXPECT_EQ(paint(*grid(), {0.01, 0.01}, {-0.2, 0.01}), "80");
    EXPECT_EQ(paint(*grid(), {0.01, -0.5}, {0.5, 0.5}), "");

    const auto whole = grid();
    whole->includeAll();
    EXPECT_EQ(whole->toJson()["gridMap"].toString(), QString("fffffc").repeated(18));
    whole->excludeCell(0, 1);
    EXPECT_FALSE(whole->containsCell(0, 1));
    EXPECT_TRUE(whole->containsCell(0, 0) && whole->containsCell(17, 21) && !whole->containsCell(18, 0));

    for (const int wild : {0, -1, 2000000000, -2000000000}) {
        const auto grids = make<GraphicsGrid>(G::Grid, empty);
        grids->rows = grids->columns = wild;
        grids->includeAll();
        paint(*grids, {0.0, 0.0}, {1.0, 1.0});
        EXPECT_LE(grids->gridMap.size(), 3 * GraphicsGrid::kMaxRows + GraphicsGrid::kMaxColumns) << wild;
    }
}

TEST(Edit, anOverlayMovesInSteps)
{
    const auto dragged = [](const char* more, QPointF to) {
        const auto overlay = make<GraphicsOverlay>(
            G::Overlay, QByteArray(R"({"name":"x","enable":true,"point":[0.25,0.25])") + more + "}");
        overlay->textHeight = 32;
        overlay->mouseDown({0.26, 0.26}, kSize);
        overlay->mouseMove({}, to, kSize);
        return overlay->position;
    };
    const QPointF home(0.25, 0.25);
    EXPECT_EQ(dragged("", {0.5, 0.5}), QPointF(336 / 704.0, 288 / 576.0));
    EXPECT_EQ(dragged("", {0.27, 0.5}), QPointF(0.25, 0.5)) << "less than a step sideways";
    EXPECT_EQ(dragged("", {0.5, 0.96}), home) << "below the window";
    EXPECT_EQ(dragged("", {1.5, 0.5}), home);
    EXPECT_EQ(dragged("", {-0.5, 0.5}), home);
    EXPECT_EQ(dragged(R"(,"alignment":1)", {0.5, 0.5}), QPointF(0.25, 0.5));
    EXPECT_EQ(dragged(R"(,"minMoveValue":100,"width":1000,"height":1000)", {0.66, 0.66}), QPointF(0.6, 0.6));
}

TEST(Geometry, parallelsStartLevelWithTheLeftEnd)
{
    const std::tuple<QLineF, double, double, QLineF> cases[] = {
        {{0.2, 0.5, 0.8, 0.5}, 0.1, 0.3, {0.5, 0.6, 0.2, 0.6}}, {{0.8, 0.5, 0.2, 0.5}, 0.1, 0.3, {0.2, 0.4, 0.5, 0.4}},
        {{0.2, 0.5, 0.4, 0.5}, 0.0, 0.6, {0.8, 0.5, 0.2, 0.5}}, {{0.5, 0.2, 0.5, 0.8}, 0.1, 0.2, {0.4, 0.4, 0.4, 0.2}},
        {{0.5, 0.8, 0.5, 0.2}, 0.1, 0.2, {0.6, 0.2, 0.6, 0.4}},
    };
    for (const auto& [from, offset, length, parallel] : cases) {
        QPointF a;
        QPointF b;
        GetParallel(from.p1(), from.p2(), offset, length, a, b);
        EXPECT_LT(pointDistance(a, parallel.p1()) + pointDistance(b, parallel.p2()), 1e-6) << from.x2() << from.y2();
    }
}
