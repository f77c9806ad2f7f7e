#include "engine/core/Engine.h"
#include "include/lumen_deck/lumen_deck.h"
#include "src/player/Player.h"
#include "tests/engine_record/Clip.h"
#include "tests/file_faults/FailingFiles.h"
#include "tests/support/Documents.h"
#include "tests/support/HttpServer.h"

#include <QAbstractEventDispatcher>
#include <QDate>
#include <QDirIterator>
#include <QImage>
#include <QTest>

#include <gmock/gmock.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <functional>

using namespace documents;
using quillmark::lumen_deck::Player;

namespace {

constexpr int kMostCalls = 100;       // of one kind in an action
constexpr int kPatience = 20000;      // ms
constexpr qint64 kFirstGroup = 15000; // bytes
constexpr int kSettings = 29;
constexpr int kWriteFailed = 30;
const QByteArray kFilm(50000, 'f');

// A disk that is full and stays so, one that fails once, and a folder that is closed for a moment.
constexpr std::pair<int, bool> kTroubles[] = {{ENOSPC, true}, {EIO, false}, {EACCES, false}};

// What a host does with files.
struct Action
{
    const char* name;
    std::vector<const char*> calls; // that it makes
    std::function<bool()> act;      // false: the host was told of a failure
    std::function<bool()> isDone;   // what was wanted is there
    bool isTold = true, leavesPart = false;
};

std::atomic<int> writeFailures{0};

bool until(const std::function<bool()>& isSo)
{
    return QTest::qWaitFor(isSo, kPatience);
}

bool plays(const QString& path)
{
    const record_test::Clip clip(path.toStdString());
    const auto pictures = clip.packets(AVMEDIA_TYPE_VIDEO).size();
    return pictures > 0 && clip.decodable(AVMEDIA_TYPE_VIDEO) == static_cast<int>(pictures);
}

// Every kind of file that may lie below the root; others are remains.
bool isWhole(const QString& path)
{
    if (path.endsWith(".jpg"))
        return QImage(path).width() == 320 && bytesOf(path).endsWith("\xff\xd9");
    return (path.endsWith(".json") && object(bytesOf(path)).size() >= kSettings) ||
           (path.endsWith(".film") && bytesOf(path) == kFilm) || (path.endsWith(".mp4") && plays(path));
}

class FileFaultTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite() { failing_files::watched = qgetenv("PWD").toStdString() + "/"; }

