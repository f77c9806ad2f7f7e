#include "tests/fisheye/FisheyeWall.h"

using namespace wall;

namespace {

using ViewMouseTest = FisheyeTest;
using DeviceMouseTest = FisheyeTest;

TEST_F(ViewMouseTest, dragsByRoleOfTheWindow)
{
    // In a window of an arrangement: what a press at (50, 50) asks of the engine, and then a move to (75, 25).
    // clang-format off
    const char* const turn = "SetDrawType(10, 0); UpDateParam(10, 11, mask 4 at 0.000000,0.000000,0.000000,1.770796)";
    const std::tuple<int, int, const char*, const char*> drags[] = {
        {7, 0, "SetFinshDraw(10, 11); SetDrawType(10, 2); GetParam(10, 11)",
         "PTZ2WindowEx(10, 11, 11, 0.400000,0.500000, 0.500000,0.500000, 0.750000,0.250000, pointer, pointer); "
         "SetDrawType(10, 2); UpDateParam(10, 11, mask 8 at 0.700000,0.800000,0.000000,0.000000)"},
        {1, 0, "SetFinshDraw(10, 11); SetDrawType(10, 0); GetParam(10, 11)", turn},
        {3, 0, "SetFinshDraw(10, 11); SetDrawType(10, 0); GetParam(10, 11)", turn},
        {5, 0, "SetFinshDraw(10, 11); SetDrawType(10, 2); IsInFinshDraw(10, pointer, 0.500000, 0.500000); GetParam(10, 13)",
         "UpDateParam(10, 13, mask 8 at 0.650000,0.250000,0.000000,0.000000); SetDrawType(10, 2)"},
        {16, 1, "SetFinshDraw(10, 12); SetDrawType(10, 2); IsInFinshDraw(10, pointer, 0.500000, 0.500000); GetParam(10, 13)",
         "PTZ2WindowEx(10, 13, 12, 0.400000,0.500000, 0.500000,0.500000, 0.750000,0.250000, pointer, pointer); "
         "UpDateParam(10, 13, mask 8 at 0.700000,0.800000,0.000000,0.000000); SetDrawType(10, 2)"},
        {0, 0, "", ""}};
    // clang-format on
    engine_double::give("TP_FEC_GetParam", {0, 0.4, 0.5, -0.1, 0.2});
    engine_double::give("TP_FEC_PTZ2WindowEx", {0.7, 0.8});
    engine_double::give("TP_FEC_IsInFinshDraw", {13});
    const auto answerAll = [](int result) {
        for (const char* name : {"TP_FEC_GetParam", "TP_FEC_IsInFinshDraw", "TP_FEC_PTZ2WindowEx"})
            engine_double::answer(name, result);
    };
    for (const auto& [arrangement, window, pressed, moved] : drags) {
        SCOPED_TRACE(arrangement);
        playViews(arrangement);
        ask(LD_Stop, "{}");
        playAgain(); // a second play connects nothing twice
        press(window, {50, 50}, Qt::RightButton);
        EXPECT_EQ(asked(), "");
        press(window, {50, 50});
        EXPECT_EQ(asked(), pressed);
        release(window, {50, 50}, Qt::RightButton);
        move(window, {75, 25});
        EXPECT_EQ(asked(), moved);
        release(window, {75, 25});
        move(window, {80, 25});
        EXPECT_EQ(asked(), "");
        answerAll(-1);
        press(window, {50, 50});
        move(window, {75, 25});
        EXPECT_THAT(asked(), Not(HasSubstr("UpDateParam")));
        answerAll(0);
        LD_Release(LD_StopRealPlayAll(&main()));
    }
    EXPECT_TRUE(reports().empty());
}

TEST_F(ViewMouseTest, wheelZoomsAndTheBoxesHideAfterFiveSeconds)
{
    playViews(16);
    engine_double::give("TP_FEC_GetParam", {0, 0.4, 0.5, -0.1, 0.2});
    const std::pair<int, std::string> wheels[] = {{120, "-0.075000"}, {-120, "-0.125000"}, {0, "-0.100000"}};
    for (const auto& [delta, zoom] : wheels) {
        wheel(0, delta);
        EXPECT_EQ(asked(), "GetParam(10, 11); SetDrawType(10, 2); UpDateParam(10, 11, mask 2 at 0.400000,0.500000," +
                               zoom + ",0.200000)");
    }
    wheel(1, 120);
    EXPECT_EQ(asked(), "") << "a panorama has no zoom";
    expire(companion(0), 5000);
    EXPECT_EQ(asked(), "SetDrawType(10, 0)");
    EXPECT_THAT(timers(companion(0)), IsEmpty());
}

// A report of the mouse: type, kind of window, id, track, point; where the pointer is and where it came from.
QJsonObject report(const std::array<int, 5>& numbers, const QJsonArray& at, const QJsonArray& from)
{
    QJsonObject object{{"position", at}, {"originPosition", from}};
    const char* const keys[] = {"type", "windowType", "id", "trackId", "pointId"};
    for (std::size_t i = 0; i < numbers.size(); ++i)
        object[keys[i]] = numbers[i];
    return object;
}

const QJsonArray kMiddle{0.5, 0.5};

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
    const QJsonArray zero{0, 0};
    EXPECT_THAT(reports(),
                ElementsAre(report({0, 1, 4, 1, 1}, {0.75, 0.25}, kMiddle), report({0, 1, 4, 1, 2}, kMiddle, kMiddle),
                            report({0, 1, 4, 1, 0}, kMiddle, kMiddle), report({1, 1, 4, 1, 1}, zero, zero),
                            report({2, 1, 4, 1, 2}, zero, zero), report({0, 1, 4, 1, 3}, zero, zero)));
    ask(LD_Play, R"({"wndIndex":1,"url":"","auth":""})");
    wheel(1, 120);
    ask(LD_Stop, R"({"wndIndex":1})");
    wheel(1, 120);
    EXPECT_EQ(reports().size(), 7U) << "a window that has stopped is silent";
}

