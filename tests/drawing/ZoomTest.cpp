#include "src/graphics/ToolZoom.h"
#include "tests/drawing/DrawingWall.h"

using quillmark::lumen_deck::ToolZoom;

// A picture of 1000 by 1000 pixels plays in the window.
class Zoom : public wall::DrawingTest
{
protected:
    void SetUp() override
    {
        DrawingTest::SetUp();
        play();
        engine_double::give("TP_GetPictureSize", {1000, 1000});
    }

    void enable(const QByteArray& request) { ASSERT_TRUE(ask(LD_EnableEZoom, request).null); }

    QRectF region() const { return std::static_pointer_cast<ToolZoom>(view().current_tool_)->zoomRegion; }

    void wheel(QPoint at, QPoint angle) { wall::turnWheel(window(), at, angle); }

    static void expectRegion(const QRectF& actual, double x, double y, double w, double h)
    {
        const double far[] = {actual.x() - x, actual.y() - y, actual.width() - w, actual.height() - h};
        EXPECT_THAT(far, testing::Each(testing::DoubleNear(0, 1e-12)));
    }
};

TEST_F(Zoom, framesZoomWithinFramesUntilADragUpwardsUndoesThemAll)
{
    enable("{}");
    drag({500, 250}, {1000, 500});
    expectRegion(region(), 0.5, 0.5, 0.5, 0.5);
    drag({500, 250}, {1000, 500});
    expectRegion(region(), 0.75, 0.75, 0.25, 0.25);
    EXPECT_EQ(engine_double::calls("TP_SetDisplayRegion").back().arguments[2], "750,750,1000,1000");
    EXPECT_TRUE(rectangles().isEmpty()) << "the frame goes with the release";

    engine_double::answer("TP_SetDisplayRegion", -1);
    drag({100, 100}, {300, 200});
    drag({600, 400}, {300, 200});
    expectRegion(region(), 0.75, 0.75, 0.25, 0.25);
    engine_double::answer("TP_SetDisplayRegion", 0);
    drag({600, 400}, {300, 200});
    expectRegion(region(), 0.0, 0.0, 1.0, 1.0);
    wheel({500, 250}, {0, 120});
    expectRegion(region(), 0.0, 0.0, 1.0, 1.0);
    EXPECT_FALSE(told(LD_EVENT_MOUSE).back().contains("delta"));
}

TEST_F(Zoom, theWheelZoomsAtThePointerAndADragPans)
{
    enable(R"({"type":2})");
    drag({500, 250}, {400, 250});
    expectRegion(region(), 0.0, 0.0, 1.0, 1.0);
    wheel({500, 250}, {0, 120});
    expectRegion(region(), 0.05, 0.05, 0.9025, 0.9025);
    EXPECT_EQ(told(LD_EVENT_MOUSE).back()["delta"].toInt(), 120);
    drag({500, 250}, {520, 240});
    expectRegion(region(), 0.03, 0.07, 0.9025, 0.9025);
    drag({500, 250}, {550, 250}); // past the left edge: dropped whole
    expectRegion(region(), 0.03, 0.07, 0.9025, 0.9025);
    wheel({500, 250}, {0, -120});
    wheel({500, 250}, {120, 0}); // sideways counts as out
    expectRegion(region(), 0.0, 0.0, 1.0, 1.0);
    wheel({500, 250}, {0, 0});
    EXPECT_TRUE(rectangles().isEmpty());
}

TEST_F(Zoom, leavingGivesTheWholePictureBack)
{
    enable(R"({"type":2})");
    wheel({500, 250}, {0, 120});
    const auto before = engine_double::calls("TP_SetDisplayRegion").size();
    engine_double::answer("TP_SetDisplayRegion", -1); // refused, it is left all the same
    wall::take(LD_DisableEZoom(&main()));
    const auto calls = engine_double::calls("TP_SetDisplayRegion");
    ASSERT_EQ(calls.size(), before + 1);
    EXPECT_THAT(calls.back().arguments, testing::ElementsAre(testing::_, "0", "null", "0", "1"));
    EXPECT_FALSE(view().current_tool_ || view().saved_tool_);
    wheel({500, 250}, {0, 120});
    EXPECT_EQ(engine_double::calls("TP_SetDisplayRegion").size(), before + 1);
}
