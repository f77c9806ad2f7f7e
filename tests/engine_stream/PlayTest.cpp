#include "tests/engine_stream/StreamTestKit.h"

#include <atomic>
#include <list>
#include <map>
#include <sys/stat.h>

namespace tide {
namespace {

using namespace std::chrono_literals;

StreamOptions with(const std::string& url, const std::string& start, const std::string& stop,
                   Direction direction = Direction::Forward)
{
    return {url, "", 0, 0, start, stop, 0, {}, direction, 6};
}

int numberOf(const Picture& picture)
{
    return static_cast<int>((picture.position + 20ms) / 40ms);
}

// Shows all of a stream, as long as it should take. A machine under load may pass over a late picture, never show one
// twice or out of order.
void expectPlays(Viewer& viewer, int first, int last)
{
    const TimePoint start = Clock::now();
    const auto pictures = viewer.takeAll();
    const int count = std::abs(last - first) + 1;
    EXPECT_NEAR(std::chrono::duration<double>(Clock::now() - start).count(), 0.04 * count, 0.5);
    ASSERT_FALSE(pictures.empty());
    EXPECT_EQ(numberOf(*pictures.front()), first);
    EXPECT_EQ(numberOf(*pictures.back()), last);
    EXPECT_GE(pictures.size(), static_cast<std::size_t>(count) * 8 / 10);
    for (std::size_t i = 1; i < pictures.size(); ++i)
        ASSERT_EQ(numberOf(*pictures[i]) > numberOf(*pictures[i - 1]), last > first) << i;
}

TEST(PlayTest, FileIsShownFromEndToEnd)
{
    Viewer viewer(h264Clip());
    expectPlays(viewer, 0, 74);
    EXPECT_EQ(viewer.stream().pictureSize()->width, 320);
    EXPECT_FALSE(viewer.stream().isLive());
    EXPECT_EQ(numberOf(*viewer.stream().current()), 74); // stays on show
    EXPECT_EQ(viewer.stream().frameForward(), Failure::NoPicture);
    EXPECT_TRUE(viewer.stream().pictureTime().has_value());
}

TEST(PlayTest, StartAndStopTimesCutTheFileBothWays)
{
    Viewer forward(with(h264Clip(), "1.2", "2"));
    expectPlays(forward, 30, 49);
    Viewer backward(with(h264Clip(), "00:00:01", "00:00:01.6", Direction::Backward));
    expectPlays(backward, 39, 25);
    Viewer byDate(with(clip("dated.mp4", "-i " + h264Clip() + " -c copy -metadata creation_time=2026-05-01T10:00:00Z"),
                       "20260501T100001Z", "2026-05-01T10:00:01.400Z"));
    expectPlays(byDate, 25, 34);
    EXPECT_EQ(std::chrono::system_clock::to_time_t(*byDate.stream().pictureTime()), 1777629601);
}

TEST(PlayTest, BackwardShowsEveryGroupFromItsEnd)
{
    Viewer viewer(with(h264Clip(), "", "", Direction::Backward));
    expectPlays(viewer, 74, 0);
    // The numbers in the pictures themselves, past a group that does not fit into the memory for it (64 MiB: 14
    // pictures).
    Viewer large(with("test:pattern?size=2048x1536&rate=5&gop=50&seconds=8", "", "", Direction::Backward));
    large.stream().fast();
    int expected = 39;
    for (const PicturePtr& picture : large.take(18)) {
        const int number = testNumber(*picture->frame);
        EXPECT_LE(number, expected);
        EXPECT_GE(number, expected - 4);
        expected = number - 1;
    }
}

TEST(PlayTest, WhatCannotRunBackwardSaysSo)
{
    for (const std::string& url : {std::string("test:pattern"), clip("raw.h264", "-i " + h264Clip() + " -c copy -an")})
        EXPECT_TRUE(Viewer(with(url, "", "", Direction::Backward)).waitFor(TP_MESSAGE_NOT_REVERSIBLE)) << url;
}

TEST(PlayTest, PauseStepSpeed)
{
    Viewer viewer("test:pattern?size=160x120&seconds=60");
    Stream& stream = viewer.stream();
    ASSERT_EQ(viewer.take(3).size(), 3U);
    stream.pause();
    const int paused = testNumber(*stream.current()->frame);
    EXPECT_TRUE(viewer.takeFor(200).empty());
    for (int i = 1; i <= 10; ++i) { // further than the queue is long
        stream.frameForward();
        ASSERT_EQ(testNumber(*viewer.next()->frame), paused + i);
    }
    EXPECT_TRUE(viewer.takeFor(100).empty());
    stream.resume();
    const PicturePtr goesOn = viewer.next(300); // from the picture stepped to, at once
    ASSERT_TRUE(goesOn);
    EXPECT_EQ(testNumber(*goesOn->frame), paused + 11);
    for (int i = 0; i < 5; ++i)
        stream.slow();
    EXPECT_EQ(stream.scale(), 0.125F);
    viewer.take(1);
    EXPECT_LE(viewer.takeFor(900).size(), 4U);
    for (int i = 0; i < 9; ++i)
        stream.fast();
    EXPECT_EQ(stream.scale(), 8.0F);
    const int before = testNumber(*viewer.next()->frame);
    viewer.takeFor(1000);
    EXPECT_GT(testNumber(*stream.current()->frame) - before, 100);
}

TEST(PlayTest, LivePatternKeepsItsPaceAndHasOneSpeed)
{
    Viewer viewer("test:pattern?size=160x120&rate=20&sound=440");
    ASSERT_TRUE(viewer.waitFor(TP_MESSAGE_OPENED));
    EXPECT_TRUE(viewer.stream().isLive());
    EXPECT_EQ(viewer.stream().fast(), Failure::WrongState);
    EXPECT_NEAR(static_cast<double>(viewer.takeFor(1000).size()), 20, 4);
    viewer.stream().pause();
    const auto pausedAt = testNumber(*viewer.stream().current()->frame);
    std::this_thread::sleep_for(1s);
    viewer.stream().frameForward();
    EXPECT_LE(testNumber(*viewer.next()->frame), pausedAt + 2); // what came first is kept for steps
    viewer.stream().resume();
    EXPECT_GE(testNumber(*viewer.next()->frame), pausedAt + 19); // the present, not where it was held
}

TEST(PlayTest, SourcesThatAreNoFilmFailAtOnce)
{
    mkfifo((folder() / "pipe").c_str(), 0600);
    for (const std::string& url :
         {folder() / "missing.mp4", folder().write("empty.mp4", ""), folder() / "", folder() / "pipe",
          folder().write("noise.mp4", std::string(100000, '\x5a')), std::string("/dev/zero")}) {
        Viewer viewer(url);
        EXPECT_TRUE(viewer.waitFor(TP_MESSAGE_OPEN_FAILED)) << url;
        EXPECT_FALSE(viewer.stream().pictureSize());
    }
}

TEST(PlayTest, OddFilesPlayWhatTheyCanInTheirTime)
{
    std::string broken = clipBytes("whole.ts", "-i " + h264Clip() + " -c copy");
    for (std::size_t i = broken.size() / 3; i < broken.size() / 2; i += 50)
        broken[i] = static_cast<char>(i * 37);
    const std::string part = clipBytes("part.ts", "-i " + h264Clip() + " -c copy -t 1");
    const struct
    {
        std::string file;
        std::size_t leastPictures;
        Microseconds least, most;
    } rows[] = {{folder().write("broken.ts", broken.substr(0, broken.size() * 9 / 10)), 31, 0s, 30s},
                {folder().write("twice.ts", part + part), 41, 0s, 4s},                // its time stamps jump
                {clip("raw.h264", "-i " + h264Clip() + " -c copy -an"), 61, 0s, 30s}, // without time stamps
                {clip("sound.m4a", "-f lavfi -i sine=440:duration=2 -c:a aac"), 0, 1500ms, 30s}};
    for (const auto& row : rows) {
        const TimePoint start = Clock::now();
        EXPECT_GE(Viewer(row.file).takeAll().size(), row.leastPictures) << row.file;
        const auto time = Clock::now() - start;
        EXPECT_TRUE(time >= row.least && time < row.most) << row.file;
    }
}

TEST(PlayTest, SizeChangesInMidStream)
{
    std::string film;
    for (const std::string size : {"320x240", "640x480"})
        film += clipBytes(size + ".ts",
                          "-f lavfi -i testsrc2=size=" + size + ":rate=25:duration=1 -c:v libx264 -pix_fmt yuv420p");
    Viewer viewer(folder().write("both.ts", film));
    EXPECT_TRUE(viewer.waitFor(TP_MESSAGE_OPENED));
    EXPECT_EQ(viewer.stream().pictureSize()->width, 320);
    EXPECT_TRUE(viewer.waitFor(TP_MESSAGE_SIZE_CHANGED));
    EXPECT_EQ(viewer.stream().pictureSize()->width, 640);
}

// A film whose sound lies behind the pictures that it belongs to, as broadcast recordings have it.
std::string withLateSound(int milliseconds)
{
    const std::string film = clipBytes("sound.ts", "-f lavfi -i testsrc2=size=64x64:rate=25:duration=2 "
                                                   "-f lavfi -i sine=440:duration=2 -c:v libx264 -g 1 "
                                                   "-c:a mp2 -b:a 384k");
    const std::size_t shift = film.size() / 2000 * static_cast<std::size_t>(milliseconds);
    std::multimap<std::size_t, std::string> packets; // by their new places
    for (std::size_t at = 0; at < film.size(); at += 188) {
        const bool isSound = (film[at + 1] & 0x1f) == 1 && film[at + 2] == 1; // the second track
        packets.emplace(at + (isSound ? shift : 0), film.substr(at, 188));
    }
    std::string late;
    for (const auto& [place, packet] : packets)
        late += packet;
    return folder().write("late" + std::to_string(milliseconds) + ".ts", late);
}

struct Ear : Voice
{
    void push(const AVFrame& frame, TimePoint due) override
    {
        heard += Microseconds(std::int64_t{frame.nb_samples} * 1000000 / frame.sample_rate);
        if (heard > 200ms) // what belongs to the first picture, which is shown at once, cannot be ahead of it
            soonest = std::min(soonest, std::chrono::duration_cast<Microseconds>(due - Clock::now()));
    }
    void flush() override {}
    bool isOpen() const override { return true; }
    void setVolume(std::uint16_t) override {}
    std::uint16_t volume() const override { return 0; }

