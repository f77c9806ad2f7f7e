#include "tests/support/Wall.h"

using namespace wall;

class PlayerTest : public WallTest
{
protected:
    void wheel(int delta) { turnWheel(qobject_cast<QWidget*>(player()->parent()), {1, 1}, {0, delta}); }

    // Whether a message of the id reaches the host when it comes on a thread of the engine; then it is as told.
    bool heard(int playId, unsigned message, int index)
    {
        events().clear();
        std::thread([=] { engine_double::emitMessage(playId, message); }).join();
        if (events().empty())
            return false;
        EXPECT_EQ(events().size(), 1U);
        EXPECT_EQ(events().at(0).mainWindow, &main());
        EXPECT_EQ(events().at(0).object, (QJsonObject{{"cmd", "window.onPluginEventHandler"},
                                                      {"wndIndex", index},
                                                      {"eventType", static_cast<qint64>(message)}}));
        return true;
    }
};

TEST_F(PlayerTest, messagesReachTheHostWhileTheStreamLives)
{
    const int id = play();
    EXPECT_TRUE(heard(id, 3, 0));
    EXPECT_TRUE(heard(id, 4294967295U, 0)) << "no code is filtered";
    EXPECT_FALSE(heard(id + 1, 3, 0));
    arrange(R"({"custom":[{"wndIndex":3},{"wndIndex":0}]})");
    EXPECT_TRUE(heard(id, 3, 1)) << "the window has moved";
    arrange(R"({"custom":{"windows":[]}})");
    EXPECT_TRUE(heard(id, 3, -1)) << "a parked window still has its main widget";
    LD_Release(LD_StopRealPlayAll(&main()));
    EXPECT_FALSE(heard(id, 3, 0));
}

TEST_F(PlayerTest, messagesThatComeBeforeTheIdIsKnownAreSentInOrder)
{
    engine_double::answer("TP_Play", 7);
    engine_double::onCall("TP_Play", [this] { EXPECT_FALSE(heard(7, 1, 0) || heard(8, 1, 0)); });
    engine_double::onCall("TP_RigisterDrawFun", [this] { EXPECT_FALSE(heard(7, 2, 0)) << "the first goes first"; });
    play();
    QApplication::processEvents();
    ASSERT_EQ(events().size(), 2U);
    EXPECT_EQ(events()[0].object["eventType"], 1);
    EXPECT_EQ(events()[1].object["eventType"], 2);
    EXPECT_TRUE(heard(7, 3, 0));
    EXPECT_FALSE(heard(8, 3, 0));
}

TEST_F(PlayerTest, destructionEndsRecordingThenStreamAndDropsLateMessages)
{
    bool heardLate = true;
    const int id = play();
    ask(LD_StartSave, R"({"wndIndex":0,"fileName":"f"})");
    engine_double::onCall("TP_Stop", [&] { heardLate = heard(id, 5, 0); });
    const std::size_t before = calls().size();
    delete player();
    const std::string number = "(" + std::to_string(id) + ")";
    EXPECT_THAT(engineCalls(before), ElementsAre("TP_StopSave" + number, "TP_Stop" + number));
    EXPECT_FALSE(heardLate) << "the id is forgotten before the engine stops";
    EXPECT_THAT(engine_double::livePlays(), IsEmpty());
}

TEST_F(PlayerTest, wheelStepsDownwardsInSingleFrameModeOnly)
{
    play();
    const auto steps = [] { return calls("TP_FrameForward").size(); };
    wheel(-120);
    ask(LD_Pause);
    wheel(-120);
    EXPECT_EQ(steps(), 0U);
    ask(LD_FrameForward);
    wheel(120);
    wheel(0);
    EXPECT_EQ(steps(), 1U);
    engine_double::answer("TP_FrameForward", -1);
    wheel(-120);
    wheel(-120);
    EXPECT_EQ(steps(), 3U);
    EXPECT_EQ(player()->playStatus(), Player::FrameStepping);
}
