#include "tests/support/Wall.h"

#include <gmock/gmock.h>

using engine_double::calls;
using testing::ElementsAre;
using wall::Answer;
using wall::engineCalls;

namespace {

class VoiceTalkTest : public wall::WallTest
{
protected:
    static Answer start(QJsonObject changes, const char* without = "")
    {
        QJsonObject request = wall::json(R"({"openUrl":"o","closeUrl":"c","dataUrl":"d","auth":"ä","audioType":1,
                                             "uuid":"u"})")
                                  .object();
        for (const QString& key : changes.keys())
            request[key] = changes[key];
        request.remove(without);
        const QJsonDocument document(request);
        return wall::take(LD_StartVoiceTalk(&document));
    }

    static Answer stop(const QByteArray& request = R"({"uuid":"u"})")
    {
        const QJsonDocument document = wall::json(request);
        return wall::take(LD_StopVoiceTalk(&document));
    }
};

TEST_F(VoiceTalkTest, passesTheTalkOnAndStopsItOnce)
{
    const journal::Tolerated wrongTypes;
    engine_double::reset();
    engine_double::answer("TP_StartVoiceTalk", 0);
    EXPECT_TRUE(start({{"bitRate", QJsonValue()}, {"sampleRate", 8000}, {"soundChannel", "x"}}).null);
    EXPECT_TRUE(stop().null);
    EXPECT_TRUE(stop().null);
    EXPECT_TRUE(stop(R"({"uuid":"never seen"})").null);
    EXPECT_THAT(engineCalls(), ElementsAre("TP_StartVoiceTalk(o, c, d, ä, 1, 0, 8000, 0, -1)", "TP_StopVoiceTalk(0)"));
}

TEST_F(VoiceTalkTest, readsEverythingButTheUuidBeforeItCalls)
{
    engine_double::reset();
    for (const char* key : {"openUrl", "closeUrl", "dataUrl", "auth", "audioType"}) {
        EXPECT_EQ(start({}, key).message(),
                  std::string("an required field is missing from json object, required key is ") + key);
    }
    EXPECT_TRUE(calls("TP_StartVoiceTalk").empty());
    EXPECT_EQ(start({}, "uuid").message(), "an required field is missing from json object, required key is uuid");
    EXPECT_EQ(calls("TP_StartVoiceTalk").size(), 1U);
    EXPECT_EQ(stop("[]").message(), "an required field is missing from json object, required key is uuid");
    const QJsonDocument array = wall::json("[]");
    EXPECT_EQ(wall::take(LD_StartVoiceTalk(&array)).message(), "open voice talk ");
}

TEST_F(VoiceTalkTest, reportsARefusedTalk)
{
    engine_double::answer("TP_StartVoiceTalk", -1);
    engine_double::lastError(5);
    const Answer refused = start({});
    EXPECT_EQ(refused.message(),
              "call tide pipe TP_StartVoiceTalk error, TP_StartVoiceTalk returns -1, TP_GetLastError returns 5");
    EXPECT_EQ(refused.code(), 5);
    EXPECT_TRUE(refused.object["errorModule"].toString().endsWith("src/VoiceTalk"));
    EXPECT_TRUE(stop().null);
    EXPECT_TRUE(calls("TP_StopVoiceTalk").empty());
}

} // namespace
