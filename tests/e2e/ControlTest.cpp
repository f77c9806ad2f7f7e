#include "tests/e2e/WallProgram.h"
#include "tests/support/HttpServer.h"

#include <include/lumen_deck/lumen_deck.h>

#include <future>

TEST(Control, EveryFunctionAnswersByName)
{
    const journal::Tolerated emptyRequests;
    const QStringList names{
#define LUMEN_DECK_WD(name, route) #name,
#define LUMEN_DECK_W(name, route) #name,
#define LUMEN_DECK_D(name, route) #name,
#define LUMEN_DECK_N(name, route) #name,
#define LUMEN_DECK_OWN(name, route) #name,
#include <include/lumen_deck/functions.def>
    };
    // What some need to answer without help.
    const QJsonObject args{{"index", 0}, {"type", 6}, {"install", true}, {"dir", "/no/such/folder"}};
    WallProgram wall;
    for (const QString& name : names) { // on a worker no dialog waits for a person
        QJsonObject line{{"call", name}, {"args", args}, {"thread", "worker"}};
        QJsonObject answer = wall.request(line);
        if (answer.value("error").toString().endsWith("main thread only")) {
            line.remove("thread");
            answer = wall.request(line);
        }
        EXPECT_TRUE(answer.contains("result")) << name.toStdString();
    }
    wall.call("LD_ArrangeWindow", QJsonObject{{"type", 2}});
    EXPECT_EQ(wall.call("LD_WindowCount"), QJsonValue(4));
    EXPECT_EQ(wall.call("LD_IsWindowHidden", QJsonObject{{"index", 5}}), QJsonValue(false));
    EXPECT_EQ(wall.call("LD_Release"), QJsonValue(QJsonValue::Null));
    EXPECT_EQ(wall.brokenLines(), 0);
}

TEST(Control, ABadLineIsToldAndChangesNothing)
{
    const std::pair<QByteArray, const char*> bad[] = {
        {"nonsense", "no JSON"},
        {R"({"call": "LD_Stop")", "no JSON"},
        {QByteArray(100000, '['), "no JSON"},
        {"\xff\xfe\x01", "no JSON"},
        {"[1, 2]", "one JSON object"},
        {"{}", "must be there"},
        {R"({"call": "LD_Nothing"})", "no function is named \"LD_Nothing\""},
        {"{\"call\": \"LD_\xff\"}", "no"},
        {R"({"call": "LD_Play", "args": null})", "\"args\" is an object or an array"},
        {R"({"call": "LD_ArrangeWindow", "args": {"type": 4}, "thread": "elsewhere"})", "\"thread\""},
        {R"({"call": "LD_Play", "arg": {}})", "\"arg\""},
        {R"({"call": "LD_HideWindow", "args": {"index": 0}, "thread": "worker"})", "main thread only"},
        {R"({"call": "LD_HideWindow"})", "index"},
        {R"({"call": "LD_HideWindow", "args": {"index": "0"}})", "index"},
        {R"({"call": "LD_HideWindow", "args": {"index": 1e12}})", "index"},
        {R"({"call": "LD_InstallEventCallback", "args": {"type": 9, "install": true}})", "0 to 8"},
        {R"({"call": "LD_InstallEventCallback", "args": {"type": 3, "install": 1}})", "true or false"},
        {R"({"screenshot": true})", "\"screenshot\""},
        {R"({"screenshot": "/no/such/folder/a.png"})", ""},
    };
    WallProgram wall({"--grid", "2"});
    const QJsonObject before = wall.status();
    for (const auto& [line, why] : bad) {
        wall.send(line);
        const QJsonValue error = wall.answer(QJsonValue::Null)["error"];
        EXPECT_TRUE(error.isString() && error.toString().contains(why)) << line.left(80).constData();
    }
    wall.send(R"({"id": {"a": [1]}, "call": 1})");
    EXPECT_TRUE(wall.answer(QJsonObject{{"a", QJsonArray{1}}}).contains("error")) << "an error line has its id too";
    EXPECT_EQ(wall.status(), before);
    EXPECT_TRUE(wall.end());
    for (const QJsonObject& line : wall.lines())
        EXPECT_TRUE(line.contains("event")) << "one answer a line";
}

TEST(Control, EventsCanBeTurnedOffAndOn)
{
    WallProgram wall;
    const auto selections = [&] { // so far; the second window comes first and is selected
        wall.call("LD_SetLayout", QJsonArray{QJsonObject{{"wndIndex", 1}}, QJsonObject{{"wndIndex", 0}}});
        return std::count_if(wall.lines().begin(), wall.lines().end(),
                             [](const QJsonObject& line) { return line.value("event") == QJsonValue(0); });
    };
    const auto install = [&](bool on) {
        return wall.call("LD_InstallEventCallback", QJsonObject{{"type", 0}, {"install", on}});
    };
    const auto heard = selections();
    EXPECT_GT(heard, 0);
    EXPECT_EQ(install(false), QJsonValue(true));
    EXPECT_EQ(selections(), heard);
    EXPECT_EQ(install(true), QJsonValue(false));
    EXPECT_GT(selections(), heard);
}

