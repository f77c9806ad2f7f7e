#include "src/player/Player.h"
#include "tests/support/Wall.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>

using engine_double::calls;
using wall::Answer;

namespace {

using WithWidget = QJsonDocument* (*)(QWidget*, const QJsonDocument*);

// One request of a host, and what it is told when an engine call fails in it; calls that are not named fail unheard.
struct Step
{
    const char* name;
    std::function<Answer()> ask;
    std::map<std::string, std::string> told;
};

class FaultTest : public wall::WallTest
{
protected:
    std::function<Answer()> request(WithWidget function, const char* text)
    {
        return [=] { return ask(function, text); };
    }

    static std::function<Answer()> request(QJsonDocument* (*function)(const QJsonDocument*), const char* text)
    {
        return [=] {
            const QJsonDocument document = wall::json(text);
            return wall::take(function(&document));
        };
    }

    std::vector<Step> session()
    {
        const char* window = R"({"wndIndex":0,"volume":50,"auth":"a"})";
        const char* stream =
            R"({"wndIndex":0,"url":"h/channels/1","auth":"","startTime":"","stopTime":"","fileName":"f"})";
        const char* talk = R"({"uuid":"u","openUrl":"","closeUrl":"","dataUrl":"","auth":"","audioType":0})";
        const auto call = [](const std::string& name) {
            return std::map<std::string, std::string>{{name, "call tide_pipe " + name + " error"}};
        };
        return {
            {"play",
             request(LD_Play, stream),
             {{"TP_Play", "tide_pipe error call tide_pipe TP_Play error"},
              {"TP_RigisterDrawFun", "call TP_RigisterDrawFun error"}}},
            {"pause", request(LD_Pause, window), call("TP_Pause")},
            {"step", request(LD_FrameForward, window), call("TP_FrameForward")},
            {"resume", request(LD_Resume, window), call("TP_Resume")},
            {"fast", request(LD_Fast, window), call("TP_Fast")},
            {"slow", request(LD_Slow, window), call("TP_Slow")},
            {"size", request(LD_QueryPlayStatus, window), {}},
            {"credential", request(LD_SetReconnectInfo, window), {}},
            {"open sound", request(LD_OpenSound, window), {{"TP_OpenSound", "TP_OpenSound call failed"}}},
            {"volume", request(LD_SetVolume, window), {{"TP_SetVolume", "TP_SetVolume call failed"}}},
            {"close sound", [] { return wall::take(LD_CloseSound()); }, {}},
            {"picture", request(LD_Snapshot, stream), {{"TP_JPEGCapture", "call TP_JPEGCapture error"}}},
            {"time", request(LD_GetOSDTime, window), {{"TP_GetOSDTime", "call TP_GetOSDTime error"}}},
            {"record", request(LD_StartSave, stream), {{"TP_StartSave", "TP_StartSave call error"}}},
            {"end record", request(LD_StopSave, window), {{"TP_StopSave", "TP_StopSave call error"}}},
            {"record on", request(LD_StartSave, stream), {{"TP_StartSave", "TP_StartSave call error"}}},
            {"stop", request(LD_Stop, window), call("TP_Stop")},
            {"reverse",
             request(LD_ReversePlay, stream),
             {{"TP_ReversePlay", "call TP_ReversePlay error"},
              {"TP_RigisterDrawFun", "call TP_RigisterDrawFunc error"}}},
            {"stop reverse", request(LD_Stop, window), call("TP_Stop")},
            {"talk",
             request(LD_StartVoiceTalk, talk),
             {{"TP_StartVoiceTalk", "call tide pipe TP_StartVoiceTalk error"}}},
            {"end talk", request(LD_StopVoiceTalk, talk), {}},
            {"play once more",
             request(LD_Play, stream),
             {{"TP_Play", "tide_pipe error call tide_pipe TP_Play error"},
              {"TP_RigisterDrawFun", "call TP_RigisterDrawFun error"}}},
            {"stop all", [this] { return wall::take(LD_StopRealPlayAll(&main())); }, {}},
            {"stop again", request(LD_Stop, window), call("TP_Stop")},
        };
    }

    void prepare()
    {
        engine_double::reset();
        engine_double::lastError(17);
        engine_double::give("TP_GetOSDTime", {2024, 7, 1, 12, 0, 0});
        engine_double::give("TP_GetPictureSize", {704, 576});
    }

    // The call that failed, when one did in this step.
    static std::string failedCall(std::size_t before, int nth)
    {
        const std::vector<engine_double::Call> all = calls();
        int count = 0;
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i].name != "TP_GetLastError" && ++count == nth)
                return i >= before ? all[i].name : "";
        }
        return "";
    }

    // With the nth engine call failing: the step that it falls into says so, and works when it is tried again.
    void play(int nth)
    {
        engine_double::failCall(nth);
        for (const Step& step : session()) {
            const std::size_t before = calls().size();
            const Answer answer = step.ask();
            const std::string failed = failedCall(before, nth);
            const auto told = step.told.find(failed);
            if (told == step.told.end()) {
                EXPECT_FALSE(answer.object.contains("errorCode")) << step.name << " " << failed << answer.message();
                continue;
            }
            EXPECT_EQ(answer.message(), told->second + refusal(failed)) << step.name;
            EXPECT_EQ(answer.code(), 17) << step.name;
            if (failed == "TP_RigisterDrawFun") {
                EXPECT_TRUE(ask(LD_Stop, R"({"wndIndex":0})").null) << "the stream runs and can be stopped";
            }
            EXPECT_FALSE(step.ask().object.contains("errorCode")) << step.name << " again";
        }
    }

    static std::string refusal(const std::string& failed)
    {
        return failed == "TP_StartVoiceTalk" ? ", TP_StartVoiceTalk returns -1, TP_GetLastError returns 17"
                                             : ", TidePipe Call returns -1, TP_GetLastError() returns 17";
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

TEST_F(FaultTest, destructionTakesNoRefusalBadly)
{
    for (const char* name : {"TP_StopSave", "TP_Stop"}) {
        WallTest::play();
        ask(LD_StartSave, R"({"wndIndex":0,"fileName":"f"})");
        engine_double::answer(name, -1);
        delete main().findChild<quillmark::lumen_deck::Player*>();
        EXPECT_EQ(calls("TP_Stop").size(), 1U) << name;
        engine_double::reset();
    }
}

} // namespace
