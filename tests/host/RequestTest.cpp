#include "host/control/Request.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>

#include <gmock/gmock.h>

using namespace quillmark::lumen_wall;
using ::testing::HasSubstr;

namespace {

std::string refusal(const QByteArray& line)
{
    const Request request = parseRequest(line);
    const auto* bad = std::get_if<BadRequest>(&request.what);
    return bad ? bad->why.toStdString() : "accepted";
}

CallRequest call(const QByteArray& line)
{
    const Request request = parseRequest(line);
    EXPECT_TRUE(std::holds_alternative<CallRequest>(request.what)) << refusal(line);
    return std::get<CallRequest>(request.what);
}

} // namespace

TEST(Request, CallsCarryFunctionDocumentThreadAndAnyId)
{
    const CallRequest play = call(R"({"id": 1, "call": "LD_Play", "args": {"wndIndex": 2}})");
    EXPECT_STREQ(play.function->name, "LD_Play");
    EXPECT_EQ(play.args.object().value("wndIndex").toInt(), 2);
    EXPECT_FALSE(play.onWorker);
    EXPECT_TRUE(call(R"({"call": "LD_Play", "thread": "worker"})").onWorker);
    EXPECT_TRUE(call(R"({"call": "LD_Play"})").args.isObject());
    EXPECT_EQ(call(R"({"call": "LD_SetLayout", "args": [{}, {}]})").args.array().size(), 2);

    EXPECT_EQ(parseRequest(R"({"id": {"a": [1]}, "status": true})").id, QJsonValue(QJsonObject{{"a", QJsonArray{1}}}));
    EXPECT_EQ(parseRequest(R"({"status": true})").id, QJsonValue(QJsonValue::Null));
    EXPECT_EQ(parseRequest(R"({"id": 7, "call": 1})").id, QJsonValue(7)) << "an error line has its id too";
}

TEST(Request, BadLinesSayWhatIsWrong)
{
    const struct
    {
        const char* line;
        const char* why;
    } cases[] = {
        {"nonsense", "no JSON"},
        {"{\"id\": 1", "no JSON"},
        {"[1]", "one JSON object"},
        {"{}", "must be there"},
        {R"({"id": 1})", "must be there"},
        {R"({"call": "LD_Nothing"})", "no function is named \"LD_Nothing\""},
        {R"({"call": 5})", "no function is named"},
        {R"({"call": "LD_Play", "args": "x"})", "\"args\" is an object or an array"},
        {R"({"call": "LD_Play", "args": null})", "\"args\" is an object or an array"},
        {R"({"call": "LD_Play", "thread": "gpu"})", "\"thread\""},
        {R"({"call": "LD_Play", "thread": 1})", "\"thread\""},
        {R"({"call": "LD_Play", "arg": {}})", "\"arg\""},
        {R"({"call": "LD_Play", "quit": true})", "\"quit\""},
        {R"({"call": "LD_HideWindow", "thread": "worker"})", "main thread only"},
        {R"({"call": "LD_SetGridInfo", "thread": "worker"})", "main thread only"},
        {R"({"screenshot": true})", "\"screenshot\""},
        {"{\"call\": \"LD_\xff\"}", "no"},
    };
    for (const auto& bad : cases)
        EXPECT_THAT(refusal(bad.line), HasSubstr(bad.why)) << bad.line;
}

TEST(CallTable, FindsEveryFunctionOnceAndKeepsWidgetsOnTheMainThread)
{
    QSet<QString> names;
    for (const Function& function : functions()) {
        names.insert(function.name);
        EXPECT_EQ(findFunction(function.name), &function);
    }
    EXPECT_EQ(names.size(), 104);
    EXPECT_EQ(findFunction("LD_"), nullptr);
    for (const char* name : {"LD_Initialize", "LD_WindowCount", "LD_WndResolutionChange", "LD_GetRectInfo"})
        EXPECT_TRUE(belongsToMainThread(*findFunction(name))) << name;
    for (const char* name : {"LD_Play", "LD_Snapshot", "LD_Release", "LD_CloseSound", "LD_GetLocalConfig"})
        EXPECT_FALSE(belongsToMainThread(*findFunction(name))) << name;
}

TEST(CallTable, FunctionsOfTheirOwnShapeRefuseWhatDoesNotFit)
{
    const auto refusalOf = [](const char* name, const QJsonObject& args) {
        return invoke(*findFunction(name), nullptr, QJsonDocument(args), nullptr).refusal.toStdString();
    };
    for (const QJsonValue& index : {QJsonValue(), QJsonValue("0"), QJsonValue(0.5), QJsonValue(1e12)})
        EXPECT_THAT(refusalOf("LD_HideWindow", {{"index", index}}), HasSubstr("index"));
    EXPECT_THAT(refusalOf("LD_InstallEventCallback", {{"type", 9}, {"install", true}}), HasSubstr("0 to 8"));
    EXPECT_THAT(refusalOf("LD_InstallEventCallback", {{"type", 3}, {"install", 1}}), HasSubstr("true or false"));
    EXPECT_EQ(refusalOf("LD_Release", {}), "");
}
