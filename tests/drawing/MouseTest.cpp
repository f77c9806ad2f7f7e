#include "tests/drawing/DrawingWall.h"

namespace {

using wall::DrawingTest;
using wall::json;

// Positions of a shape, in pixels of the window.
std::vector<QPoint> pixelsOf(const QJsonValue& shape)
{
    std::vector<QPoint> pixels;
    for (const QJsonValue& point : shape.toObject()["points"].toArray())
        pixels.emplace_back(qRound(point.toArray()[0].toDouble() * 1000), qRound(point.toArray()[1].toDouble() * 500));
    return pixels;
}

using Mouse = DrawingTest;

TEST_F(Mouse, aRectangleToolKeepsToItsLimit)
{
    take("Rect", R"({"id":7})");
    drag({100, 100}, {300, 200});
    drag({500, 100}, {700, 200}); // the tool had an id of its own and is gone
    EXPECT_THAT(told(LD_EVENT_DRAWING_ENDED),
                testing::ElementsAre(json(R"({"event":"drawEnd","id":7,"type":"Rect"})").object()));
    ASSERT_EQ(rectangles().size(), 1);
    EXPECT_EQ(pixelsOf(rectangles()[0])[0], QPoint(100, 100));

    ASSERT_TRUE(ask(LD_ClearShapeByType, R"({"type":"rect"})").null);
    take("Rect", R"({"maxShapeSupport":2})");
    drag({100, 100}, {200, 200});
    drag({110, 110}, {150, 150}); // over the first one: a new one, since there is room
    EXPECT_EQ(rectangles().size(), 2);
    drag({130, 130}, {160, 160}); // no more room: the press picks and moves
    EXPECT_EQ(rectangles().size(), 2);
    EXPECT_EQ(told(LD_EVENT_SHAPE_CHOSEN).size(), 1U);

    ASSERT_TRUE(ask(LD_ClearShapeByType, R"({"type":"rect"})").null);
    take("Rect", R"({"redrawMode":1})"); // one at a time, and the one there can be edited
    drag({100, 100}, {200, 200});
    drag({150, 150}, {160, 150});
    ASSERT_EQ(rectangles().size(), 1);
    EXPECT_EQ(pixelsOf(rectangles()[0])[0], QPoint(110, 100));
    drag({600, 100}, {700, 200});
    ASSERT_EQ(rectangles().size(), 1);
    EXPECT_EQ(pixelsOf(rectangles()[0])[0], QPoint(600, 100));
}

TEST_F(Mouse, aPolygonGrowsClickByClick)
{
    take("Polygon", R"({"maxPointSupport":4,"minPointSupport":3})");
    clicks({{100, 100}, {300, 100}});
    click({10, 10}, Qt::RightButton); // two points are too few
    EXPECT_TRUE(told(LD_EVENT_DRAWING_ENDED).empty());
    click({300, 300});
    EXPECT_TRUE(window()->hasMouseTracking()) << "the last point follows without a button";
    click({100, 300});
    EXPECT_FALSE(window()->hasMouseTracking());
    EXPECT_EQ(told(LD_EVENT_DRAWING_ENDED).size(), 1U);
    ASSERT_EQ(polygons().size(), 1);
    EXPECT_EQ(pixelsOf(polygons()[0]), (std::vector<QPoint>{{100, 100}, {300, 100}, {300, 300}, {100, 300}}));

    press({200, 200}); // the limit is reached: this picks the polygon
    press({200, 200}, Qt::RightButton);
    release({200, 200});
    EXPECT_EQ(pixelsOf(polygons()[0]).size(), 4U) << "a held polygon lost a point";

    wall::take(LD_ClearGraphics(&main()));
    take("Polygon", R"({"maxPointSupport":9,"minPointSupport":3,"id":3})");
    clicks({{100, 100}, {300, 100}, {300, 300}});
    click({50, 50}, Qt::RightButton);
    EXPECT_EQ(pixelsOf(polygons()[0]).size(), 3U) << "the right button ends it";
    EXPECT_FALSE(view().current_tool_);
}

TEST_F(Mouse, aBrokenLineIsSilentAtItsLimitOnly)
{
    const journal::Tolerated capitals;
    take("Line", R"({"maxPointSupport":2})");
    clicks({{100, 100}, {300, 100}});
    EXPECT_TRUE(told(LD_EVENT_DRAWING_ENDED).empty());
    ASSERT_EQ(lines().size(), 1);
    EXPECT_EQ(pixelsOf(lines()[0]).size(), 2U);
    EXPECT_FALSE(view().current_tool_) << "the view holds as many as the tool may draw";

    ASSERT_TRUE(ask(LD_ClearShapeByType, R"({"type":"LINE"})").null);
    take("Line", R"({"maxPointSupport":5})");
    clicks({{100, 100}, {300, 100}});
    click({50, 50}, Qt::RightButton);
    EXPECT_EQ(told(LD_EVENT_DRAWING_ENDED).size(), 1U);
}

TEST_F(Mouse, callbackModeReportsWholeShapesAndGoesOn)
{
    const auto draw = [&](const QByteArray& more) {
        ASSERT_TRUE(ask(LD_SetDrawCallback, R"({"enable":true,)" + more + "}").null);
    };
    draw(R"("type":"Line","display":false)");
    clicks({{100, 100}, {300, 100}});
    auto finished = told(LD_EVENT_SHAPE_FINISHED);
    ASSERT_EQ(finished.size(), 1U);
    EXPECT_EQ(finished[0]["id"].toInt(), 666);
    EXPECT_TRUE(lines().isEmpty()) << "it is not to be displayed";
    clicks({{100, 200}, {300, 200}});
    EXPECT_EQ(told(LD_EVENT_SHAPE_FINISHED).size(), 1U) << "the tool goes on";

    draw(R"("type":"Rect")");
    drag({100, 100}, {300, 200});
    drag({600, 100}, {700, 200});
    EXPECT_EQ(told(LD_EVENT_SHAPE_FINISHED).size(), 2U);
    EXPECT_EQ(rectangles().size(), 1) << "each replaces the last";

    draw(R"("type":"Point","drawType":"cross")");
    click({500, 400});
    EXPECT_EQ(told(LD_EVENT_SHAPE_FINISHED).size(), 2U) << "at the press and at the release";
    move({510, 400}, Qt::NoButton);
    click({510, 400});
    ASSERT_EQ(points().size(), 1);
    EXPECT_DOUBLE_EQ(points()[0].toObject()["point"].toArray()[0].toDouble(), 0.51);

    EXPECT_EQ(ask(LD_SetDrawCallback, R"({"enable":true,"type":"Circle"})").message(),
              "error setDrawCallback, can not decide which tool to use");
    EXPECT_EQ(ask(LD_SetDrawCallback, R"({"enable":true,"type":"Point"})").message(), wall::missing("drawType"));
    ASSERT_TRUE(ask(LD_SetDrawCallback, R"({"enable":false})").null);
    drag({100, 300}, {200, 400});
    EXPECT_TRUE(told(LD_EVENT_SHAPE_FINISHED).empty());
}

TEST_F(Mouse, thePressPicksTheNearestShapeAndAmongEqualsTheTopOne)
{
    const journal::Tolerated capitals;
    ask(LD_SetPolygonInfo, R"({"polygonInfo":[
        {"id":1,"points":[[0.1,0.1],[0.9,0.1],[0.9,0.9],[0.1,0.9]]},
        {"id":2,"points":[[0.4,0.4],[0.6,0.4],[0.6,0.6],[0.4,0.6]]},
        {"id":3,"points":[[0.4,0.4],[0.6,0.4],[0.6,0.6],[0.4,0.6]]}]})");
    click({500, 210});
    auto chosen = told(LD_EVENT_SHAPE_CHOSEN);
    ASSERT_EQ(chosen.size(), 1U);
    EXPECT_EQ(chosen[0], json(R"({"event":"choosed","id":3,"type":"Polygon"})").object());
    click({150, 250});
    chosen = told(LD_EVENT_SHAPE_CHOSEN);
    ASSERT_EQ(chosen.size(), 1U);
    EXPECT_EQ(chosen[0]["id"].toInt(), 1);
    EXPECT_EQ(ask(LD_ClearShapeByType, R"({"type":"choosed"})").object["clearedShapeId"].toInt(), 1);
    press({500, 210});
    EXPECT_TRUE(view().current_selected_graphics_);
    wall::take(LD_ClearGraphics(&main()));
    EXPECT_FALSE(view().current_selected_graphics_);
    heard().clear();
    click({20, 20});
    EXPECT_TRUE(told(LD_EVENT_SHAPE_CHOSEN).empty());
    EXPECT_EQ(ask(LD_ClearShapeByType, R"({"type":"Choosed"})").object["clearedShapeId"].toInt(), -1);
}

