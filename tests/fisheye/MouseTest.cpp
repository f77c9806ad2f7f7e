#include "src/player/Player.h"
#include "tests/fisheye/FisheyeWall.h"

using engine_double::calls;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using ViewMouseTest = wall::FisheyeTest;
using DeviceMouseTest = wall::FisheyeTest;

// What a drag from (50, 50) to (75, 25) asks of the engine, in a window of an arrangement.
struct Drag
{
    const char* what;
    int arrangement;
    int window;
    std::vector<std::string> press;
    std::vector<std::string> move;
};

TEST_F(ViewMouseTest, dragsByRoleOfTheWindow)
{
    const std::string look = ", 11, 0.400000,0.500000, 0.500000,0.500000, 0.750000,0.250000, pointer, pointer)";
    const std::vector<Drag> drags = {
        {"a view looks elsewhere",
         7,
         0,
         {"TP_FEC_SetFinshDraw(10, 11)", "TP_FEC_SetDrawType(10, 2)", "TP_FEC_GetParam(10, 11)"},
         {"TP_FEC_PTZ2WindowEx(10, 11" + look, "TP_FEC_SetDrawType(10, 2)",
          "TP_FEC_UpDateParam(10, 11, mask 8 at 0.700000,0.800000,0.000000,0.000000 color 00000000)"}},
        {"a single panorama turns",
         1,
         0,
         {"TP_FEC_SetFinshDraw(10, 11)", "TP_FEC_SetDrawType(10, 0)", "TP_FEC_GetParam(10, 11)"},
         {"TP_FEC_SetDrawType(10, 0)",
          "TP_FEC_UpDateParam(10, 11, mask 4 at 0.000000,0.000000,0.000000,1.770796 color 00000000)"}},
        {"a turning view turns",
         3,
         0,
         {"TP_FEC_SetFinshDraw(10, 11)", "TP_FEC_SetDrawType(10, 0)", "TP_FEC_GetParam(10, 11)"},
         {"TP_FEC_SetDrawType(10, 0)",
          "TP_FEC_UpDateParam(10, 11, mask 4 at 0.000000,0.000000,0.000000,1.770796 color 00000000)"}},
        {"a circle moves the box",
         5,
         0,
         {"TP_FEC_SetFinshDraw(10, 11)", "TP_FEC_SetDrawType(10, 2)",
          "TP_FEC_IsInFinshDraw(10, pointer, 0.500000, 0.500000)", "TP_FEC_GetParam(10, 13)"},
         {"TP_FEC_UpDateParam(10, 13, mask 8 at 0.650000,0.250000,0.000000,0.000000 color 00000000)",
          "TP_FEC_SetDrawType(10, 2)"}},
        {"a panorama lets the view of the box look elsewhere",
         16,
         1,
         {"TP_FEC_SetFinshDraw(10, 12)", "TP_FEC_SetDrawType(10, 2)",
          "TP_FEC_IsInFinshDraw(10, pointer, 0.500000, 0.500000)", "TP_FEC_GetParam(10, 13)"},
         {"TP_FEC_PTZ2WindowEx(10, 13, 12" + look.substr(4),
          "TP_FEC_UpDateParam(10, 13, mask 8 at 0.700000,0.800000,0.000000,0.000000 color 00000000)",
          "TP_FEC_SetDrawType(10, 2)"}},
        {"a single circle has nothing to drag", 0, 0, {}, {}},
    };
    engine_double::give("TP_FEC_GetParam", {0, 0.4, 0.5, -0.1, 0.2});
    engine_double::give("TP_FEC_PTZ2WindowEx", {0.7, 0.8});
    engine_double::give("TP_FEC_IsInFinshDraw", {13});
    for (const Drag& drag : drags) {
        SCOPED_TRACE(drag.what);
        playViews(drag.arrangement);
        ask(LD_Stop, "{}");
        playAgain(); // a second play connects nothing twice
        press(drag.window, {50, 50}, Qt::RightButton);
        EXPECT_THAT(asked(), IsEmpty());
        press(drag.window, {50, 50});
        EXPECT_EQ(asked(), drag.press);
        release(drag.window, {50, 50}, Qt::RightButton);
        move(drag.window, {75, 25});
        EXPECT_EQ(asked(), drag.move);
        release(drag.window, {75, 25});
        move(drag.window, {80, 25});
        EXPECT_THAT(asked(), IsEmpty());
        LD_Release(LD_StopRealPlayAll(&main()));
    }
    EXPECT_TRUE(reports().empty());
}

TEST_F(ViewMouseTest, whatTheEngineRefusesEndsTheDrag)
{
    for (const char* refused : {"TP_FEC_GetParam", "TP_FEC_IsInFinshDraw", "TP_FEC_PTZ2WindowEx"}) {
        playViews(16);
        engine_double::answer(refused, -1);
        press(1, {50, 50});
        move(1, {75, 25});
        EXPECT_THAT(calls("TP_FEC_UpDateParam"), IsEmpty()) << refused;
        engine_double::answer(refused, 0);
        LD_Release(LD_StopRealPlayAll(&main()));
    }
}

