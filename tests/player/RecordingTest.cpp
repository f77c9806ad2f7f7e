#include "tests/support/Wall.h"

#include <sys/vfs.h>

using namespace wall;

// What the disk says to the library, and which folder was asked for.
static long long freeBytes = 1'000'000'000;
static std::string askedFolder;

// In place of the system's: a disk that fills up on demand, in blocks of a byte.
extern "C" int statfs(const char* folder, struct statfs* disk) noexcept
{
    askedFolder = folder;
    disk->f_bavail = static_cast<decltype(disk->f_bavail)>(freeBytes);
    disk->f_bsize = 1;
    return freeBytes < 0 ? -1 : 0;
}

namespace {

class RecordingTest : public WallTest
{
protected:
    void TearDown() override
    {
        WallTest::TearDown();
        freeBytes = 1'000'000'000;
        QDir(dayFolder("RecordFiles")).removeRecursively();
    }

    // The second that the recording's timer waits for, at once. What the engine was called for.
    std::vector<std::string> tick()
    {
        const std::size_t before = calls().size();
        for (const int interval : timers(player()))
            expire(player(), interval);
        return engineCalls(before);
    }

    // Records window 0 to a file that exists; answers its path without ".mp4".
    QString record(const char* fileName = "clip")
    {
        EXPECT_TRUE(ask(LD_StartSave, QByteArray(R"({"wndIndex":0,"fileName":")") + fileName + "\"}").null);
        const QString path = QString::fromStdString(calls("TP_StartSave").back().arguments.at(1));
        QFile(path).open(QIODevice::WriteOnly);
        return path.left(path.size() - 4);
    }

    static QStringList files(const char* kind) { return QDir(dayFolder(kind)).entryList(QDir::Files); }

    static void fileSize(int bytes) { engine_double::answer("TP_GetRecordFileSize", bytes); }
};

TEST_F(RecordingTest, filesGoWhereTheStreamKindSays)
{
    const std::pair<const char*, const char*> kinds[] = {{"rtsp://h/CHANNELS/1", "RecordFiles"},
                                                         {"h/quillMark/tracks", "RecordFiles"},
                                                         {"sdk/play/1", "RecordFiles"},
                                                         {"h/Tracks/1", "PlaybackFiles"},
                                                         {"a.vod", "PlaybackFiles"},
                                                         {"sdk/playback", "PlaybackFiles"},
                                                         {"sdk/play", "PlaybackFiles"},
                                                         {"", "PlaybackFiles"}};
    for (const auto& [url, kind] : kinds) {
        play(url);
        record("cam");
        EXPECT_EQ(calls("TP_StartSave").back().arguments.at(1), (dayFolder(kind) + "/cam.mp4").toStdString()) << url;
        EXPECT_EQ(calls("TP_StartSave").back().arguments.at(2), "2");
        EXPECT_TRUE(QDir(dayFolder("RecordFiles")).exists() && QDir(dayFolder("PlaybackFiles")).exists());
        EXPECT_TRUE(player()->saving());
        ask(LD_Stop);
    }
    EXPECT_THAT(timers(player()), ElementsAre(1000));
}

TEST_F(RecordingTest, splitsPastTheLimitAndNumbersFromTheFirstSplitOn)
{
    const std::pair<const char*, int> limits[] = {
        {"0", 256'000'000}, {"1", 512'000'000}, {"2", 1'000'000'000}, {"\"x\"", 256'000'000}};
    for (const auto& [setting, limit] : limits) {
        configure(QByteArray(R"({"packgeSize":)") + setting + "}");
        const std::string id = std::to_string(play());
        const QString path = record();
        fileSize(limit);
        EXPECT_THAT(tick(), ElementsAre("TP_GetRecordFileSize(" + id + ")")) << setting;
        fileSize(limit + 1);
        for (int part = 2; part <= 3; ++part) {
            const std::string next = (path + "_" + QString::number(part) + ".mp4").toStdString();
            EXPECT_EQ(tick().back(), "TP_SwitchFile(" + id + ", " + next + ")");
        }
        EXPECT_EQ(files("RecordFiles"), QStringList("clip_1.mp4")) << "renamed once, the double writes no files";
        ask(LD_Stop);
        QDir(dayFolder("RecordFiles")).removeRecursively();
    }
}

TEST_F(RecordingTest, renamingNeverTakesAnothersPlaceAndARefusedSplitEndsTheRecordingSilently)
{
    const std::string id = std::to_string(play());
    record("a.mp4");
    fileSize(512'000'001);
    tick();
    EXPECT_EQ(files("RecordFiles"), QStringList("a.mp4.mp4")) << "its name has lost both endings: not found";
    ask(LD_StopSave);
    record();
    QFile(dayFolder("RecordFiles") + "/clip_1.mp4").open(QIODevice::WriteOnly);
    tick();
    EXPECT_TRUE(files("RecordFiles").contains("clip.mp4"));
    engine_double::answer("TP_SwitchFile", 1);
    EXPECT_EQ(tick().back(), "TP_StopSave(" + id + ")");
    EXPECT_FALSE(player()->saving());
    EXPECT_THAT(timers(player()), IsEmpty());
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(RecordingTest, lowDiskIsToldAndEndsTheRecording)
{
    const std::string id = std::to_string(play());
    for (const long long bytes : {999'999'999LL, -1LL}) {
        freeBytes = 1'000'000'000;
        record();
        tick();
        EXPECT_EQ(askedFolder, dayFolder("RecordFiles").toStdString());
        EXPECT_THAT(events(), IsEmpty());
        freeBytes = bytes;
        EXPECT_EQ(tick().back(), "TP_StopSave(" + id + ")");
        ASSERT_EQ(events().size(), 1U);
        EXPECT_EQ(events()[0].object,
                  documents::object(R"({"cmd":"window.onPluginEventHandler","wndIndex":0,"eventType":21})"));
        EXPECT_FALSE(player()->saving());
        EXPECT_TRUE(player()->playing());
        EXPECT_THAT(timers(player()), IsEmpty());
        events().clear();
    }
    freeBytes = 1'000'000'000;
    record();
    freeBytes = 0;
    engine_double::answer("TP_StopSave", -1);
    tick();
    EXPECT_TRUE(player()->saving()) << "refused: the engine still records";
    EXPECT_THAT(timers(player()), IsEmpty());
}

TEST_F(RecordingTest, endIsNoticedAtTheNextTick)
{
    const std::string id = std::to_string(play());
    record();
    ask(LD_StopSave);
    EXPECT_THAT(tick(), ElementsAre("TP_StopSave(" + id + ")"));
    EXPECT_THAT(tick(), IsEmpty());
    record();
    ask(LD_Stop);
    EXPECT_THAT(tick(), ElementsAre("TP_StopSave(-1)"));
    EXPECT_THAT(timers(player()), IsEmpty());
}

TEST_F(RecordingTest, hostMayActOnTheLowDiskEvent)
{
    play();
    record();
    freeBytes = 0;
    LD_InstallEventCallback(LD_EVENT_STREAM, [](LD_EventType, QWidget* mainWindow, const QJsonDocument*) {
        const QJsonDocument request = json(R"({"wndIndex":0})");
        take(LD_Stop(mainWindow, &request));
        delete mainWindow->layout()->itemAt(0)->widget();
    });
    tick();
    EXPECT_EQ(calls("TP_StopSave").size(), 1U);
    EXPECT_EQ(calls("TP_Stop").size(), 1U);
    EXPECT_FALSE(player());
}

} // namespace
