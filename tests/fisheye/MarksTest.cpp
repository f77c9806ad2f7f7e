#include "tests/fisheye/FisheyeWall.h"
#include "tests/support/GlCanvas.h"

#include <limits>

using testing::ElementsAre;

namespace {

void report(int box, int kind, int length, const void* payload, unsigned size = sizeof(_TP_FISHMESSAGE))
{
    _TP_FISHMESSAGE message{};
    message.box = box;
    message.kind = kind;
    message.length = length;
    message.payload = const_cast<void*>(payload);
    engine_double::emitFishMessage(&message, size);
}

void reportMode(unsigned char mode)
{
    report(0, 3, 1, &mode);
}

void reportPosition(int box, float x, float y)
{
    const _TP_PTZPARAM position{x, y};
    report(box, 2, sizeof position, &position);
}

// An origin window with the boxes 1, 7 and 8, and a listener.
class MarksTest : public wall::FisheyeTest
{
protected:
    void SetUp() override
    {
        FisheyeTest::SetUp();
        role(2, 3, 0);
        ASSERT_TRUE(ask(LD_SetFishBoxListInfo, R"({"fishBoxList":[{"id":1,"xPoint":0.5,"yPoint":0.5},
                            {"id":7,"xPoint":0,"yPoint":0.5},{"id":8,"xPoint":0.9,"yPoint":0.1}]})")
                        .null);
        ASSERT_TRUE(ask(LD_StartFishListener, R"({"url":"ü","auth":"a","extData":"e"})").null);
    }

    float x(int id) { return companion(2)->getFisheyeMarkPos(id).x; }
};

TEST_F(MarksTest, reportsMoveTheBoxes)
{
    EXPECT_THAT(engine_double::calls("TP_StartFishListener").at(0).arguments, ElementsAre("ü", "a", "e"));
    // By mode and box: the id that moves, or 0.
    const std::map<int, std::vector<std::pair<int, int>>> moves = {
        {0, {{3, 1}, {9, 7}, {10, 8}, {2, 0}, {11, 0}, {std::numeric_limits<int>::min(), 0}}},
        {1, {{2, 1}, {1, 0}}},
        {2, {{9, 8}, {10, 0}}},
        {3, {{3, 0}}}};
    float place = 0.0F;
    for (const auto& [mode, boxes] : moves) {
        reportMode(static_cast<unsigned char>(mode));
        for (const auto& [box, id] : boxes) {
            std::map<int, float> expected = {{1, x(1)}, {7, x(7)}, {8, x(8)}};
            place += 0.01F;
            if (id != 0)
                expected[id] = place;
            reportPosition(box, place, 0.5F);
            EXPECT_EQ((std::map<int, float>{{1, x(1)}, {7, x(7)}, {8, x(8)}}), expected) << mode << " " << box;
        }
    }
    reportMode(0);
    const _TP_PTZPARAM position{0.9F, 0.9F};
    const float before = x(1);
    report(3, 2, 7, &position);
    report(3, 2, 8, &position, 87);
    report(3, 2, 8, nullptr);
    report(3, 3, 0, "\1");
    report(3, 1, 8, &position);
    engine_double::emitFishMessage(nullptr, 88);
    EXPECT_EQ(x(1), before);

    role(3, 3, 0); // another origin window, without boxes
    reportPosition(3, 0.9F, 0.9F);
    role(2, 3, 0);
    role(2, 0, 1); // a view has no boxes that move
    reportPosition(3, 0.9F, 0.9F);
    role(2, 3, 0);
    ask(LD_Play, R"({"wndIndex":2,"url":"","auth":""})");
    ask(LD_Stop, R"({"wndIndex":2})"); // ends the origin
    reportPosition(3, 0.9F, 0.9F);
    EXPECT_EQ(x(1), before);
    EXPECT_EQ(ask(LD_SetFishBoxListInfo, R"({"fishBoxList":[{"id":1}]})").message(), "no fisheye or pano window");
}

TEST_F(MarksTest, theListenerEndsWithItsModule)
{
    engine_double::answer("TP_StopFishListener", -1);
    EXPECT_EQ(ask(LD_StopFishListener, "{}").message(), "stopFisheyeListener param error");
    forget();
    LD_Release(LD_StopRealPlayAll(&main()));
    EXPECT_EQ(engine_double::calls("TP_StopFishListener").size(), 2U);
    reportPosition(3, 0.9F, 0.9F); // finds nobody
    engine_double::answer("TP_StartFishListener", -1);
    EXPECT_EQ(ask(LD_StartFishListener, R"({"url":"u","auth":"a","extData":"e"})").message(),
              "startModuleFisheyeListener called error");
    EXPECT_EQ(ask(LD_StopFishListener, "{}").message(), "stopFisheyeListener param error");
}