TEST_F(ViewMouseTest, wheelZoomsAndTheBoxesHideAfterFiveSeconds)
{
    playViews(16);
    engine_double::give("TP_FEC_GetParam", {0, 0.4, 0.5, -0.1, 0.2});
    const std::pair<int, std::string> wheels[] = {{120, "-0.075000"}, {-120, "-0.125000"}, {0, "-0.100000"}};
    for (const auto& [delta, zoom] : wheels) {
        forget();
        wheel(0, delta);
        EXPECT_THAT(asked(), ElementsAre("TP_FEC_GetParam(10, 11)", "TP_FEC_SetDrawType(10, 2)",
                                         "TP_FEC_UpDateParam(10, 11, mask 2 at 0.400000,0.500000," + zoom +
                                             ",0.200000 color 00000000)"));
    }
    wheel(1, 120);
    EXPECT_THAT(asked(), IsEmpty()) << "a panorama has no zoom";
    EXPECT_THAT(timers(companion(0)), ElementsAre(5000));
    expire(companion(0), 5000);
    EXPECT_THAT(asked(), ElementsAre("TP_FEC_SetDrawType(10, 0)"));
    EXPECT_THAT(timers(companion(0)), IsEmpty());
}

QJsonObject report(int type, int windowType, int id, int track, int point, QJsonArray at, QJsonArray from)
{
    return {{"type", type},   {"windowType", windowType}, {"id", id}, {"trackId", track}, {"pointId", point},
            {"position", at}, {"originPosition", from}};
}

TEST_F(DeviceMouseTest, viewsTellTheHostOfDragsAndWheel)
{
    role(1, 0, 3);
    role(1, 0, 4); // connects nothing twice
    press(1, {50, 50}, Qt::RightButton);
    move(1, {0, 0});
    press(1, {50, 50});
    move(1, {53, 52}, 150); // trembles
    move(1, {75, 25}, 10);
    move(1, {50, 50}, 40);
    release(1, {50, 75}, Qt::RightButton);
    release(1, {50, 75});
    for (const int delta : {120, -120, 0})
        wheel(1, delta);
    const QJsonArray middle{0.5, 0.5};
    const QJsonArray zero{0, 0};
    EXPECT_THAT(reports(),
                ElementsAre(report(0, 1, 4, 1, 1, {0.75, 0.25}, middle), report(0, 1, 4, 1, 2, middle, middle),
                            report(0, 1, 4, 1, 0, middle, middle), report(1, 1, 4, 1, 1, zero, zero),
                            report(2, 1, 4, 1, 2, zero, zero), report(0, 1, 4, 1, 3, zero, zero)));
    EXPECT_THAT(asked(), Not(Contains(testing::HasSubstr("TP_FEC"))));
    reports().clear();
    ask(LD_Play, R"({"wndIndex":1,"url":"","auth":""})");
    wheel(1, 120);
    EXPECT_EQ(reports().size(), 1U);
    ask(LD_Stop, R"({"wndIndex":1})");
    wheel(1, 120);
    EXPECT_EQ(reports().size(), 1U) << "a window that has stopped is silent";
}

TEST_F(DeviceMouseTest, theOriginWindowDragsItsBoxes)
{
    role(2, 3, 0);
    press(2, {50, 50});
    EXPECT_THAT(timers(companion(2)), IsEmpty());
    EXPECT_TRUE(ask(LD_SetFishBoxListInfo, R"({"fishBoxList":[{"id":2,"xPoint":0.5,"yPoint":0.5},
                        {"id":5,"xPoint":0.74,"yPoint":0.82},{"id":0,"xPoint":0,"yPoint":0}]})")
                    .null);
    press(2, {99, 10});
    move(2, {0, 0});
    EXPECT_TRUE(reports().empty()) << "a press beside the boxes drags nothing";
    press(2, {50, 50}); // 24 beside and 32 above the fifth: both bounds count, and the higher id wins
    move(2, {60, 50}, 500);
    release(2, {60, 50});
    EXPECT_THAT(reports(), ElementsAre(report(0, 3, 5, 1, 1, {static_cast<double>(0.6F), 0.5}, {0.5, 0.5}),
                                       report(0, 3, 5, 1, 0, {0.5, 0.5}, {0.5, 0.5})));
    EXPECT_EQ(companion(2)->getFisheyeMarkPos(5).x, 0.6F);
    reports().clear();
    press(2, {1, 1});
    move(2, {30, 30}, 500);
    EXPECT_EQ(reports().size(), 1U);
    EXPECT_EQ(companion(2)->getFisheyeMarkPos(0).x, 0.0F) << "the box of the origin itself is reported, not moved";
}

TEST_F(DeviceMouseTest, aHostMayEndEverythingWhenItIsTold)
{
    static QWidget* wall = nullptr;
    wall = &main();
    const auto endAll = [](LD_EventType, QWidget*, const QJsonDocument*) {
        wall::take(LD_StopRealPlayAll(wall));
        const QJsonDocument software = wall::json(R"({"type":1})");
        wall::take(LD_SetCorrectionType(wall, &software));
    };
    role(0, 3, 0);
    ask(LD_SetFishBoxListInfo, R"({"fishBoxList":[{"id":2,"xPoint":0.5,"yPoint":0.5}]})");
    LD_InstallEventCallback(LD_EVENT_FISHEYE_PTZ, endAll);
    press(0, {50, 50});
    move(0, {90, 90});
    EXPECT_EQ(companion(0), nullptr);
    LD_InstallEventCallback(LD_EVENT_SELECTED, endAll); // and in the middle of an arrangement
    ask(LD_ArrangeFECWindow, R"({"type":9})");
    LD_InstallEventCallback(LD_EVENT_SELECTED, nullptr);
    EXPECT_EQ(LD_WindowCount(&main()), 9);
}

} // namespace