TEST(Control, WorkersRunSideBySideAndLinesStayWhole)
{
    constexpr int calls = 600;
    std::promise<void> gate;
    const std::shared_future<void> open = gate.get_future().share();
    http_test::HttpServer device;
    device.on("/config", [open](const http_test::Request&) {
        open.wait();
        return http_test::Response{};
    });

    WallProgram wall({"--grid", "2"});
    const int slow = wall.sendCall("LD_ImportDeviceConfig",
                                   {{"uploadUrl", QString::fromStdString(device.url("/config"))},
                                    {"auth", ""},
                                    {"filename", clip("config", "color=c=red:s=64x64:r=25", 1)}},
                                   "worker");
    QList<int> ids;
    for (int i = 0; i < calls; ++i)
        ids.append(wall.sendCall(i % 2 == 0 ? "LD_Pause" : "LD_QueryLayout", {{"wndIndex", i % 4}},
                                 i % 3 == 0 ? "main" : "worker"));
    for (int i = 0; i < calls; ++i) {
        const QJsonObject result = wall.answer(ids[i]).value("result").toObject();
        EXPECT_EQ(result.value("errorCode").toInt(), i % 2 == 0 ? 501 : 0) << "call " << i;
    }
    for (const QJsonObject& line : wall.lines())
        EXPECT_NE(line.value("id"), QJsonValue(slow)) << "still waits for its server";
    gate.set_value();
    EXPECT_TRUE(wall.answer(slow).contains("result"));
    EXPECT_EQ(wall.brokenLines(), 0);
}

TEST(Control, MainThreadCallsKeepTheirOrder)
{
    WallProgram wall;
    QList<int> ids;
    for (int i = 0; i < 200; ++i)
        ids.append(wall.sendCall(i % 2 ? "LD_HideWindow" : "LD_IsWindowHidden", {{"index", 0}}, "main"));
    ASSERT_TRUE(wall.end());
    QList<int> answered;
    for (const QJsonObject& line : wall.lines()) {
        if (line.contains("id"))
            answered.append(line.value("id").toInt());
    }
    EXPECT_EQ(answered, ids) << "all are answered before the end, in order";
}

TEST(End, QuitDialogSignalAndAReaderThatIsGone)
{
    WallProgram quits;
    quits.send(R"({"id": 1, "quit": true})");
    EXPECT_TRUE(quits.process().waitForFinished(10000));
    EXPECT_EQ(quits.process().exitCode(), 0);

    WallProgram asks;
    const int dialog = asks.sendCall("LD_OpenFileBrowser", {{"mode", 1}}, "main");
    EXPECT_EQ(asks.call("LD_CloseSound", QJsonObject(), "worker"), QJsonValue(QJsonValue::Null)) << "workers go on";
    EXPECT_TRUE(asks.end()) << "nobody is left to answer the dialog";
    EXPECT_EQ(asks.answer(dialog).value("result").toObject().value("filepath"), QJsonValue(""));

    WallProgram told;
    ASSERT_EQ(told.call("LD_WindowCount"), QJsonValue(1));
    told.process().terminate();
    EXPECT_TRUE(told.process().waitForFinished(10000));
    EXPECT_EQ(told.process().exitCode(), 0);

    QProcess unread, reader;
    unread.setStandardOutputProcess(&reader);
    reader.start("head", {"-n", "1"});
    unread.start(programPath("lumen-wall"), {"--control"});
    for (int i = 0; i < 100 && unread.state() != QProcess::NotRunning; ++i) {
        unread.write("{\"status\": true}\n");
        unread.waitForFinished(100);
    }
    EXPECT_EQ(unread.state(), QProcess::NotRunning);
    reader.waitForFinished();
}

TEST(End, ASetTimeEndsWithAScreenshotAndAWrongCommandLineAtOnce)
{
    EXPECT_NE(QProcess::execute(programPath("lumen-wall"), {"/no/such/film.mp4"}), 0);
    const QString film = clip("seconds", "color=c=red:s=352x288:r=25", 30);
    const QString path = film + ".png";
    QProcess process;
    process.start(programPath("lumen-wall"),
                  {"--seconds", "3", "--size", "640x480", "--no-names", "--screenshot", path, film});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0);
    const QImage seen(path);
    EXPECT_EQ(seen.size(), QSize(640, 480));
    EXPECT_GT(seen.pixelColor(320, 240).red(), 220);
    EXPECT_LT(seen.pixelColor(320, 240).green(), 30);
}
