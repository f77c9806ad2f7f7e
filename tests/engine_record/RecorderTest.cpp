#include "engine/record/Recorder.h"
#include "engine/core/Log.h"
#include "tests/engine_record/Clip.h"

#include <QtEndian>

#include <atomic>
#include <csignal>
#include <sys/stat.h>

namespace tide {
namespace {

using namespace std::chrono_literals;
using engine_test::eventually;
using engine_test::Folder;
using record_test::Clip;
using record_test::Packet;
namespace fs = std::filesystem;

constexpr auto kVideo = AVMEDIA_TYPE_VIDEO;
constexpr auto kSound = AVMEDIA_TYPE_AUDIO;
constexpr int kSeconds = 8;

// 25 pictures a second with two B pictures in a row, a key picture each second.
const std::string kPictures = "-f lavfi -i testsrc2=s=320x240:r=25:d=8 -f lavfi -i sine=f=440:r=48000:d=8 "
                              "-c:v libx264 -preset ultrafast -bf 2 -g 25 -keyint_min 25 -sc_threshold 0 ";

std::vector<std::vector<std::uint8_t>> payloads(const std::vector<Packet>& packets)
{
    std::vector<std::vector<std::uint8_t>> found;
    for (const Packet& packet : packets)
        found.push_back(packet.data);
    return found;
}

class Recording : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        quietFfmpeg();
        folder_ = std::make_unique<Folder>();
        engine_test::makeClip(kPictures + "-c:a aac " + file("clip.mp4"));
        clip_ = std::make_unique<Clip>(file("clip.mp4"));
    }
    static void TearDownTestSuite()
    {
        clip_.reset();
        folder_.reset();
    }

    std::shared_ptr<Recorder> start(const std::string& path)
    {
        return Recorder::start(path, [this] { ++failures_; });
    }

    // The file that all of `source` becomes.
    std::string recorded(const Clip& source, const std::string& name)
    {
        const auto recorder = start(file(name));
        source.announce(*recorder);
        source.feed(*recorder);
        EXPECT_TRUE(recorder->finish(10s));
        EXPECT_EQ(recorder->size(), static_cast<std::int64_t>(fs::file_size(file(name))));
        EXPECT_EQ(failures_, 0);
        return file(name);
    }

    static std::string file(const std::string& name) { return *folder_ / name; }

    static inline std::unique_ptr<Folder> folder_;
    static inline std::unique_ptr<Clip> clip_;
    std::atomic<int> failures_{0};
};

void expectSame(const std::vector<Packet>& made, const std::vector<Packet>& source, double shift)
{
    ASSERT_EQ(made.size(), source.size());
    for (std::size_t i = 0; i < made.size(); ++i) {
        EXPECT_NEAR(made[i].pts, source[i].pts + shift, 0.0005) << i;
        EXPECT_NEAR(made[i].dts, source[i].dts + shift, 0.0005) << i;
        EXPECT_EQ(made[i].isKey, source[i].isKey) << i;
        EXPECT_EQ(made[i].data, source[i].data) << i;
    }
}

TEST_F(Recording, holdsTheStreamPacketForPacket)
{
    const Clip made(recorded(*clip_, "copy.mp4"));
    const auto source = clip_->packets(kVideo);
    expectSame(made.packets(kVideo), source, -source.front().dts);
    auto sound = clip_->packets(kSound);
    const auto isEarly = [&](const Packet& packet) { return packet.pts < source.front().dts; };
    sound.erase(sound.begin(), std::find_if_not(sound.begin(), sound.end(), isEarly));
    expectSame(made.packets(kSound), sound, -source.front().dts);
    EXPECT_NEAR(made.duration(), kSeconds, 0.2);
    const std::string bytes = folder_->read("copy.mp4");
    const auto lengthTold =
        qFromBigEndian<quint32>(bytes.data() + bytes.find("mvhd") + 20); // ms, by the movie header alone
    EXPECT_NEAR(lengthTold, kSeconds * 1000, 200);
}