// Boxes are yellow and let half of the picture through, numbers are red.
TEST_F(MarksTest, drawsBoxesAndNumbersOverThePicture)
{
    engine_double::answer("TP_Play", 20);
    ask(LD_Play, R"({"wndIndex":2,"url":"","auth":""})");
    main().resize(404, 404);
    main().show();
    QApplication::processEvents();
    const QSize size = window(2)->size();
    GlCanvas canvas(size);
    const auto picture = [&] {
        canvas.makeCurrent();
        canvas.clear();
        EXPECT_TRUE(engine_double::drawFrame(20, nullptr));
        return canvas.picture();
    };
    const auto yellow = [&](const QImage& of, QPoint at) { return qRed(of.pixel(at)) > 0 && qGreen(of.pixel(at)) > 0; };
    const QPoint middle(size.width() / 2, size.height() / 2);
    const QImage shown = picture();
    EXPECT_TRUE(yellow(shown, middle + QPoint(14, 14)) && yellow(shown, middle + QPoint(-14, 14)));
    EXPECT_FALSE(yellow(shown, middle + QPoint(18, 0)) || yellow(shown, middle + QPoint(0, 18)));
    EXPECT_FALSE(yellow(shown, {4, middle.y() + 10})) << "at x 0";
    reportPosition(3, std::numeric_limits<float>::quiet_NaN(), 0.5F);
    reportPosition(9, 0.5F, 1e30F);
    EXPECT_FALSE(yellow(picture(), middle)) << "somewhere without a place";
    reportPosition(3, 0.5F, 0.5F);
    for (int second = 1; second <= 5; ++second) {
        EXPECT_TRUE(yellow(picture(), middle + QPoint(14, 14))) << second;
        expire(companion(2), 1000);
    }
    EXPECT_EQ(paintedPixels(picture()), 0);
    EXPECT_THAT(timers(companion(2)), ElementsAre(1000));
    press(2, {99, 99}); // beside all of them
    EXPECT_GT(paintedPixels(picture()), 0);
    ask(LD_SetFishBoxListInfo, R"({"fishBoxList":[]})");
    EXPECT_EQ(paintedPixels(picture()), 0);
    for (const int id : {0, 1, 9, 10}) {
        role(2, 0, id);
        EXPECT_EQ(paintedPixels(picture()) > 0, id == 1 || id == 9) << id;
    }
}

TEST_F(MarksTest, modulesGoWhileTheEngineDrawsAndReports)
{
    std::atomic<bool> over = false;
    std::atomic<int> frames = 0;
    std::thread drawing([&] {
        while (!over) {
            for (const int id : engine_double::livePlays())
                frames += engine_double::drawFrame(id, nullptr) ? 1 : 0;
            std::this_thread::yield();
        }
    });
    std::thread listening([&] {
        for (int i = 0; !over; ++i) {
            reportMode(static_cast<unsigned char>(i % 3));
            reportPosition(1 + i % 11, 0.5F, 0.5F);
            std::this_thread::yield();
        }
    });
    for (int round = 0; round < 40 || frames < 100; ++round) {
        role(2, 3, 0);
        ask(LD_StartFishListener, R"({"url":"u","auth":"a","extData":"e"})");
        ask(LD_SetFishBoxListInfo, R"({"fishBoxList":[{"id":1,"yPoint":0.5},{"id":2}]})");
        ask(LD_Play, R"({"wndIndex":2,"url":"","auth":""})");
        ask(LD_SetCorrectionType, R"({"type":1})");
        ask(LD_ArrangeFECWindow, QByteArray(R"({"type":)") + QByteArray::number(round % 18) + "}");
        ask(LD_Play, R"({"url":"","auth":""})");
        press(0, {50, 50});
        move(0, {20, 20});
        if (round % 2)
            LD_Release(LD_StopRealPlayAll(&main()));
        else
            ask(LD_SetCorrectionType, R"({"type":0})");
        arrange(R"({"type":2})");
    }
    ask(LD_SetCorrectionType, R"({"type":1})");
    ask(LD_Play, R"({"url":"","auth":""})");
    destroyMain();
    over = true;
    drawing.join();
    listening.join();
    EXPECT_THAT(engine_double::livePlays(), testing::IsEmpty());
}

} // namespace
