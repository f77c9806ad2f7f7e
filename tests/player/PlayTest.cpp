#include "tests/support/Wall.h"

using namespace wall;

namespace {

using PlayTest = WallTest;

std::vector<std::string> playArguments()
{
    return calls("TP_Play").back().arguments;
}

TEST_F(PlayTest, callsTheEngineInOrderWithTheSettingsOfTheUser)
{
    configure(R"({"protocolType":4,"ivsMode":1,"showFireDistance":3,"showTemperatureLine":2,
                        "captureIncludeTemperatureInfo":5,"osdPicInfo":"0"})");
    ASSERT_TRUE(ask(LD_SetHttps, R"({"https":true})").null);
    const std::size_t before = calls().size();
    engine_double::answer("TP_Play", 7);
    ASSERT_TRUE(ask(LD_Play, R"({"wndIndex":0,"url":"u","auth":"ä","startTime":"s","protocolType":1,"playGroup":1,
                                 "ivsMode":9})")
                    .null);
    const std::string window = playArguments().at(3);
    EXPECT_THAT(engineCalls(before),
                ElementsAre("TP_SetDisplayBuf(6)",
                            "TP_Play(u, ä, 5, " + window + ", s, , 0, null, 000000000000000000000000, 1)",
                            "TP_EnableIVS(7, 1, 1)", "TP_EnableIVS(7, 2, 1)", "TP_EnableIVS(7, 4, 1)",
                            "TP_EnableIVS(7, 8, 0)", "TP_EnableIVS(7, 16, 1)", "TP_RenderPrivateDataEx(7, 16, 1, 0)",
                            "TP_RenderPrivateDataEx(7, 16, 2, 0)", "TP_RenderPrivateDataEx(7, 16, 4, 0)",
                            "TP_RenderPrivateDataEx(7, 16, 8, 3)", "TP_EnableIVS(7, 32, 1)",
                            "TP_RenderPrivateDataEx(7, 32, 1, 0)", "TP_RenderPrivateDataEx(7, 32, 2, 2)",
                            "TP_RenderPrivateDataEx(7, 32, 4, 0)", "TP_SetOverlayPriInfoFlag(7, 32, 5)",
                            "TP_RigisterDrawFun(7, pointer, pointer)"));
    EXPECT_EQ(player()->playStatus(), Player::Playing);
    EXPECT_TRUE(LD_IsWindowPlaying(&main(), 0));
    EXPECT_FALSE(LD_IsWindowPlaying(&main(), 1) || LD_IsWindowPlaying(&main(), 99) || LD_IsWindowPlaying(&main(), -1));
    EXPECT_EQ(ask(LD_Play, R"({"wndIndex":0,"url":"u","auth":""})").message(),
              "The player is already playing, can not play twice");
    EXPECT_EQ(calls("TP_Play").size(), 1U);
}

TEST_F(PlayTest, reversePlaySetsTheOverlaysFirstAndNoBuffer)
{
    const std::size_t before = calls().size();
    engine_double::answer("TP_ReversePlay", 8);
    ASSERT_TRUE(ask(LD_ReversePlay, R"({"wndIndex":0,"url":"tracks","auth":"","startTime":"1","stopTime":"2"})").null);
    std::vector<std::string> lines = engineCalls(before);
    EXPECT_THAT(lines.front(), HasSubstr("TP_ReversePlay(tracks, , 0, "));
    EXPECT_EQ(lines.at(1) + lines.back(), "TP_EnableIVS(8, 1, 0)TP_RigisterDrawFun(8, pointer, pointer)");
    EXPECT_EQ(player()->playStatus(), Player::ReversePlaying);
    EXPECT_EQ(ask(LD_ReversePlay, R"({"wndIndex":0,"url":"","auth":"","startTime":"","stopTime":""})").message(),
              "is player is ready playing, can not play twice");
}

TEST_F(PlayTest, buffersByTheSetting)
{
    const std::pair<const char*, const char*> frames[] = {{"0", "1"}, {"1", "3"}, {"2", "6"}, {"3", "15"},
                                                          {"4", "9"}, {"7", "6"}, {"-1", "6"}};
    for (const auto& [setting, expected] : frames) {
        configure(QByteArray(R"({"buffNumberType":)") + setting + "}");
        ask(LD_Play, R"({"wndIndex":0,"url":"","auth":"","customBuffNumber":9})");
        EXPECT_EQ(calls("TP_SetDisplayBuf").back().arguments.at(0), expected) << setting;
        ask(LD_Stop);
    }
    configure(R"({"buffNumberType":4})");
    play();
    EXPECT_EQ(calls("TP_SetDisplayBuf").back().arguments.at(0), "0");
}

TEST_F(PlayTest, transcodingUrlsTakeTheWindowsBlock)
{
    const journal::Tolerated outOfRange;
    play("h/TransCoding/1");
    EXPECT_EQ(playArguments().at(7), std::string(56, '0')) << "made on the way, all zero";
    ask(LD_Stop);
    EXPECT_EQ(ask(LD_SetTrsPlayBackParam, R"({"wndIndex":0,"params":{"transBitrate":9}})").message(),
              missing("transResolution"));
    ASSERT_TRUE(ask(LD_SetTrsPlayBackParam,
                    R"({"wndIndex":0,"params":{"transBitrate":-1,"transResolution":258,"transFrameRate":25}})")
                    .null);
    play("h/transcoding/1");
    EXPECT_EQ(playArguments().at(7), "00020000ffffffff19000000" + std::string(32, '0'));
}

TEST_F(PlayTest, refusesWithoutTouchingTheWindow)
{
    const std::tuple<WithWidget, const char*, std::string> refusals[] = {
        {LD_Play, R"({"wndIndex":0,"auth":""})", missing("url")},
        {LD_Play, R"({"wndIndex":0,"url":"","auth":1})", mismatch("auth", "string")},
        {LD_Play, R"({"url":"","auth":""})", "play_window reference can not be found"},
        {LD_Play, R"({"wndIndex":[],"url":""})",
         "error parsing refence key wndIndex, type mismatch, type required is int, std::size_t or QString"},
        {LD_ReversePlay, R"([])", "play_window reference can not be found"},
        {LD_ReversePlay, R"({"wndIndex":0,"url":"","auth":"","startTime":""})", missing("stopTime")}};
    for (const auto& [function, request, message] : refusals)
        EXPECT_EQ(ask(function, request).message(), message) << request;
    EXPECT_TRUE(calls("TP_SetDisplayBuf").empty());
    EXPECT_TRUE(engine_double::livePlays().empty());
}

} // namespace