TEST_F(Recording, splitIntoPartsLosesNothing)
{
    const std::vector<std::string> parts{file("p1.mp4"), file("p2.mp4"), file("p3.mp4"), file("p4.mp4")};
    const auto recorder = start(parts[0]);
    clip_->announce(*recorder);
    const std::size_t step = clip_->size() / 4; // anywhere in a group
    clip_->feed(*recorder, 0, step);
    EXPECT_TRUE(eventually([&] { return recorder->size() > 0; }, 10s));
    fs::rename(parts[0], file("renamed.mp4")); // as a host may at any time
    for (std::size_t i = 1; i < parts.size(); ++i) {
        ASSERT_TRUE(recorder->switchTo(parts[i]));
        EXPECT_EQ(recorder->size(), 0);
        clip_->feed(*recorder, i * step, i + 1 < parts.size() ? step : SIZE_MAX);
    }
    EXPECT_FALSE(recorder->switchTo(file("no folder") + "/p5.mp4"));
    EXPECT_FALSE(recorder->switchTo(parts[3])); // being written
    ASSERT_TRUE(recorder->switchTo(file("unused.mp4")));
    EXPECT_TRUE(recorder->finish(10s));
    EXPECT_FALSE(recorder->switchTo(file("late.mp4")));
    EXPECT_FALSE(fs::exists(parts[0]) || fs::exists(file("unused.mp4")));

    fs::rename(file("renamed.mp4"), parts[0]);
    std::vector<std::vector<std::uint8_t>> pictures, sound;
    const auto append = [](auto& all, auto more) { all.insert(all.end(), more.begin(), more.end()); };
    for (const std::string& part : parts) {
        const Clip made(part);
        const auto video = made.packets(kVideo);
        ASSERT_FALSE(video.empty());
        EXPECT_TRUE(video.front().isKey);
        EXPECT_EQ(video.front().dts, 0);
        EXPECT_EQ(made.decodable(kVideo), static_cast<int>(video.size()));
        EXPECT_LT(made.packets(kSound).front().pts, 0.1);
        append(pictures, payloads(video));
        append(sound, payloads(made.packets(kSound)));
    }
    EXPECT_EQ(pictures, payloads(clip_->packets(kVideo)));
    const auto source = payloads(clip_->packets(kSound));
    EXPECT_TRUE(
        std::equal(sound.rbegin(), sound.rend(), source.rbegin())); // what is before the first key picture lacks
    EXPECT_NEAR(static_cast<double>(sound.size()), static_cast<double>(source.size()), 6);
}

// Whatever comes is playable, whole and in time with its sound.
TEST_F(Recording, anySourceBecomesAPlayableFile)
{
    const struct
    {
        const char* arguments;
        const char* name;
        double soundStart; // seconds after the first picture
    } sources[] = {{"-c:a aac ", "adts.ts", 0},
                   {"-c:a pcm_alaw -ar 8000 -ac 1 ", "alaw.mov", 0},
                   {"-c:a pcm_mulaw -ar 8000 -af asetpts=PTS+2/TB ", "mulaw.mkv", 2},
                   {"-c:a ac3 ", "ac3.ts", 0}};
    for (const auto& source : sources) {
        SCOPED_TRACE(source.name);
        engine_test::makeClip(kPictures + source.arguments + file(source.name));
        const Clip made(recorded(Clip(file(source.name)), "made.mp4"));
        EXPECT_EQ(made.decodable(kVideo), kSeconds * 25);
        ASSERT_TRUE(made.parameters(kSound));
        EXPECT_EQ(made.parameters(kSound)->codec_id, AV_CODEC_ID_AAC);
        const auto sound = made.packets(kSound);
        ASSERT_FALSE(sound.empty());
        EXPECT_EQ(made.decodable(kSound), static_cast<int>(sound.size()));
        EXPECT_NEAR(sound.back().pts - sound.front().pts, kSeconds, 0.3);
        EXPECT_NEAR(sound.front().pts - made.packets(kVideo).front().pts, source.soundStart, 0.15);
    }
}

