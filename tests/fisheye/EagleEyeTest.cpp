#include "src/eagleeyemodule.h"
#include "tests/fisheye/FisheyeWall.h"

using engine_double::calls;
using quillmark::lumen_deck::EagleEyeModule;

namespace {

using EagleEyeTest = wall::FisheyeTest;

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
    EXPECT_EQ(window(0)->findChild<EagleEyeModule*>(), nullptr);
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

} // namespace
