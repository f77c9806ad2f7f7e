#include "src/player/IFisheyeModule.h"
#include "tests/support/Wall.h"

#include <QLayout>
#include <QPointer>

using namespace wall;

namespace {

class TransportTest : public WallTest
{
};

// An operation on a playing window: what it says, what it calls, and the status that it leads to from Playing.
struct Operation
{
    WithWidget function;
    const char* notAnObject;
    const char* notPlaying;
    const char* call;
    int after = Player::Playing;
};

const Operation operations[] = {
    {LD_Pause, "pause json descriptor should a json object", "the player is not playing, can not pause.", "TP_Pause",
     Player::Paused},
    {LD_Resume, "resume json descriptor should be an object", "the window is not playing, can not resume", "TP_Resume"},
    {LD_Fast, "fast json descriptor should be an object", "the player is not playing, can not fast", "TP_Fast"},
    {LD_Slow, "slow json descriptor should be a json object", "the player is not playing, can not slow", "TP_Slow"},
    {LD_FrameForward, "FrameForward json descriptor should be a json object",
     "the window is not playing, can not frame forward", "TP_FrameForward", Player::FrameStepping},
    {LD_OpenSound, "open sound json descriptor should be json object", "the player is not playing, can not open sound",
     "TP_OpenSound"},
    {LD_SetVolume, "set volume json descriptor should be json object", "the player is not playing can not set volume",
     "TP_SetVolume"},
    {LD_StartSave, "fileName does not exists", "the player is not playing can not record", "TP_StartSave"},
    {LD_StopSave, "stop save json descriptor should be object", "the player is not playing can not stop record",
     "TP_StopSave"},
    {LD_Snapshot, "Snapshot descriptor should be json object", "the player is not playing can not capture",
     "TP_JPEGCapture"},
    {LD_GetOSDTime, "getOSDTime json descriptor should be a json object",
     "the player is not playing can not get osd time", "TP_GetOSDTime"},
};

TEST_F(TransportTest, operationsSayWhatIsWrongAndCallTheEngineOnce)
{
    const char* const request = R"({"wndIndex":0,"volume":1,"fileName":"f"})";
    for (const Operation& operation : operations) {
        SCOPED_TRACE(operation.call);
        const auto operate = [&](const char* text) { return ask(operation.function, text); };
        engine_double::give("TP_GetOSDTime", {2024, 1, 1, 0, 0, 0});
        EXPECT_EQ(operate("[]").message(), operation.notAnObject);
        EXPECT_EQ(operate("[]").code(), 500);
        EXPECT_EQ(operate(R"({"wndIndex":7,"fileName":"f"})").code(), 502);
        EXPECT_EQ(operate(request).message(), operation.notPlaying);
        EXPECT_EQ(operate(request).code(), 501);
        EXPECT_THAT(calls(operation.call), IsEmpty());
        play();
        EXPECT_FALSE(operate(request).object.contains("errorCode"));
        EXPECT_EQ(calls(operation.call).size(), 1U);
        EXPECT_EQ(player()->playStatus(), operation.after);
        ask(LD_Stop);
        EXPECT_EQ(operate(request).message(), operation.notPlaying) << "a stopped player counts as none";
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

TEST_F(TransportTest, stopEndsTheRecordingFirstAndCanBeTriedAgain)
{
    const std::string id = std::to_string(play());
    ask(LD_StartSave, R"({"wndIndex":0,"fileName":"f"})");
    engine_double::answer("TP_StopSave", -1);
    engine_double::answer("TP_Stop", -1);
    const std::size_t before = calls().size();
    EXPECT_EQ(ask(LD_Stop).message(),
              "call tide_pipe TP_Stop error, TidePipe Call returns -1, TP_GetLastError() returns 0");
    EXPECT_TRUE(player()->playing());
    EXPECT_FALSE(player()->saving());
    engine_double::answer("TP_Stop", 0);
    EXPECT_TRUE(ask(LD_Stop).null);
    EXPECT_TRUE(ask(LD_Stop).null) << "stopping a stopped window is no error";
    EXPECT_TRUE(ask(LD_Stop, R"({"wndIndex":1})").null) << "nor one that never played";
    EXPECT_THAT(engineCalls(before),
                ElementsAre("TP_StopSave(" + id + ")", "TP_Stop(" + id + ")", "TP_Stop(" + id + ")"));
    EXPECT_EQ(player()->playId(), -1);
    EXPECT_EQ(ask(LD_Stop, "[]").message(), "stop json descriptor should be a json object");
}

// The fisheye companion, as the streams see it.
class Fisheye : public quillmark::lumen_deck::IFisheyeModule
{
public:
    using IFisheyeModule::IFisheyeModule;
    int getCorrectionType() const override { return correctionType; }
    QWidget* getSoftwarePlayRealWindow() const override { return realWindow; }
    int getSubWindowPlayerId(int index) override { return 40 + index; }
    void resetParam(int index) override { resets.push_back(index); }
    std::shared_ptr<quillmark::lumen_deck::ErrorBase>
    setJsonParam(quillmark::lumen_deck::FisheyeModuleInterface operation, const QJsonDocument&) override
    {
        operations.push_back(operation);
        return nullptr;
    }

    int correctionType = 0;
    QWidget* realWindow = nullptr;
    std::vector<int> resets;
    std::vector<int> operations;
};

TEST_F(TransportTest, theCompanionTakesPart)
{
    const journal::Tolerated noAddress;
    auto* fisheye = new Fisheye(&main());
    play();
    ask(LD_Stop, R"({"wndIndex":"0"})");
    EXPECT_THAT(fisheye->resets, IsEmpty()) << "no window has that name";
    const QByteArray name = main().layout()->itemAt(0)->widget()->objectName().toUtf8();
    ask(LD_Stop, R"({"wndIndex":")" + name + "\"}");
    EXPECT_THAT(fisheye->resets, ElementsAre(0));

    fisheye->correctionType = 2;
    ask(LD_Play);
    ask(LD_Stop);
    EXPECT_THAT(fisheye->operations, ElementsAre(3, 4));
    fisheye->correctionType = 1;
    EXPECT_EQ(ask(LD_Pause).message(), "get fisheye realWindow error");
    QWidget real(&main());
    fisheye->realWindow = &real;
    EXPECT_EQ(ask(LD_Pause, R"({"wndIndex":99})").message(), "the player is not playing, can not pause.");

    const QPointer<Fisheye> module = fisheye;
    LD_Release(LD_StopRealPlayAll(&main()));
    EXPECT_FALSE(module);
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
    EXPECT_TRUE(player()->https());

    engine_double::reset();
    EXPECT_TRUE(ask(LD_SetReconnectInfo, R"({"wndIndex":0,"auth":"x"})").null) << "a stopped player will do";
    EXPECT_THAT(engineCalls(), ElementsAre("TP_SetReconnectInfo(-1, x)"));
    delete player();
    EXPECT_EQ(ask(LD_SetReconnectInfo, R"({"wndIndex":0,"auth":"x"})").message(),
              "the player is not playing can not set reconnect info");
    EXPECT_EQ(ask(LD_SetTrsPlayBackParam).message(), missing("transBitrate"));
}

TEST_F(TransportTest, queryAnswersTheSizeOrNothing)
{
    engine_double::give("TP_GetPictureSize", {1920, 1080});
    const Answer none = ask(LD_QueryPlayStatus);
    EXPECT_FALSE(none.null);
    EXPECT_TRUE(none.object.isEmpty());
    play();
    EXPECT_EQ(ask(LD_QueryPlayStatus).object,
              json(R"({"playInfo":{"pictureSize":{"width":1920,"height":1080}}})").object());
    engine_double::answer("TP_GetPictureSize", -2);
    EXPECT_TRUE(ask(LD_QueryPlayStatus).object.isEmpty());
    EXPECT_EQ(ask(LD_QueryPlayStatus, "[]").message(), "query play status json descriptor should be json object");
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

} // namespace
