#include "tests/support/Functions.h"
#include "tests/support/Wall.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>

using namespace wall;

namespace {

// One request of a host, and the words for each engine call whose failure it is told of: %1 is the call's name. What is
// not named fails unheard.
struct Step
{
    const char* name;
    std::function<Answer()> ask;
    QMap<QString, QString> told;
};

class FaultTest : public WallTest
{
protected:
    template <class Function> std::function<Answer()> request(Function function, const char* text)
    {
        return [=] { return ask(function, text); };
    }

    std::vector<Step> session()
    {
        const char* window = R"({"wndIndex":0,"volume":50,"auth":"a"})";
        const char* stream =
            R"({"wndIndex":0,"url":"h/channels/1","auth":"","startTime":"","stopTime":"","fileName":"f"})";
        const char* talk = R"({"uuid":"u","openUrl":"","closeUrl":"","dataUrl":"","auth":"","audioType":0})";
        const QString plain = "call %1 error";
        const QString ofTransport = "call tide_pipe %1 error";
        const QString ofSound = "%1 call failed";
        const QString ofRecording = "%1 call error";
        const Step play = {"play",
                           request(LD_Play, stream),
                           {{"TP_Play", "tide_pipe error " + ofTransport}, {"TP_RigisterDrawFun", plain}}};
        const Step stop = {"stop", request(LD_Stop, window), {{"TP_Stop", ofTransport}}};
        const Step record = {"record", request(LD_StartSave, stream), {{"TP_StartSave", ofRecording}}};
        return {
            play,
            {"pause", request(LD_Pause, window), {{"TP_Pause", ofTransport}}},
            {"step", request(LD_FrameForward, window), {{"TP_FrameForward", ofTransport}}},
            {"resume", request(LD_Resume, window), {{"TP_Resume", ofTransport}}},
            {"fast", request(LD_Fast, window), {{"TP_Fast", ofTransport}}},
            {"slow", request(LD_Slow, window), {{"TP_Slow", ofTransport}}},
            {"size", request(LD_QueryPlayStatus, window), {}},
            {"credential", request(LD_SetReconnectInfo, window), {}},
            {"open sound", request(LD_OpenSound, window), {{"TP_OpenSound", ofSound}}},
            {"volume", request(LD_SetVolume, window), {{"TP_SetVolume", ofSound}}},
            {"close sound", [] { return take(LD_CloseSound()); }, {}},
            {"picture", request(LD_Snapshot, stream), {{"TP_JPEGCapture", plain}}},
            {"time", request(LD_GetOSDTime, window), {{"TP_GetOSDTime", plain}}},
            record,
            {"end record", request(LD_StopSave, window), {{"TP_StopSave", ofRecording}}},
            record,
            stop,
            {"reverse",
             request(LD_ReversePlay, stream),
             {{"TP_ReversePlay", plain}, {"TP_RigisterDrawFun", "call %1c error"}}},
            stop,
            {"talk", request(LD_StartVoiceTalk, talk), {{"TP_StartVoiceTalk", "call tide pipe %1 error"}}},
            {"end talk", request(LD_StopVoiceTalk, talk), {}},
            play,
            {"stop all", [this] { return take(LD_StopRealPlayAll(&main())); }, {}},
            stop,
        };
    }

    void callEverything(bool round, int failing);

    int status() { return player() ? player()->playStatus() : Player::Stopped; }

    void prepare()
    {
        engine_double::reset();
        engine_double::lastError(17);
        engine_double::give("TP_GetOSDTime", {2024, 7, 1, 12, 0, 0});
        engine_double::give("TP_GetPictureSize", {704, 576});
    }

    // The call that failed, when one did in this step.
    static QString failedCall(std::size_t before, int nth)
    {
        const std::vector<engine_double::Call> all = calls();
        int count = 0;
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i].name != "TP_GetLastError" && ++count == nth && i >= before)
                return QString::fromStdString(all[i].name);
        }
        return "";
    }

    // With the nth engine call failing: the step that it falls into says so, changes nothing, and works when it is
    // tried again.
    void play(int nth)
    {
        engine_double::failCall(nth);
        for (const Step& step : session()) {
            const std::size_t before = calls().size();
            const int statusBefore = status();
            const Answer answer = step.ask();
            const QString failed = failedCall(before, nth);
            SCOPED_TRACE(step.name + failed.toStdString());
            if (!step.told.contains(failed)) {
                EXPECT_FALSE(answer.object.contains("errorCode")) << answer.message();
                continue;
            }
            const QString refusal = failed == "TP_StartVoiceTalk"
                                        ? ", TP_StartVoiceTalk returns -1, TP_GetLastError returns 17"
                                        : ", TidePipe Call returns -1, TP_GetLastError() returns 17";
            EXPECT_EQ(answer.message(), (step.told[failed].arg(failed) + refusal).toStdString());
            EXPECT_EQ(answer.code(), 17);
            if (failed == "TP_RigisterDrawFun") {
                EXPECT_TRUE(LD_IsWindowPlaying(&main(), 0)) << "the stream runs, without a drawing layer";
                EXPECT_TRUE(ask(LD_Stop).null);
            }
            EXPECT_EQ(status(), statusBefore);
            EXPECT_FALSE(step.ask().object.contains("errorCode")) << "again";
        }
    }
};