    void SetUp() override
    {
        server_.on("/film", http_test::Response{200, kFilm.toStdString()});
        LD_InstallEventCallback(LD_EVENT_STREAM, [](LD_EventType, QWidget*, const QJsonDocument* document) {
            writeFailures += document->object()["eventType"].toInt() == kWriteFailed;
        });
        initialize(wall_);
        wall_.show();
        EXPECT_EQ(ask(LD_Play, R"({"wndIndex":0,"auth":"","url":
            "test:pattern?size=320x240&rate=100&gop=5&sound=440"})"),
                  kNull);
        expectMovingPicture();
    }
    void TearDown() override { LD_InstallEventCallback(LD_EVENT_STREAM, nullptr); }

    QJsonObject ask(QJsonDocument* (*function)(QWidget*, const QJsonDocument*), const QByteArray& text)
    {
        const QJsonDocument request = json(text);
        return objectOf(function(&wall_, &request));
    }

    static void initialize(QWidget& wall) { EXPECT_EQ(objectOf(LD_Initialize(&wall)), kNull); }

    void expectMovingPicture()
    {
        const auto shown = [this] {
            const auto* player = wall_.findChild<Player*>();
            return tide::Engine::instance().presenter().stats(player->playId()).shown;
        };
        EXPECT_TRUE(LD_IsWindowPlaying(&wall_, 0));
        EXPECT_TRUE(until([&, before = shown()] { return shown() > before; })) << "the picture stands still";
    }

    QString ofDay(const char* folder, const char* name = "") const
    {
        return root_ + "/Web/" + folder + QDate::currentDate().toString("/yyyy-MM-dd/") + name;
    }
    auto isMade(const char* folder, const char* name) const
    {
        return [=] { return QFile::exists(ofDay(folder, name)); };
    }
    static bool isBegun(const QString& path) { return QFileInfo(path).size() > kFirstGroup; }

    // A failure of the engine, in the words of the reference page.
    static bool isDone(const QJsonObject& answer, const char* call)
    {
        if (answer == kNull)
            return true;
        EXPECT_THAT(answer["errorMessage"].toString().toStdString(),
                    testing::MatchesRegex(std::string(call) + " error, TidePipe Call returns -1, .* returns [0-9]+"));
        EXPECT_NE(answer["errorCode"].toInt(), 0);
        return false;
    }

    bool setSetting()
    {
        ++setting_;
        const QByteArray value = QByteArray::number(setting_);
        EXPECT_EQ(call(LD_SetLocalConfig, R"({"localConfig":{"streamType":")" + value + R"("}})"), kNull);
        return true;
    }

    bool readSettings()
    {
        const QJsonObject answer = call(LD_GetLocalConfig, "{}");
        const QJsonObject refusal = object(R"({"errorModule":"getLocalConfig","errorCode":-1,"localConfig":""})");
        EXPECT_TRUE(answer == refusal || answer["localConfig"].toObject().size() >= kSettings);
        return answer != refusal;
    }

    bool download(const QByteArray& fileType)
    {
        const QByteArray url = QByteArray::fromStdString(server_.url("/film"));
        const QJsonObject answer = call(LD_StartDownload, R"({"filename":"a.film","downloadUrl":")" + url +
                                                              R"(","fileType":")" + fileType + R"("})");
        const int id = answer["downloadId"].toInt(-1);
        if (id < 0) {
            const bool isExplained = answer["errorCode"] == id && !answer["errorInfo"].toString().isEmpty();
            EXPECT_TRUE(isExplained || answer == object(R"({"errorModule":"startAsyncDownload","errorCode":-3})"));
            return false;
        }
        QJsonObject state;
        EXPECT_TRUE(until([&] {
            state = call(LD_GetDownloadInfo, R"({"downloadId":)" + QByteArray::number(id) + "}");
            return state["downloadStatus"] != "0" || state["downloadProgress"] == "100";
        }));
        return state["downloadStatus"] == "0";
    }

    // What the disk ends is told by event 30 and by nothing else.
    bool record()
    {
        writeFailures = 0;
        if (!isDone(ask(LD_StartSave, R"({"wndIndex":0,"fileName":"a"})"), "TP_StartSave call"))
            return false;
        const int before = failing_files::failures();
        EXPECT_TRUE(until([&] { return writeFailures > 0 || isBegun(ofDay("PlaybackFiles", "a.mp4")); }));
        EXPECT_EQ(ask(LD_StopSave, R"({"wndIndex":0})"), kNull);
        const int expected = failing_files::failures() > before ? 1 : 0;
        EXPECT_TRUE(until([&] { return writeFailures >= expected; }));
        EXPECT_EQ(writeFailures, expected);
        return expected == 0;
    }

    // Where the second file cannot be made the recording ends, and only its stop tells.
    bool recordTwoFiles()
    {
        if (!isDone(ask(LD_StartSave, R"({"wndIndex":0,"fileName":"a"})"), "TP_StartSave call"))
            return false;
        auto* player = wall_.findChild<Player*>();
        player->checkVideoSave(ofDay("PlaybackFiles", "a"), 1);
        EXPECT_TRUE(until([this] { return isBegun(ofDay("PlaybackFiles", "a.mp4")); }));
        for (const auto& timer : QAbstractEventDispatcher::instance()->registeredTimers(player)) {
            QTimerEvent second(timer.timerId); // that it waits for, at once
            QCoreApplication::sendEvent(player, &second);
        }
        const QString next = ofDay("PlaybackFiles", "a_2.mp4");
        EXPECT_TRUE(until([&] { return !player->saving() || isBegun(next); }));
        return isDone(ask(LD_StopSave, R"({"wndIndex":0})"), "TP_StopSave call");
    }

    // Downloads make no folder but their own: they come before what makes all on its way.
    std::vector<Action> actions()
    {
        const std::vector<const char*> ofDownload = {"open", "write", "rename", "make folder", "cut", "sync"};
        return {{"set",
                 {"open", "write", "rename", "make folder", "sync"},
                 [this] { return setSetting(); },
                 [this] { return object(bytesOf(settings_))["streamType"] == QString::number(setting_); },
                 false},
                {"read", {"open"}, [this] { return readSettings(); }, [] { return true; }, true, true},
                {"download", ofDownload, [this] { return download(""); }, isMade("DownloadFiles", "a.film")},
                {"view", ofDownload, [this] { return download("snapmachine"); }, isMade("ViewPics", "a.film")},
                {"snapshot",
                 {"open", "write", "rename", "make folder", "cut"},
                 [this] { return isDone(ask(LD_Snapshot, R"({"wndIndex":0,"fileName":"a"})"), "call TP_JPEGCapture"); },
                 isMade("CaptureFiles", "a.jpg")},
                {"record",
                 {"open", "write", "make folder", "cut"},
                 [this] { return record(); },
                 isMade("PlaybackFiles", "a.mp4"),
                 true,
                 true}};
    }

    // Whether there was such a call.
    bool failOnce(const Action& action, const failing_files::Fault& fault)
    {
        failing_files::arm(fault);
        const bool isSaid = action.act();
        const bool isFailed = failing_files::failures() > 0;
        failing_files::arm({});
        for (QDirIterator it(root_, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
             it.hasNext();)
            EXPECT_TRUE(isWhole(it.next())) << it.filePath().toStdString() << " is half written";
        const bool isDone = action.isDone();
        SCOPED_TRACE(testing::Message() << (isSaid ? "said, " : "refused, ") << (isDone ? "done" : "not done"));
        EXPECT_TRUE(isFailed || (isSaid && isDone));
        EXPECT_TRUE(isDone || !isSaid || !action.isTold);
        EXPECT_TRUE(isSaid || !isDone || action.leavesPart);
        return isFailed;
    }

    // Until there is no such call, and how many there were.
    int failAll(const Action& action, const failing_files::Fault& first, const std::vector<Action>& afterwards)
    {
        for (failing_files::Fault fault = first; fault.nth < kMostCalls; ++fault.nth) {
            SCOPED_TRACE(testing::Message()
                         << action.name << ", " << fault.call << " " << fault.nth << ", " << std::strerror(fault.code));
            for (const char* folder : {"CaptureFiles", "DownloadFiles", "ViewPics", "RecordFiles", "PlaybackFiles"})
                QDir(ofDay(folder)).removeRecursively();
            if (!failOnce(action, fault))
                return fault.nth - 1;
            for (const Action& next : afterwards)
                EXPECT_TRUE(next.act() && next.isDone()) << next.name << " afterwards";
            expectMovingPicture();
        }
        return kMostCalls;
    }

    // Every call that the action makes fails in turn; the wall goes on and does `afterwards`.
    void failEach(const Action& action, const std::vector<Action>& afterwards)
    {
        int all = 0;
        for (const char* name : action.calls) {
            for (const auto& [code, lasts] : kTroubles) {
                const int faults = failAll(action, {name, 1, code, lasts}, afterwards);
                EXPECT_TRUE(faults > 0 && faults < kMostCalls) << action.name << ", " << name;
                all += faults;
            }
        }
        RecordProperty(action.name, all);
    }

    const QString root_ = qgetenv("PWD");
    http_test::HttpServer server_;
    QWidget wall_;
    int setting_ = 0;
    const QString settings_ = root_ + "/.HarborKit/local.json";
};

TEST_F(FileFaultTest, everyCallOfEveryActionFails)
{
    for (const Action& action : actions())
        failEach(action, {action});
}

TEST_F(FileFaultTest, everyCallOfTheSecondFileOfARecordingFails)
{
    failEach({"two files",
              {"open", "rename", "cut"},
              [this] { return recordTwoFiles(); },
              isMade("PlaybackFiles", "a_2.mp4"),
              true,
              true},
             actions());
}

// What could not be made at the start is made when it is needed.
TEST_F(FileFaultTest, everyCallOfTheStartFails)
{
    const auto start = [this] {
        for (const char* folder : {"/.HarborKit", "/Web"})
            QDir(root_ + folder).removeRecursively();
        QWidget wall;
        initialize(wall);
        const QJsonDocument grid = json(R"({"type":2})"); // in a shape that the settings tell
        EXPECT_EQ(objectOf(LD_ArrangeWindow(&wall, &grid)), kNull);
        return true;
    };
    failEach({"start",
              {"open", "write", "rename", "make folder"},
              start,
              [this] { return QFile::exists(settings_); },
              false},
             actions());
}

} // namespace