TEST_F(Recording, soundAloneIsRecordedToo)
{
    engine_test::makeClip("-f lavfi -i sine=d=8 -c:a pcm_alaw -ar 8000 " + file("alone.wav"));
    EXPECT_NEAR(Clip(recorded(Clip(file("alone.wav")), "sound.mp4")).duration(), kSeconds, 0.3);
}

TEST_F(Recording, goesOnAfterAReconnect)
{
    const auto recorder = start(file("reconnect.mp4"));
    clip_->announce(*recorder);
    clip_->feed(*recorder, 0, clip_->size() / 2);
    clip_->announce(*recorder); // the source begins anew, in the middle of a group
    clip_->feed(*recorder, 5);
    EXPECT_TRUE(recorder->finish(10s));

    const Clip made(file("reconnect.mp4"));
    const auto video = made.packets(kVideo);
    EXPECT_EQ(made.decodable(kVideo), static_cast<int>(video.size()));
    EXPECT_GT(video.size(), 25u * (kSeconds / 2 + kSeconds - 2));
    for (std::size_t i = 1; i < video.size(); ++i)
        EXPECT_NEAR(video[i].dts - video[i - 1].dts, 0.04, 0.0401) << i;
    EXPECT_EQ(failures_, 0);
}

TEST_F(Recording, isRefusedWhereNoFileCanBe)
{
    mkfifo(file("pipe").c_str(), 0600);
    for (const std::string& path :
         {file("missing/a.mp4"), *folder_ / ".", file("pipe"), std::string("/dev/null"), std::string()})
        EXPECT_FALSE(start(path)) << path;
    const auto first = start(file("twice.mp4"));
    EXPECT_FALSE(start(file("twice.mp4")));
    EXPECT_TRUE(first->finish(1s));
    EXPECT_FALSE(fs::exists(file("twice.mp4"))); // nothing came
}

TEST_F(Recording, aKilledProcessLosesOneGroupAtMost)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe"; // a fresh process, which has the name from this one
    setenv("RECORD_TEST_FILE", file("killed.mp4").c_str(), 0);
    const std::string killed = std::getenv("RECORD_TEST_FILE");
    const auto recordUntilKilled = [&] {
        const auto recorder = start(killed);
        clip_->announce(*recorder);
        clip_->feed(*recorder, 0, clip_->size() / 2);
        eventually([&] { return fs::file_size(killed) > fs::file_size(file("clip.mp4")) / 3; }, 10s);
        std::this_thread::sleep_for(200ms);
        std::raise(SIGKILL);
    };
    EXPECT_EXIT(recordUntilKilled(), ::testing::KilledBySignal(SIGKILL), "");
    const Clip made(killed);
    const auto video = payloads(made.packets(kVideo));
    const auto source = payloads(clip_->packets(kVideo));
    EXPECT_EQ(video.size() % 25, 0u);
    EXPECT_GE(video.size(), source.size() / 2 - 25);
    EXPECT_TRUE(std::equal(video.begin(), video.end(), source.begin()));
    EXPECT_EQ(made.decodable(kVideo), static_cast<int>(video.size()));
}

TEST_F(Recording, theFileCanBeSought)
{
    AVFormatContext* opened = nullptr;
    ASSERT_GE(avformat_open_input(&opened, recorded(*clip_, "seek.mp4").c_str(), nullptr, nullptr), 0);
    const DemuxerPtr demuxer(opened);
    const PacketPtr packet(av_packet_alloc());
    for (const int second : {6, 2, 7, 0}) {
        ASSERT_GE(av_seek_frame(opened, -1, second * AV_TIME_BASE + AV_TIME_BASE / 2, AVSEEK_FLAG_BACKWARD), 0);
        do {
            av_packet_unref(packet.get());
            ASSERT_GE(av_read_frame(opened, packet.get()), 0);
        } while (packet->stream_index != 0);
        EXPECT_TRUE(packet->flags & AV_PKT_FLAG_KEY);
        EXPECT_NEAR(static_cast<double>(packet->dts) * av_q2d(opened->streams[0]->time_base), second, 0.1);
    }
}

} // namespace
} // namespace tide
