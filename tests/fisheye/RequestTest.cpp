#include "tests/fisheye/FisheyeWall.h"

using testing::IsEmpty;
using wall::json;

namespace {

using RequestTest = wall::FisheyeTest;

struct Bad
{
    QJsonDocument* (*function)(QWidget*, const QJsonDocument*);
    const char* request;
    const char* message;
};

const char* const kStep = "setModuleFisheyePTZ param error";
const char* const kWindow = "setModuleSubWindowParam param error";

// Refused whatever the state.
const Bad kAlways[] = {
    {LD_SetCorrectionType, "[]", "setJsonParam param error"},
    {LD_StopFECScan, "[1]", "setJsonParam param error"},
    {LD_SetCorrectionType, "{}", "setModuleCorrectionType param error"},
    {LD_SetCorrectionType, R"({"type":null})", "setModuleCorrectionType param error"},
    {LD_SetPlaceType, R"({"typ":1})", "setModuleCorrectionType param error"},
    {LD_ArrangeFECWindow, "{}", "parseFisheyeWindowArrange param error"},
    {LD_ArrangeFECWindow, R"({"type":"3"})", "parseFisheyeWindowArrange param error"},
    {LD_ArrangeFECWindow, R"({"type":18})", "parseFisheyeWindowArrange param error"},
    {LD_ArrangeFECWindow, R"({"type":1e300})", "parseFisheyeWindowArrange param error"},
    {LD_FishEyePTZ, R"({"speed":1})", kStep},
    {LD_FishEyePTZ, R"({"direction":1})", kStep},
    {LD_FishEyeZoomIn, "{}", kStep},
    {LD_FishEyeZoomOut, "[]", kStep},
    {LD_StartFECScan, "{}", "startModuleFisheyeScan param error"},
    {LD_FishEyeSetPreset, "{}", "setSubWindowPTZParam param error"},
    {LD_FishEyeSetPreset, R"({"fishEyePreset":[1]})", "setSubWindowPTZParam param error"},
    {LD_StartFECCruise, "{}", "startFisheyeCruise param error"},
    {LD_StartFECCruise, R"({"fishEyePresetList":[]})", "startFisheyeCruise param error"},
    {LD_StartFECCruise, R"({"fishEyePresetList":[{"time":1},{}]})", "startFisheyeCruise param error"},
    {LD_StartFECCruise, R"({"fishEyePresetList":[7]})", "startFisheyeCruise param error"},
    {LD_StartFishListener, R"({"auth":"","extData":""})", "startModuleFisheyeListener url param error"},
    {LD_StartFishListener, R"({"url":"","extData":""})", "startModuleFisheyeListener authinfo param error"},
    {LD_StartFishListener, R"({"url":"","auth":""})", "startModuleFisheyeListener exData param error"},
    {LD_StopFishListener, "{}", "stopFisheyeListener param error"},
    {LD_SetFishBoxListInfo, R"({"fishBoxList":[{"id":1}]})", "no fisheye or pano window"},
    {LD_SetFishWndProperty, R"({"type":3,"id":1})", kWindow},
    {LD_SetFishWndProperty, R"({"wndIndex":0,"id":1})", kWindow},
    {LD_SetFishWndProperty, R"({"wndIndex":0,"type":3})", kWindow},
    {LD_SetFishWndProperty, R"({"wndIndex":99,"type":3,"id":1})", "setSubWindowParam param error"},
    {LD_SetFishWndProperty, R"({"wndIndex":-7,"type":3,"id":1})", "setSubWindowParam param error"},
    {LD_FishEyePTZ, R"({"direction":6,"speed":1})", "setFisheyePTZ param error"},
    {LD_FishEyePTZ, R"({"direction":1,"speed":{}})", ""}, // reads as 0
    {LD_SRInit, "{}", "SRInit cannot find eagleEye in the window"},
    {LD_SRInit, R"({"wndIndex":99})", "SRInit cannot find eagleEye in the window"},
    {LD_SRPTZ, R"({"direction":1,"step":1})", "SRPTZ cannot find eagleEye in the window"},
    {LD_SRPTZ, "[]", "SRPTZ cannot find eagleEye in the window"},
};

// Refused as long as no view runs.
const Bad kWithoutViews[] = {
    {LD_FishEyePTZ, R"({"direction":1,"speed":1})", "setFisheyePTZ param error"},
    {LD_FishEyeZoomIn, R"({"speed":1})", "setFisheyePTZ param error"},
    {LD_StartFECScan, R"({"speed":1})", "startFisheyeScan param error"},
    {LD_FishEyeSetPreset, R"({"fishEyePreset":{"xPoint":1}})", "setSubWindowPTZParam param error"},
    {LD_StartFECCruise, R"({"fishEyePresetList":[{"time":1}]})", "startFisheyeCruise param error"},
};

TEST_F(RequestTest, badOnesAreToldAndChangeNothing)
{
    const auto refuse = [&](const Bad& bad) {
        const int windows = LD_WindowCount(&main());
        forget();
        const wall::Answer answer = ask(bad.function, bad.request);
        if (*bad.message == '\0')
            return;
        EXPECT_EQ(answer.message(), bad.message) << bad.request;
        EXPECT_EQ(answer.code(), 500);
        EXPECT_THAT(asked(), IsEmpty()) << bad.request;
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