// In a process of its own, since the handler is registered once in a process.
TEST_F(FaultTest, theFirstPlayerThatMayRegistersTheMessageHandler)
{
    const auto numbers = [this] {
        engine_double::answer("TP_SetMessageHandler", -1);
        const int id = WallTest::play();
        engine_double::emitMessage(id, 1);
        const std::size_t unheard = events().size();
        engine_double::answer("TP_SetMessageHandler", 0);
        ask(LD_SetHttps, R"({"https":false})");
        engine_double::emitMessage(id, 1);
        std::fprintf(stderr, "%zu calls, %zu and %zu events\n", calls("TP_SetMessageHandler").size(), unheard,
                     events().size());
        std::_Exit(0);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(numbers(), ::testing::ExitedWithCode(0), "2 calls, 0 and 1 events");
}

TEST_F(FaultTest, everyEngineCallFailsInTurn)
{
    prepare();
    play(0);
    const std::vector<engine_double::Call> all = calls();
    const auto count = std::count_if(all.begin(), all.end(), [](const auto& c) { return c.name != "TP_GetLastError"; });
    ASSERT_GT(count, 60);
    for (int nth = 1; nth <= count; ++nth) {
        SCOPED_TRACE(nth);
        prepare();
        play(nth);
        EXPECT_TRUE(engine_double::livePlays().empty()) << "no stream is left behind";
    }
}

// Every function in turn, on a wall that plays, as it is or in views of a round picture.
void FaultTest::callEverything(bool round, int failing)
{
    prepare();
    engine_double::failCall(failing);
    for (const functions::Function& function : functions::all()) {
        if (round && !std::holds_alternative<functions::WithBoth>(function.address))
            continue; // knows of no window
        if (!LD_IsWindowPlaying(&main(), 0)) {
            if (round) {
                ask(LD_SetCorrectionType, R"({"type":1})");
                ask(LD_ArrangeFECWindow, R"({"type":3})");
            }
            ask(LD_Play, R"({"wndIndex":0,"auth":"a:b","url":"rtsp://camera/channels/1"})");
        }
        take(function(&main(), &functions::request()));
    }
    LD_HideWindow(&main(), 0);
    LD_ShowWindow(&main(), 0);
    LD_WndResolutionChange(&main());
    engine_double::failCall(0);
}

TEST_F(FaultTest, noFailureOfTheEngineStopsAnyFunctionForGood)
{
    const journal::Tolerated oneDocumentForAll;
    const functions::Nobody nobody;
    for (const bool round : {false, true}) {
        callEverything(round, 0);
        const std::size_t count = calls().size();
        for (std::size_t nth = 1; nth <= count; ++nth) {
            SCOPED_TRACE(testing::Message() << nth << (round ? " round" : ""));
            callEverything(round, static_cast<int>(nth));
            take(LD_StopRealPlayAll(&main()));
            ask(LD_SetCorrectionType, R"({"type":0})");
            arrange(R"({"type":2})");
            WallTest::play();
            EXPECT_TRUE(ask(LD_StartSave, R"({"wndIndex":0,"fileName":"f"})").null);
            EXPECT_TRUE(ask(LD_StopSave).null);
            take(LD_StopRealPlayAll(&main()));
            EXPECT_TRUE(engine_double::livePlays().empty()) << "no stream is left behind";
        }
    }
}

TEST_F(FaultTest, destructionTakesNoRefusalBadly)
{
    for (const char* name : {"TP_StopSave", "TP_Stop"}) {
        WallTest::play();
        ask(LD_StartSave, R"({"wndIndex":0,"fileName":"f"})");
        engine_double::answer(name, -1);
        delete player();
        EXPECT_EQ(calls("TP_Stop").size(), 1U) << name;
        engine_double::reset();
    }
}

} // namespace