TEST_F(DeviceMouseTest, theOriginWindowDragsItsBoxes)
{
    role(2, 3, 0);
    press(2, {50, 50});
    ask(LD_SetFishBoxListInfo, R"({"fishBoxList":[{"id":2,"xPoint":0.5,"yPoint":0.5},
                                   {"id":5,"xPoint":0.74,"yPoint":0.82},{"id":0,"xPoint":0,"yPoint":0}]})");
    press(2, {99, 10});
    move(2, {0, 0});
    EXPECT_TRUE(reports().empty()) << "a press beside the boxes drags nothing";
    press(2, {50, 50}); // 24 beside and 32 above the fifth: both bounds count, and the higher id wins
    move(2, {60, 50}, 500);
    release(2, {60, 50});
    press(2, {1, 1});
    move(2, {50, 50}, 500);
    EXPECT_THAT(reports(), ElementsAre(report({0, 3, 5, 1, 1}, {static_cast<double>(0.6F), 0.5}, kMiddle),
                                       report({0, 3, 5, 1, 0}, kMiddle, kMiddle), testing::_));
    EXPECT_EQ(companion(2)->getFisheyeMarkPos(5).x, 0.6F);
    EXPECT_EQ(companion(2)->getFisheyeMarkPos(0).x, 0.0F) << "is reported, not moved";
}

TEST_F(DeviceMouseTest, aHostMayEndEverythingWhenItIsTold)
{
    const auto endAll = [](LD_EventType, QWidget* mainWindow, const QJsonDocument*) {
        take(LD_StopRealPlayAll(mainWindow));
        const QJsonDocument software = json(R"({"type":1})");
        take(LD_SetCorrectionType(mainWindow, &software));
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