TEST_F(Mouse, aPlayingWindowReportsTheMouseWithoutFloodingTheHost)
{
    press({100, 100});
    EXPECT_TRUE(told(LD_EVENT_MOUSE).empty()) << "nothing plays";
    release({100, 100});
    play();
    press({100, 100});
    move({200, 100});
    move({1, 1}, Qt::RightButton);
    press({1, 1}, Qt::RightButton);
    release({1, 1}, Qt::RightButton);
    std::vector<int> types;
    const auto reports = told(LD_EVENT_MOUSE);
    for (const QJsonObject& report : reports)
        types.push_back(report["eventType"].toInt());
    EXPECT_EQ(types, (std::vector<int>{1, 7, 6, 4, 5}));
    EXPECT_NEAR(reports[0]["point"].toArray()[0].toDouble(), 100.0 / 1002, 1e-12);

    for (const unsigned long time : {1000000UL, 1000199UL, 1000200UL})
        wall::sendMouse(window(), QEvent::MouseMove, {5, 5}, Qt::NoButton, Qt::LeftButton, time);
    EXPECT_EQ(told(LD_EVENT_MOUSE).size(), 2U);
}

TEST_F(Mouse, aHostMayAnswerAReportWithAnyVerb)
{
    take("Rect", "{}");
    LD_InstallEventCallback(LD_EVENT_DRAWING_ENDED, [](LD_EventType, QWidget* main, const QJsonDocument*) {
        LD_Release(LD_ClearGraphics(main));
        const QJsonDocument tool = json(R"({"drawType":"Polygon","drawInfo":{}})");
        LD_Release(LD_SetDrawShapeInfo(main, &tool));
    });
    drag({100, 100}, {300, 200});
    EXPECT_TRUE(rectangles().isEmpty());
    ASSERT_TRUE(view().current_tool_);
    EXPECT_EQ(view().current_tool_->type(), quillmark::lumen_deck::ToolBase::Polygon) << "the new tool stays";
}

} // namespace
