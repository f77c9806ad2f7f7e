#include "src/eagleeyemodule.h"
#include "tests/fisheye/FisheyeWall.h"

using engine_double::calls;
using RequestTest = wall::FisheyeTest;
using EagleEyeTest = wall::FisheyeTest;

using Bad = std::tuple<wall::WithWidget, const char*, const char*>;

// clang-format off
const char* const kStep = "setModuleFisheyePTZ param error";
const char* const kType = "setModuleCorrectionType param error";
const char* const kArrange = "parseFisheyeWindowArrange param error";
const char* const kPreset = "setSubWindowPTZParam param error";
const char* const kCruise = "startFisheyeCruise param error";
const char* const kWindow = "setModuleSubWindowParam param error";

// Refused whatever the state.
const Bad kAlways[] = {
    {LD_SetCorrectionType, "[]", "setJsonParam param error"}, {LD_StopFECScan, "[1]", "setJsonParam param error"},
    {LD_SetCorrectionType, R"({"type":null})", kType}, {LD_SetPlaceType, "{}", kType},
    {LD_ArrangeFECWindow, R"({"type":"3"})", kArrange}, {LD_ArrangeFECWindow, R"({"type":18})", kArrange},
    {LD_FishEyePTZ, R"({"speed":1})", kStep}, {LD_FishEyePTZ, R"({"direction":1})", kStep},
    {LD_FishEyePTZ, R"({"direction":6,"speed":1})", "setFisheyePTZ param error"},
    {LD_FishEyeZoomIn, "{}", kStep}, {LD_FishEyeZoomOut, "[]", kStep},
    {LD_StartFECScan, "{}", "startModuleFisheyeScan param error"},
    {LD_FishEyeSetPreset, "{}", kPreset}, {LD_FishEyeSetPreset, R"({"fishEyePreset":[1]})", kPreset},
    {LD_StartFECCruise, R"({"fishEyePresetList":[]})", kCruise},
    {LD_StartFECCruise, R"({"fishEyePresetList":[{"time":1},{}]})", kCruise},
    {LD_StartFECCruise, R"({"fishEyePresetList":[7]})", kCruise},
    {LD_StartFishListener, R"({"auth":"","extData":""})", "startModuleFisheyeListener url param error"},
    {LD_StartFishListener, R"({"url":"","extData":""})", "startModuleFisheyeListener authinfo param error"},
    {LD_StartFishListener, R"({"url":"","auth":""})", "startModuleFisheyeListener exData param error"},
    {LD_StopFishListener, "{}", "stopFisheyeListener param error"},
    {LD_SetFishBoxListInfo, R"({"fishBoxList":[{"id":1}]})", "no fisheye or pano window"},
    {LD_SetFishWndProperty, R"({"type":3,"id":1})", kWindow}, {LD_SetFishWndProperty, R"({"wndIndex":0,"id":1})", kWindow},
    {LD_SetFishWndProperty, R"({"wndIndex":0,"type":3})", kWindow},
    {LD_SetFishWndProperty, R"({"wndIndex":99,"type":3,"id":1})", "setSubWindowParam param error"},
    {LD_SRInit, R"({"wndIndex":99})", "SRInit cannot find eagleEye in the window"},
    {LD_SRPTZ, R"({"direction":1})", "SRPTZ cannot find eagleEye in the window"}};

// Refused as long as no view runs.
const Bad kWithoutViews[] = {
    {LD_FishEyePTZ, R"({"direction":1,"speed":1})", "setFisheyePTZ param error"},
    {LD_FishEyeZoomIn, R"({"speed":1})", "setFisheyePTZ param error"},
    {LD_StartFECScan, R"({"speed":1})", "startFisheyeScan param error"},
    {LD_FishEyeSetPreset, R"({"fishEyePreset":{"xPoint":1}})", kPreset},
    {LD_StartFECCruise, R"({"fishEyePresetList":[{"time":1}]})", kCruise}};
// clang-format on

TEST_F(RequestTest, badOnesAreToldAndChangeNothing)
{
    const journal::Tolerated badRequests;
    const auto refuseAll = [&](const auto& list) {
        for (const auto& [function, request, message] : list) {
            const int windows = LD_WindowCount(&main());
            forget();
            const wall::Answer answer = ask(function, request);
            EXPECT_EQ(answer.message(), message) << request;
            EXPECT_EQ(answer.code(), 500);
            EXPECT_EQ(asked(), "") << request;
            EXPECT_EQ(LD_WindowCount(&main()), windows);
        }
    };
    refuseAll(kAlways);
    refuseAll(kWithoutViews);
    ask(LD_SetCorrectionType, R"({"type":1})");
    ask(LD_ArrangeFECWindow, R"({"type":7})");
    playAgain();
    refuseAll(kAlways);
    ask(LD_Stop, "{}");
    refuseAll(kWithoutViews);
}

