#include "tests/support/Wall.h"

using namespace wall;

namespace {

using TransportTest = WallTest;

// clang-format off
const std::pair<WithWidget, const char*> operations[] = {
    {LD_Pause, "TP_Pause"}, {LD_Resume, "TP_Resume"}, {LD_Fast, "TP_Fast"}, {LD_Slow, "TP_Slow"},
    {LD_FrameForward, "TP_FrameForward"}, {LD_OpenSound, "TP_OpenSound"}, {LD_SetVolume, "TP_SetVolume"},
    {LD_StartSave, "TP_StartSave"}, {LD_StopSave, "TP_StopSave"}, {LD_Snapshot, "TP_JPEGCapture"},
    {LD_GetOSDTime, "TP_GetOSDTime"}};
// clang-format on

TEST_F(TransportTest, operationsSayWhatIsWrongAndCallTheEngineOnce)
{
    const char* const request = R"({"wndIndex":0,"volume":1,"fileName":"f"})";
    for (const auto& [function, call] : operations) {
        SCOPED_TRACE(call);
        const auto operate = [&, &f = function](const char* text) { return ask(f, text); };
        engine_double::give("TP_GetOSDTime", {2024, 1, 1, 0, 0, 0});
        EXPECT_EQ(operate("[]").code(), 500);
        EXPECT_EQ(operate(R"({"wndIndex":7,"fileName":"f"})").code(), 502);
        EXPECT_EQ(operate(request).code(), 501);
        EXPECT_THAT(calls(call), IsEmpty());
        play();
        EXPECT_FALSE(operate(request).object.contains("errorCode"));
        EXPECT_EQ(calls(call).size(), 1U);
        const bool stays = function != LD_Pause && function != LD_FrameForward;
        EXPECT_EQ(player()->playStatus() == Player::Playing, stays);
        ask(LD_Stop);
        EXPECT_EQ(operate(request).code(), 501) << "a stopped player counts as none";
        engine_double::reset();
    }
}

TEST_F(TransportTest, pausesOnceAndResumesForwards)
{
    play();
    ASSERT_TRUE(ask(LD_Pause).null);
    ASSERT_TRUE(ask(LD_Pause).null);
    EXPECT_EQ(calls("TP_Pause").size(), 1U);
    EXPECT_TRUE(LD_IsWindowPlaying(&main(), 0));
    ask(LD_Stop);
    ask(LD_ReversePlay, R"({"wndIndex":0,"url":"","auth":"","startTime":"","stopTime":""})");
    ask(LD_Resume);
    EXPECT_EQ(player()->playStatus(), Player::Playing);
}

TEST_F(TransportTest, stopEndsTheRecordingFirst)
{
    const std::string id = std::to_string(play());
    ask(LD_StartSave, R"({"wndIndex":0,"fileName":"f"})");
    const std::size_t before = calls().size();
    EXPECT_TRUE(ask(LD_Stop).null);
    EXPECT_TRUE(ask(LD_Stop, R"({"wndIndex":1})").null) << "one that never played is stopped";
    EXPECT_THAT(engineCalls(before), ElementsAre("TP_StopSave(" + id + ")", "TP_Stop(" + id + ")"));
}

TEST_F(TransportTest, stopAllReachesParkedWindowsAndTakesNoRefusalBadly)
{
    play();
    ask(LD_StartSave, R"({"wndIndex":0,"fileName":"f"})");
    ask(LD_Play, R"({"wndIndex":3,"url":"","auth":""})");
    Player* const parked = main().layout()->itemAt(3)->widget()->findChild<Player*>();
    arrange(R"({"type":1})");
    engine_double::answer("TP_Stop", -1);
    LD_Release(LD_StopRealPlayAll(&main()));
    EXPECT_TRUE(player()->playing() && parked->playing());
    EXPECT_FALSE(player()->saving());

    ask(LD_StartSave, R"({"wndIndex":0,"fileName":"f"})");
    engine_double::answer("TP_Stop", 0);
    engine_double::answer("TP_StopSave", -1);
    LD_Release(LD_StopRealPlayAll(&main()));
    EXPECT_FALSE(player()->playing() || player()->saving() || parked->playing());
    EXPECT_THAT(engine_double::livePlays(), IsEmpty());
    arrange(R"({"custom":{"windows":[]}})");
    LD_Release(LD_StopRealPlayAll(&main()));
}

TEST_F(TransportTest, settingsOfLaterPlays)
{
    EXPECT_EQ(ask(LD_SetHttps, R"({"https":"yes"})").message(), mismatch("https", "bool"));
    EXPECT_FALSE(player());
    ASSERT_TRUE(ask(LD_SetHttps, R"({"https":true})").null);
    EXPECT_EQ(main().findChildren<Player*>().size(), 4);

    engine_double::reset();
    EXPECT_TRUE(ask(LD_SetReconnectInfo, R"({"wndIndex":0,"auth":"x"})").null) << "a stopped player will do";
    EXPECT_THAT(engineCalls(), ElementsAre("TP_SetReconnectInfo(-1, x)"));
    delete player();
    EXPECT_EQ(ask(LD_SetReconnectInfo, R"({"wndIndex":0,"auth":"x"})").message(),
              "the player is not playing can not set reconnect info");
    EXPECT_EQ(ask(LD_SetTrsPlayBackParam).message(), missing("transBitrate"));
}

TEST_F(TransportTest, volumeIsPercentInSixteenBits)
{
    const journal::Tolerated wrongVolumes;
    const std::pair<const char*, const char*> volumes[] = {
        {"100", "65535"}, {"50", "32767"}, {"1", "655"},     {"0", "0"},      {"\"50\"", "32767"},
        {"\"x\"", "0"},   {"101", "654"},  {"-1", "64881"},  {"true", "655"}, {"[]", "0"},
        {"1e300", "0"},   {"-1e300", "0"}, {"49.6", "32767"}};
    play();
    for (const auto& [volume, expected] : volumes) {
        ASSERT_TRUE(ask(LD_SetVolume, QByteArray(R"({"wndIndex":0,"volume":)") + volume + "}").null) << volume;
        EXPECT_EQ(calls("TP_SetVolume").back().arguments.at(1), expected) << volume;
    }
    EXPECT_EQ(ask(LD_SetVolume, R"({"wndIndex":0,"volume":null})").message(), missing("volume"));
    EXPECT_EQ(LD_CloseSound(), nullptr);
    EXPECT_EQ(calls("TP_CloseSound").size(), 1U);
}

TEST_F(TransportTest, namesPicturesByFormatAndKind)
{
    const std::tuple<const char*, const char*, const char*, QString> pictures[] = {
        {"0", "playback_cam1.jpg", "TP_JPEGCapture", dayFolder("PlaybackPics") + "/cam1.jpg"},
        {"0", "cam1.bmp", "TP_JPEGCapture", dayFolder("CaptureFiles") + "/cam1.jpg"},
        {"1", "a.jpg.bmp", "TP_BMPCapture", dayFolder("CaptureFiles") + "/a.bmp"},
        {"1", "a.JPG", "TP_BMPCapture", dayFolder("CaptureFiles") + "/a.JPG.bmp"},
        {"\"x\"", "ü", "TP_JPEGCapture", dayFolder("CaptureFiles") + "/ü.jpg"},
    };
    const std::string id = std::to_string(play());
    ask(LD_Pause);
    for (const auto& [format, fileName, call, path] : pictures) {
        configure(QByteArray(R"({"captureFileFormat":)") + format + "}");
        const QByteArray request = QByteArray(R"({"wndIndex":0,"fileName":")") + fileName + "\"}";
        EXPECT_TRUE(ask(LD_Snapshot, request).null);
        EXPECT_THAT(calls(call).back().arguments, ElementsAre(id, path.toStdString()));
        EXPECT_TRUE(QFileInfo(path).dir().exists());
    }
    engine_double::answer("TP_BMPCapture", -1);
    configure(R"({"captureFileFormat":1})");
    EXPECT_THAT(ask(LD_Snapshot, R"({"wndIndex":0,"fileName":"a"})").message(), HasSubstr("TP_JPEGCapture error, "));
    EXPECT_EQ(ask(LD_Snapshot, R"({"fileName":1})").message(),
              "Snapshot descriptor should contains key 'fileName' of String");
    configure(R"({"captureFileFormat":2})");
    EXPECT_EQ(ask(LD_Snapshot, R"({"fileName":"a"})").message(), "file format magic number is neither 0 nor 1");
}

TEST_F(TransportTest, onScreenTimeIsLocalAndRollsOver)
{
    play();
    const auto osdTime = [this](const std::vector<double>& record) {
        engine_double::give("TP_GetOSDTime", record);
        return ask(LD_GetOSDTime);
    };
    const QDateTime noon({2024, 7, 1}, {12, 0});
    EXPECT_EQ(osdTime({2024, 7, 1, 12, 0, 0}).object["osdTime"].toDouble(),
              static_cast<double>(noon.toSecsSinceEpoch()));
    EXPECT_EQ(osdTime({2023, 13, 1, 0, 0, 60}).object, osdTime({2024, 1, 1, 0, 1, 0}).object);
    const std::vector<double> outside[] = {{2038, 1, 1, 0, 0, 0},  {1969, 1, 1, 0, 0, 0},  {2024, 14, 1, 0, 0, 0},
                                           {2024, 0, 1, 0, 0, 0},  {2024, 1, 0, 0, 0, 0},  {2024, 1, 32, 0, 0, 0},
                                           {2024, 1, 1, 61, 0, 0}, {2024, 1, 1, 0, 61, 0}, {2024, 1, 1, 0, 0, 61}};
    for (const auto& record : outside)
        EXPECT_EQ(osdTime(record).message(), "the player is not playing can not get osd time");
}

Answer startTalk(const QJsonObject& changes, const char* without = "")
{
    QJsonObject request =
        documents::object(R"({"openUrl":"o","closeUrl":"c","dataUrl":"d","auth":"ä","audioType":1,"uuid":"u"})");
    for (const QString& key : changes.keys())
        request[key] = changes[key];
    request.remove(without);
    const QJsonDocument document(request);
    return take(LD_StartVoiceTalk(&document));
}

TEST_F(TransportTest, passesATalkOnAndStopsItOnce)
{
    const journal::Tolerated wrongTypes;
    engine_double::reset();
    engine_double::answer("TP_StartVoiceTalk", 0);
    EXPECT_TRUE(startTalk({{"bitRate", QJsonValue()}, {"sampleRate", 8000}, {"soundChannel", "x"}}).null);
    for (const char* const uuid : {R"({"uuid":"u"})", R"({"uuid":"u"})", R"({"uuid":"never seen"})"})
        EXPECT_TRUE(ask(LD_StopVoiceTalk, uuid).null);
    EXPECT_THAT(engineCalls(), ElementsAre("TP_StartVoiceTalk(o, c, d, ä, 1, 0, 8000, 0, -1)", "TP_StopVoiceTalk(0)"));
    engine_double::answer("TP_StartVoiceTalk", -1);
    EXPECT_FALSE(startTalk({}).null);
    EXPECT_TRUE(ask(LD_StopVoiceTalk, R"({"uuid":"u"})").null);
    EXPECT_EQ(calls("TP_StopVoiceTalk").size(), 1U) << "a refused talk is not stopped";
}

TEST_F(TransportTest, readsEverythingOfATalkButTheUuidBeforeItCalls)
{
    for (const char* key : {"openUrl", "closeUrl", "dataUrl", "auth", "audioType"})
        EXPECT_EQ(startTalk({}, key).message(), missing(key));
    EXPECT_TRUE(calls("TP_StartVoiceTalk").empty());
    EXPECT_EQ(startTalk({}, "uuid").message(), missing("uuid"));
    EXPECT_EQ(calls("TP_StartVoiceTalk").size(), 1U);
    EXPECT_EQ(ask(LD_StopVoiceTalk, "[]").message(), missing("uuid"));
    EXPECT_EQ(ask(LD_StartVoiceTalk, "[]").message(), "open voice talk ");
}

} // namespace
