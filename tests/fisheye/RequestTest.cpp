#include "tests/fisheye/FisheyeWall.h"

namespace {

using RequestTest = wall::FisheyeTest;

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
    const auto refuse = [&](const Bad& bad) {
        const auto& [function, request, message] = bad;
        const int windows = LD_WindowCount(&main());
        forget();
        const wall::Answer answer = ask(function, request);
        EXPECT_EQ(answer.message(), message) << request;
        EXPECT_EQ(answer.code(), 500);
        EXPECT_EQ(asked(), "") << request;
        EXPECT_EQ(LD_WindowCount(&main()), windows);
    };
    const auto refuseAll = [&](bool views) {
        std::for_each(std::begin(kAlways), std::end(kAlways), refuse);
        if (!views)
            std::for_each(std::begin(kWithoutViews), std::end(kWithoutViews), refuse);
    };
    refuseAll(false);
    ask(LD_SetCorrectionType, R"({"type":1})");
    ask(LD_ArrangeFECWindow, R"({"type":7})");
    refuseAll(false);
    refuse({LD_SetFishWndProperty, R"({"wndIndex":0,"type":3,"id":1})", "setSubWindowParam param error"});
    playAgain();
    refuseAll(true);
    ask(LD_Stop, "{}");
    refuseAll(false);
}

TEST_F(RequestTest, lenientValuesAndThoseThatAreIgnored)
{
    const journal::Tolerated badRequests;
    EXPECT_TRUE(ask(LD_SetCorrectionType, R"({"type":2})").null);
    EXPECT_TRUE(ask(LD_SetPlaceType, R"({"type":2147483647})").null);
    EXPECT_TRUE(ask(LD_SetFishWndProperty, R"({"wndIndex":"0","type":7,"id":[]})").null) << "an unknown role";
    EXPECT_TRUE(ask(LD_ClearAllWndFishBoxInfo, "{}").null);
    EXPECT_TRUE(ask(LD_SetCorrectionType, R"({"type":"1"})").null);
    EXPECT_TRUE(ask(LD_ArrangeFECWindow, R"({"type":-1e300})").null) << "the first one";
    EXPECT_EQ(LD_WindowCount(&main()), 1);
    EXPECT_TRUE(ask(LD_SetCorrectionType, R"({"type":0})").null);
    role(0, 3, 0);
    EXPECT_EQ(ask(LD_SetFishBoxListInfo, R"({"fishBoxList":[{"id":3,"xPoint":0.5},{},{"id":4}]})").message(),
              "addFisheyeWindowMark param error");
    EXPECT_EQ(companion(0)->getFisheyeMarkPos(3).x, 0.5F) << "those before the bad one stay";
}

} // namespace