TEST_F(RequestTest, lenientValuesAndThoseThatAreIgnored)
{
    const journal::Tolerated badRequests;
    EXPECT_TRUE(ask(LD_SetCorrectionType, R"({"type":2})").null);
    EXPECT_TRUE(ask(LD_SetPlaceType, R"({"type":2147483647})").null);
    EXPECT_TRUE(ask(LD_SetFishWndProperty, R"({"wndIndex":"0","type":7,"id":[]})").null) << "an unknown role";
    EXPECT_TRUE(ask(LD_SetCorrectionType, R"({"type":"1"})").null);
    EXPECT_TRUE(ask(LD_ArrangeFECWindow, R"({"type":-1e300})").null) << "the first one";
    EXPECT_EQ(LD_WindowCount(&main()), 1);
    EXPECT_TRUE(ask(LD_SetCorrectionType, R"({"type":0})").null);
    role(0, 3, 0);
    EXPECT_EQ(ask(LD_SetFishBoxListInfo, R"({"fishBoxList":[{"id":3,"xPoint":0.5},{},{"id":4}]})").message(),
              "addFisheyeWindowMark param error");
    EXPECT_EQ(companion(0)->getFisheyeMarkPos(3).x, 0.5F) << "those before the bad one stay";
}

TEST_F(EagleEyeTest, turnsByRequest)
{
    const journal::Tolerated outOfRange;
    EXPECT_EQ(ask(LD_SRPTZ, R"({"wndIndex":0,"direction":0,"step":1})").message(), "setEagleEyePTZ not on play");
    EXPECT_TRUE(ask(LD_SRInit, R"({"wndIndex":0,"type":1})").null);
    EXPECT_TRUE(ask(LD_SRInit, R"({"wndIndex":0,"type":2})").null) << "leaves the type as it was";
    engine_double::answer("TP_Play", 9);
    play();
    EXPECT_EQ(calls("TP_Play").at(0).arguments.at(8), "010000000100000001000000");
    const std::pair<const char*, const char*> turns[] = {
        {R"("direction":0,"step":7)", "0.000000,0.028588,0.000000,0.000000"},
        {R"("direction":1,"step":7)", "0.000000,-0.028588,0.000000,0.000000"},
        {R"("direction":2,"step":1)", "-0.008168,0.000000,0.000000,0.000000"},
        {R"("direction":3,"step":1)", "0.008168,0.000000,0.000000,0.000000"},
        {R"("direction":4,"step":7)", "0.000000,0.000000,0.000000,-0.037500"},
        {R"("direction":5,"step":7)", "0.000000,0.000000,0.000000,0.037500"},
        {R"("direction":"0","step":7)", "0.000000,0.000000,0.000000,0.000000"},
        {R"("direction":5,"step":8)", "0.000000,0.000000,0.000000,0.000000"}};
    for (const auto& [request, element] : turns) {
        forget();
        EXPECT_TRUE(ask(LD_SRPTZ, QByteArray(R"({"wndIndex":0,)") + request + "}").null);
        EXPECT_EQ(asked(), std::string("TP_SR_Rotate(9, ") + element + ")") << request;
    }
    engine_double::answer("TP_SR_Rotate", -1);
    EXPECT_EQ(ask(LD_SRPTZ, R"({"wndIndex":0})").message(), "setEagleEyePTZ to tidePipe Error");
    ask(LD_Stop, R"({"wndIndex":0})");
    EXPECT_EQ(window(0)->findChild<quillmark::lumen_deck::EagleEyeModule*>(), nullptr);
    play();
    EXPECT_EQ(calls("TP_Play").at(1).arguments.at(8), std::string(24, '0'));
}

TEST_F(EagleEyeTest, turnsByMouse)
{
    ask(LD_SRInit, R"({"wndIndex":0,"type":0})");
    ask(LD_SRInit, R"({"wndIndex":0,"type":0})");
    engine_double::answer("TP_Play", 9);
    play();
    forget();
    press(0, {50, 50}, Qt::RightButton);
    move(0, {60, 60});
    EXPECT_EQ(asked(), "");
    press(0, {50, 50});
    move(0, {75, 25});
    release(0, {75, 25}, Qt::RightButton);
    move(0, {60, 50}); // the whole way since the press
    release(0, {60, 50});
    move(0, {0, 0});
    for (const int delta : {120, -120, 0})
        wheel(0, delta);
    EXPECT_EQ(asked(), "TP_SR_Rotate(9, 6.283185,-3.141593,0.000000,0.000000); "
                       "TP_SR_Rotate(9, 2.513275,0.000000,0.000000,0.000000); "
                       "TP_SR_Rotate(9, 0.000000,0.000000,0.000000,0.050000); "
                       "TP_SR_Rotate(9, 0.000000,0.000000,0.000000,-0.050000); "
                       "TP_SR_Rotate(9, 0.000000,0.000000,0.000000,0.000000)");
}
