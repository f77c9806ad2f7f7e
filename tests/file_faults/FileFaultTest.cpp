#include "engine/core/Engine.h"
#include "include/lumen_deck/lumen_deck.h"
#include "src/player/Player.h"
#include "tests/engine_record/Clip.h"
#include "tests/file_faults/FailingFiles.h"
#include "tests/support/Documents.h"
#include "tests/support/HttpServer.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QImage>
#include <QTimerEvent>

#include <gmock/gmock.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <thread>

using documents::json;
using documents::object;
using failing_files::Call;
using quillmark::lumen_deck::Player;
using testing::MatchesRegex;

namespace fs = std::filesystem;

namespace {

constexpr int kMostCalls = 100;               // of one kind in an action
constexpr int kPatience = 20000;              // ms
constexpr std::uintmax_t kFirstGroup = 15000; // bytes
constexpr int kSettings = 29;
constexpr unsigned kWriteFailed = 30;
const std::string kFilm(50000, 'f');

// A disk that is full and stays so, one that fails once, and a folder that is closed for a moment.
constexpr struct Trouble
{
    const char* name;
    int code;
    bool lasts;
} kTroubles[] = {{"full", ENOSPC, true}, {"broken", EIO, false}, {"closed", EACCES, false}};

constexpr const char* kCallNames[] = {"open", "write", "rename", "make folder", "cut", "sync"}; // by their number

// What a host does with files.
struct Action
{
    const char* name;
    std::vector<Call> calls;      // that it makes
    std::function<bool()> act;    // false: the host was told of a failure
    std::function<bool()> isDone; // what was wanted is there
    enum Failure
    {
        LeavesNothing,
        LeavesPart,
        IsNotTold
    } failure = LeavesNothing;
};

std::atomic<int> writeFailures{0};

bool until(const std::function<bool()>& isSo)
{
    QElapsedTimer clock;
    clock.start();
    while (!isSo() && !clock.hasExpired(kPatience)) {
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return isSo();
}

std::string bytesOf(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::uintmax_t sizeOf(const fs::path& path) // 0 where there is none
{
    return fs::exists(path) ? fs::file_size(path) : 0;
}

QJsonObject settingsIn(const fs::path& path)
{
    return object(QByteArray::fromStdString(bytesOf(path)));
}

bool isWholePicture(const fs::path& path)
{
    const std::string bytes = bytesOf(path);
    const auto picture = QImage::fromData(QByteArray::fromStdString(bytes));
    return picture.width() == 320 && bytes.substr(bytes.size() - 2) == "\xff\xd9";
}

bool plays(const fs::path& path)
{
    const record_test::Clip clip(path);
    const auto pictures = clip.packets(AVMEDIA_TYPE_VIDEO).size();
    return pictures > 0 && clip.decodable(AVMEDIA_TYPE_VIDEO) == static_cast<int>(pictures);
}

// Every kind of file that may lie below the root; others are remains.
const std::map<std::string, bool (*)(const fs::path&)> kWhole = {
    {".json", [](const fs::path& path) { return settingsIn(path).size() >= kSettings; }},
    {".jpg", isWholePicture},
    {".mp4", plays},
    {".film", [](const fs::path& path) { return bytesOf(path) == kFilm; }}};

// Nothing is left half written.
void expectWholeFiles(const fs::path& root)
{
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        const auto kind = kWhole.find(entry.path().extension());
        const bool isWhole = kind != kWhole.end() && kind->second(entry.path());
        EXPECT_TRUE(entry.is_directory() || isWhole) << entry.path();
    }
}

class FileFaultTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite() { failing_files::watch(qgetenv("PWD").toStdString()); }

    void SetUp() override
    {
        server_.on("/film", http_test::Response{200, kFilm});
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

    static QJsonObject take(QJsonDocument* document)
    {
        const QJsonObject answer = document ? document->object() : kNull;
        LD_Release(document);
        return answer;
    }
    template <class Function> QJsonObject ask(Function function, const QByteArray& text)
    {
        const QJsonDocument request = json(text);
        if constexpr (std::is_invocable_v<Function, const QJsonDocument*>)
            return take(function(&request));
        else
            return take(function(&wall_, &request));
    }

    static void initialize(QWidget& wall) { EXPECT_EQ(take(LD_Initialize(&wall)), kNull); }

    void expectMovingPicture()
    {
        const auto shown = [this] {
            const auto* player = wall_.findChild<Player*>();
            return tide::Engine::instance().presenter().stats(player->playId()).shown;
        };
        EXPECT_TRUE(LD_IsWindowPlaying(&wall_, 0));
        EXPECT_TRUE(until([&, before = shown()] { return shown() > before; })) << "the picture stands still";
    }

    fs::path ofDay(const char* folder, const char* name) const
    {
        return root_ / "Web" / folder / QDate::currentDate().toString("yyyy-MM-dd").toStdString() / name;
    }

    // A failure of the engine, in the words of the reference page.
    static bool isDone(const QJsonObject& answer, const char* call)
    {
        if (answer == kNull)
            return true;
        EXPECT_THAT(answer["errorMessage"].toString().toStdString(),
                    MatchesRegex(std::string(call) + " error, TidePipe Call returns -1, .* returns [0-9]+"));
        EXPECT_NE(answer["errorCode"].toInt(), 0);
        return false;
    }

    bool setSetting()
    {
        ++setting_;
        const QByteArray value = QByteArray::number(setting_);
        EXPECT_EQ(ask(LD_SetLocalConfig, R"({"localConfig":{"streamType":")" + value + R"("}})"), kNull);
        return true;
    }

    bool readSettings()
    {
        const QJsonObject answer = ask(LD_GetLocalConfig, "{}");
        const QJsonObject refusal = object(R"({"errorModule":"getLocalConfig","errorCode":-1,"localConfig":""})");
        EXPECT_TRUE(answer == refusal || answer["localConfig"].toObject().size() >= kSettings);
        return answer != refusal;
    }

    bool download(const QByteArray& fileType)
    {
        const QByteArray url = QByteArray::fromStdString(server_.url("/film"));
        const QJsonObject answer = ask(LD_StartDownload, R"({"filename":"a.film","downloadUrl":")" + url +
                                                             R"(","fileType":")" + fileType + R"("})");
        const int id = answer["downloadId"].toInt(-1);
        if (id < 0) {
            const bool isExplained = answer["errorCode"] == id && !answer["errorInfo"].toString().isEmpty();
            EXPECT_TRUE(isExplained || answer == object(R"({"errorModule":"startAsyncDownload","errorCode":-3})"));
            return false;
        }
        QJsonObject state;
        EXPECT_TRUE(until([&] {
            state = ask(LD_GetDownloadInfo, R"({"downloadId":)" + QByteArray::number(id) + "}");
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
        EXPECT_TRUE(until([&] { return writeFailures > 0 || sizeOf(ofDay("PlaybackFiles", "a.mp4")) > kFirstGroup; }));
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
        player->checkVideoSave(QString::fromStdString(ofDay("PlaybackFiles", "a")), 1);
        EXPECT_TRUE(until([this] { return sizeOf(ofDay("PlaybackFiles", "a.mp4")) > kFirstGroup; }));
        for (const auto& timer : QAbstractEventDispatcher::instance()->registeredTimers(player)) {
            QTimerEvent second(timer.timerId); // that it waits for, at once
            QCoreApplication::sendEvent(player, &second);
        }
        const fs::path next = ofDay("PlaybackFiles", "a_2.mp4");
        EXPECT_TRUE(until([&] { return !player->saving() || sizeOf(next) > kFirstGroup; }));
        return isDone(ask(LD_StopSave, R"({"wndIndex":0})"), "TP_StopSave call");
    }

    bool snapshot() { return isDone(ask(LD_Snapshot, R"({"wndIndex":0,"fileName":"a"})"), "call TP_JPEGCapture"); }

    // Downloads make no folder but their own: they come before what makes all on its way.
    std::vector<Action> actions()
    {
        const std::vector<Call> ofDownload = {Call::Open,       Call::Write, Call::Rename,
                                              Call::MakeFolder, Call::Cut,   Call::Sync};
        return {{"set",
                 {Call::Open, Call::Write, Call::Rename, Call::MakeFolder, Call::Sync},
                 [this] { return setSetting(); },
                 [this] { return settingsIn(settings_)["streamType"] == QString::number(setting_); },
                 Action::IsNotTold},
                {"read", {Call::Open}, [this] { return readSettings(); }, [] { return true; }, Action::LeavesPart},
                {"download", ofDownload, [this] { return download(""); },
                 [this] { return fs::exists(ofDay("DownloadFiles", "a.film")); }},
                {"download a view", ofDownload, [this] { return download("snapmachine"); },
                 [this] { return fs::exists(ofDay("ViewPics", "a.film")); }},
                {"snapshot",
                 {Call::Open, Call::Write, Call::Rename, Call::MakeFolder, Call::Cut},
                 [this] { return snapshot(); },
                 [this] { return fs::exists(ofDay("CaptureFiles", "a.jpg")); }},
                {"record",
                 {Call::Open, Call::Write, Call::MakeFolder, Call::Cut},
                 [this] { return record(); },
                 [this] { return fs::exists(ofDay("PlaybackFiles", "a.mp4")); },
                 Action::LeavesPart}};
    }

    void removeFilesOfDay()
    {
        for (const char* folder : {"CaptureFiles", "DownloadFiles", "ViewPics", "RecordFiles", "PlaybackFiles"})
            fs::remove_all(ofDay(folder, "").parent_path());
    }
    void removeEverything()
    {
        for (const fs::directory_entry& entry : fs::directory_iterator(root_))
            fs::remove_all(entry);
    }

    bool failOnce(const Action& action, const failing_files::Fault& fault);
    void failEach(const Action& action, const std::function<void()>& prepare, const std::vector<Action>& afterwards);

    inline static const QJsonObject kNull{{"null", true}};

    const fs::path root_ = qgetenv("PWD").toStdString();
    http_test::HttpServer server_;
    QWidget wall_;
    int setting_ = 0;
    const fs::path settings_ = root_ / ".HarborKit/local.json";
};

// Whether there was such a call.
bool FileFaultTest::failOnce(const Action& action, const failing_files::Fault& fault)
{
    failing_files::arm(fault);
    const bool isSaid = action.act();
    const bool isFailed = failing_files::failures() > 0;
    failing_files::disarm();
    expectWholeFiles(root_);
    const bool isDone = action.isDone();
    SCOPED_TRACE(testing::Message() << (isSaid ? "said, " : "refused, ") << (isDone ? "done" : "not done"));
    EXPECT_TRUE(isFailed || (isSaid && isDone));
    EXPECT_TRUE(isDone || !isSaid || action.failure == Action::IsNotTold);
    EXPECT_TRUE(isSaid || !isDone || action.failure == Action::LeavesPart);
    return isFailed;
}

// Every call that the action makes fails in turn; the wall goes on and does `afterwards`.
void FileFaultTest::failEach(const Action& action, const std::function<void()>& prepare,
                             const std::vector<Action>& afterwards)
{
    const auto failAll = [&](Call call, const Trouble& trouble) {
        for (int nth = 1; nth < kMostCalls; ++nth) {
            SCOPED_TRACE(testing::Message() << action.name << ", " << kCallNames[static_cast<int>(call)] << " " << nth
                                            << ", " << trouble.name);
            prepare();
            if (!failOnce(action, {call, nth, trouble.code, trouble.lasts}))
                return nth - 1;
            for (const Action& next : afterwards)
                EXPECT_TRUE(next.act() && next.isDone()) << next.name << " afterwards";
            expectMovingPicture();
        }
        return kMostCalls;
    };
    int all = 0;
    for (const Call call : action.calls) {
        for (const Trouble& trouble : kTroubles) {
            const int faults = failAll(call, trouble);
            EXPECT_TRUE(faults > 0 && faults < kMostCalls) << action.name << ", " << static_cast<int>(call);
            all += faults;
        }
    }
    RecordProperty(action.name, all);
}

TEST_F(FileFaultTest, everyCallOfEveryActionFails)
{
    for (const Action& action : actions())
        failEach(action, [this] { removeFilesOfDay(); }, {action});
}

TEST_F(FileFaultTest, everyCallOfTheSecondFileOfARecordingFails)
{
    const Action action{"two files",
                        {Call::Open, Call::Rename, Call::Cut},
                        [this] { return recordTwoFiles(); },
                        [this] { return fs::exists(ofDay("PlaybackFiles", "a_2.mp4")); },
                        Action::LeavesPart};
    failEach(
        action, [this] { removeFilesOfDay(); }, actions());
}

// What could not be made at the start is made when it is needed.
TEST_F(FileFaultTest, everyCallOfTheStartFails)
{
    const Action start{"start",
                       {Call::Open, Call::Write, Call::Rename, Call::MakeFolder},
                       [] {
                           QWidget wall;
                           initialize(wall);
                           const QJsonDocument grid = json(R"({"type":2})"); // in a shape that the settings tell
                           EXPECT_EQ(take(LD_ArrangeWindow(&wall, &grid)), kNull);
                           return true;
                       },
                       [this] { return fs::exists(settings_); },
                       Action::IsNotTold};
    failEach(
        start, [this] { removeEverything(); }, actions());
}

} // namespace