    Microseconds heard{};
    Microseconds soonest = 1h;
};

TEST(PlayTest, SoundComesInTimeHoweverTheFileIsInterleaved)
{
    for (const int late : {0, 300, 700}) {
        const auto ear = std::make_shared<Ear>();
        Viewer(optionsFor(withLateSound(late)), ear).takeAll();
        EXPECT_GT(ear->heard, 1900ms) << late;
        EXPECT_GT(ear->soonest, 60ms) << late;
    }
}

struct Recorder : PacketSink
{
    void tracks(const std::vector<TrackInfo>& infos) override { EXPECT_EQ(infos.size(), 2U); }
    void packet(const AVPacket& packet) override { packets += packet.stream_index < 2 ? 1 : 10000; }
    std::atomic<int> packets{0};
};

// Nobody watches: everything goes on but the decoding, and the present picture is there as soon as somebody does.
TEST(PlayTest, WhatNobodyWatchesIsNotDecodedAndIsBackAtOnce)
{
    for (const char* length : {"0", "60"}) { // live, and as a file
        Viewer viewer(std::string("test:pattern?size=160x120&gop=50&sound=440&people=5&seconds=") + length);
        auto recorder = std::make_shared<Recorder>();
        viewer.stream().addSink(recorder);
        ASSERT_EQ(viewer.take(3).size(), 3U);
        viewer.stream().setWatched(false);
        viewer.takeFor(1500);
        const int packets = recorder->packets;
        EXPECT_LE(viewer.takeFor(2000).size(), 2U);        // key pictures
        EXPECT_NEAR(recorder->packets - packets, 150, 60); // pictures and sound; people counts are not recorded
        EXPECT_EQ(testNumber(*viewer.stream().current()->frame), 50); // what a snapshot shows
        viewer.stream().setWatched(true);
        const PicturePtr back = viewer.next(500);
        ASSERT_TRUE(back);
        EXPECT_NEAR(testNumber(*back->frame), 90, 12);
        viewer.stream().removeSink(recorder);
        const int until = recorder->packets;
        EXPECT_GT(viewer.takeFor(1000).size(), 12U); // all of them but where the machine is busy
        EXPECT_EQ(recorder->packets, until);
    }
}

TEST(PlayTest, PausingSteppingAndEndingWorkUnwatched)
{
    Viewer viewer("test:pattern?size=160x120&gop=100&seconds=60");
    Stream& stream = viewer.stream();
    ASSERT_EQ(viewer.take(3).size(), 3U);
    stream.setWatched(false);
    viewer.takeFor(2000);
    stream.pause();
    EXPECT_TRUE(viewer.takeFor(500).empty());
    stream.frameForward();
    ASSERT_TRUE(viewer.next());
    viewer.takeFor(100);
    const int at = testNumber(*stream.current()->frame);
    EXPECT_NEAR(at, 55, 10);
    stream.frameForward();
    EXPECT_EQ(testNumber(*viewer.next()->frame), at + 1);
    viewer.takeFor(1200);
    stream.resume();
    viewer.takeFor(2000);
    stream.pause();
    stream.setWatched(true); // the picture at which it was paused, not the key picture before
    ASSERT_TRUE(viewer.next());
    EXPECT_NEAR(testNumber(*stream.current()->frame), at + 55, 12);

    Viewer film(with(h264Clip(), "", "2.5")); // with pictures that are decoded before they are due
    film.take(2);
    film.stream().setWatched(false);
    const TimePoint start = Clock::now();
    EXPECT_EQ(numberOf(*film.takeAll().back()), 62);
    EXPECT_NEAR(std::chrono::duration<double>(Clock::now() - start).count(), 2.4, 0.4);
}

TEST(PlayTest, PeopleCountsComeUntilTheFunctionIsTakenOff)
{
    std::atomic<int> records{0};
    Viewer viewer("test:pattern?size=160x120&people=20");
    const TP_AdditionFun count = [](int id, TP_ADDITION_DATA_INFO* info, void* user) {
        const auto* values = static_cast<const unsigned*>(info->data);
        EXPECT_TRUE(id == 7 && info->type == 2049 && info->length == 64 && values[1] < 1000 && values[1] != values[2]);
        ++*static_cast<std::atomic<int>*>(user);
    };
    viewer.stream().setAddition(2049, count, &records);
    viewer.stream().setAddition(1, count, &records); // no such records
    viewer.takeFor(800);
    EXPECT_NEAR(records, 16, 8);
    viewer.stream().setAddition(2049, nullptr, nullptr);
    const int until = records;
    viewer.takeFor(200);
    EXPECT_LE(records, until + 1); // one may have been running
}

// Whatever is under way, stopping is quick and leaves nothing behind.
TEST(PlayTest, ManyStreamsStopAtAnyMoment)
{
    for (int round = 0; round < 15; ++round) {
        std::list<Viewer> viewers;
        for (const std::string& url : {std::string("test:pattern?size=160x120"), std::string("/missing"), h264Clip(),
                                       std::string("rtsp://127.0.0.1:9/none"), std::string("http://127.0.0.1:9/none")})
            viewers.emplace_back(url);
        viewers.emplace_back(with(h264Clip(), "", "", Direction::Backward));
        std::this_thread::sleep_for(std::chrono::milliseconds(round * 7));
        const TimePoint start = Clock::now();
        viewers.clear();
        EXPECT_LT(Clock::now() - start, 2s);
    }
}

} // namespace
} // namespace tide
