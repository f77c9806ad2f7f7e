#include "tests/support/Wall.h"

using namespace wall;

namespace {

class VoiceTalkTest : public WallTest
{
protected:
    void SetUp() override
    {
        WallTest::SetUp();
        engine_double::reset();
    }

    static Answer start(const QJsonObject& changes, const char* without = "")
    {
        QJsonObject request =
            documents::object(R"({"openUrl":"o","closeUrl":"c","dataUrl":"d","auth":"ä","audioType":1,"uuid":"u"})");
        for (const QString& key : changes.keys())
            request[key] = changes[key];
        request.remove(without);
        return ask(LD_StartVoiceTalk, QJsonDocument(request).toJson());
    }
};

TEST_F(VoiceTalkTest, passesTheTalkOnAndStopsItOnce)
{
    const journal::Tolerated wrongTypes;
    engine_double::answer("TP_StartVoiceTalk", 0);
    EXPECT_TRUE(start({{"bitRate", QJsonValue()}, {"sampleRate", 8000}, {"soundChannel", "x"}}).null);
    for (const char* const uuid : {R"({"uuid":"u"})", R"({"uuid":"u"})", R"({"uuid":"never seen"})"})
        EXPECT_TRUE(ask(LD_StopVoiceTalk, uuid).null);
    EXPECT_THAT(engineCalls(), ElementsAre("TP_StartVoiceTalk(o, c, d, ä, 1, 0, 8000, 0, -1)", "TP_StopVoiceTalk(0)"));
    engine_double::answer("TP_StartVoiceTalk", -1);
    EXPECT_FALSE(start({}).null);
    EXPECT_TRUE(ask(LD_StopVoiceTalk, R"({"uuid":"u"})").null);
    EXPECT_EQ(calls("TP_StopVoiceTalk").size(), 1U) << "a refused talk is not stopped";
}

TEST_F(VoiceTalkTest, readsEverythingButTheUuidBeforeItCalls)
{
    for (const char* key : {"openUrl", "closeUrl", "dataUrl", "auth", "audioType"})
        EXPECT_EQ(start({}, key).message(), missing(key));
    EXPECT_TRUE(calls("TP_StartVoiceTalk").empty());
    EXPECT_EQ(start({}, "uuid").message(), missing("uuid"));
    EXPECT_EQ(calls("TP_StartVoiceTalk").size(), 1U);
    EXPECT_EQ(ask(LD_StopVoiceTalk, "[]").message(), missing("uuid"));
    EXPECT_EQ(ask(LD_StartVoiceTalk, "[]").message(), "open voice talk ");
}

} // namespace
