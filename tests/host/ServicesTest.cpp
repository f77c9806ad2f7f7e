#include "host/wall/LocalSettings.h"
#include "host/wall/Talk.h"
#include "host/wall/Transfers.h"
#include "tests/support/HttpServer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gmock/gmock.h>

using namespace quillmark::lumen_wall;
using namespace std::chrono_literals;
using http_test::HttpServer;
using http_test::Request;
using http_test::Response;
using Field = TransferField;
using State = Transfer::State;

namespace {

// A device on loopback, and a deck whose settings stand in a folder of their own. Nothing plays.
class Services : public ::testing::Test
{
protected:
    Services() { qputenv("PWD", root.path().toLocal8Bit()); }

    static QString address(const char* path) { return QString::fromStdString(device().url(path)); }
    static HttpServer& device()
    {
        static HttpServer server;
        return server;
    }
    static void answer(const char* path, const Response& response)
    {
        device().on(path, [=](const Request&) { return response; });
    }

    QTemporaryDir root;
    QWidget wall;
    Deck deck{&wall};
};

class TransfersTest : public Services
{
protected:
    TransfersTest()
    {
        QFile file(root.filePath("settings.cfg"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write("abc") == 3);
    }

    Transfer run(const char* kind, const char* path, const char* fileName = "settings.cfg")
    {
        start(kind, path, fileName);
        EXPECT_TRUE(QTest::qWaitFor([&] { return transfers.list().front().state != State::Running; }, 15000));
        return transfers.list().front();
    }

    void start(const char* name, const char* path, const char* fileName = "settings.cfg")
    {
        TransferOrder order{nullptr, {{Field::Address, address(path)}, {Field::File, root.filePath(fileName)}}, "", ""};
        for (const TransferKind& kind : transferKinds())
            order.kind = QString(kind.name).startsWith(name) ? &kind : order.kind;
        order.fields[Field::Status] = address("/progress");
        transfers.start(order);
    }

    Transfers transfers{deck};
};

} // namespace

TEST_F(TransfersTest, EachKindEndsWithWhatTheServerSays)
{
    answer("/good", {200, "content"});
    answer("/busy", {503, "<h1>an update\n is running</h1>"});
    answer("/progress", {200, R"({"progress": 100, "status": 0})"});
    for (const char* kind : {"Download", "Export", "Upload a", "Import", "Upgrade"}) {
        EXPECT_EQ(run(kind, "/good").state, State::Done) << kind;
        const Transfer failed = run(kind, "/busy");
        EXPECT_EQ(failed.state, State::Failed) << kind;
        EXPECT_THAT(failed.text.toStdString(), ::testing::StartsWith("error of the server")) << kind;
    }
    EXPECT_EQ(run("Import", "/busy").text, "error of the server: <h1>an update is running</h1>");
    EXPECT_THAT(run("Upload in", "/busy").text.toStdString(), ::testing::HasSubstr("update"));
    EXPECT_EQ(run("Upgrade", "/good", "tool.exe").text, "programs and data of them are not sent");
    QFile file(run("Download", "/good").folder + "/good");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "content");
    transfers.forgetEnded();
    EXPECT_TRUE(transfers.list().empty());
}

TEST_F(TransfersTest, WhatIsStoppedEndsAndTheWallGoesOnMeanwhile)
{
    Response slow{200, std::string(200000, 'x')};
    slow.pause = 100ms;
    answer("/slow", slow);
    answer("/wait", slow);
    start("Download", "/slow");
    start("Upload a", "/wait");
    EXPECT_TRUE(QTest::qWaitFor([&] { return transfers.list()[1].progress.value_or(0) > 0; }, 10000));
    transfers.stop(transfers.list()[0].number);
    EXPECT_EQ(transfers.list()[0].state, State::Running) << "nothing stops a call that waits";
    transfers.stop(transfers.list()[1].number);
    EXPECT_EQ(transfers.list()[1].state, State::Stopped);
    EXPECT_TRUE(QDir(transfers.list()[1].folder).isEmpty());
    start("Upload in", "/wait");
    start("Upload in", "/wait");
    EXPECT_EQ(transfers.list()[1].state, State::Stopped) << "there is one in the background";
    EXPECT_TRUE(QTest::qWaitFor([&] { return transfers.list()[2].state == State::Done; }, 10000));
}

TEST_F(Services, ATalkIsOpenedBesideTheWallAndItsAddressesAreKept)
{
    answer("/open", {});
    answer("/refused", {404, "no audio"});
    answer("/close", {});
    device().on("/data", [](const Request&) {
        Response endless;
        endless.next = [] { return std::string(160, '\x55'); };
        endless.pause = 20ms;
        return endless;
    });
    device().onBody("/data", [](std::string_view) {});
    const auto closings = [] { return device().requests("/close").size(); };
    const auto settled = [](const Talk& talk) {
        return QTest::qWaitFor([&] { return talk.state() != Talk::State::Opening; }, 10000);
    };

    Talk talk(deck);
    TalkTarget target{address("/refused"), address("/data"), address("/close"), 1, "ann", "hush"};
    talk.start(target);
    EXPECT_EQ(talk.state(), Talk::State::Opening);
    ASSERT_TRUE(settled(talk));
    EXPECT_EQ(talk.state(), Talk::State::Silent);
    EXPECT_EQ(talk.problem(), "the server refused it");

    target.openUrl = address("/open").replace("//", "//ann:hush@");
    talk.start(target);
    ASSERT_TRUE(settled(talk));
    EXPECT_EQ(talk.state(), Talk::State::Talking);
    talk.stop();
    EXPECT_TRUE(QTest::qWaitFor([&] { return closings() == 1; }, 10000));

    talk.start(target);
    talk.stop(); // before the device has answered
    EXPECT_TRUE(QTest::qWaitFor([&] { return closings() == 2; }, 10000));
    EXPECT_EQ(talk.state(), Talk::State::Silent);
    EXPECT_EQ(talk.remembered().openUrl, address("/open"));
    EXPECT_EQ(talk.remembered().audioType, 1);
    QFile settings(root.filePath(".HarborKit/local.json"));
    EXPECT_TRUE(settings.open(QIODevice::ReadOnly));
    EXPECT_FALSE(settings.readAll().contains("hush"));
}

TEST_F(Services, SettingsHaveTheLibrarysDefaultsAndFoldersMustBePossible)
{
    const QJsonObject made = readSettings(deck); // by the library, as there was no file
    for (const Setting& setting : settings()) {
        const QString standard = made.value(setting.key).toVariant().toString();
        EXPECT_EQ(standard.isEmpty() ? "0" : standard, standardOf(setting)) << setting.key;
        EXPECT_EQ(objection(setting, standardOf(setting)), "") << setting.key;
        EXPECT_NE(objection(setting, "99"), "") << setting.key;
    }
    const Setting& folder = settings().front();
    EXPECT_EQ(objection(folder, root.filePath("new")), "") << "the library makes one level";
    for (const QString& path :
         {root.filePath("new/deeper"), root.filePath(".HarborKit/local.json"), QString("Web"), QString()})
        EXPECT_NE(objection(folder, path), "") << path.toStdString();

    EXPECT_TRUE(writeSettings(deck, {{folder.key, root.path()}}));
    EXPECT_EQ(readSettings(deck).value("protocolType"), "0") << "the others stay";
    QFile::remove(root.filePath(".HarborKit/local.json"));
    ASSERT_TRUE(QDir(root.path()).mkpath(".HarborKit/local.json/in the way"));
    EXPECT_FALSE(writeSettings(deck, {{folder.key, "/"}}));
}
