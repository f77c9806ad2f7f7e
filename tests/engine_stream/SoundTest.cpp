#include "engine/core/Log.h"
#include "engine/stream/ForwardFeed.h"
#include "engine/stream/PatternReader.h"

#include <algorithm>
#include <deque>
#include <gtest/gtest.h>
#include <thread>

namespace tide {
namespace {

using namespace std::chrono_literals;

// A file whose sound lies `late` behind the pictures that it belongs to, as broadcast recordings have it.
class LateSound : public MediaReader
{
public:
    LateSound(ReadGuard& guard, Microseconds late)
        : pattern_(*parsePattern("size=64x64&sound=440&seconds=2"), guard)
        , late_(late)
    {
    }

    Opened open() override { return pattern_.open(); }
    const MediaInfo& info() const override { return pattern_.info(); }
    bool seek(Microseconds) override { return false; }
    void setPaused(bool) override {}
    Microseconds position(int track, std::int64_t stamp) const override { return pattern_.position(track, stamp); }

    Read read(AVPacket& packet) override
    {
        for (;;) {
            if (!sound_.empty() && position(info().audio, sound_.front()->pts) + late_ <= picture_) {
                av_packet_unref(&packet);
                av_packet_move_ref(&packet, sound_.front().get());
                sound_.pop_front();
                return Read::Packet;
            }
            const Read read = pattern_.read(packet);
            if (read != Read::Packet)
                return read;
            if (packet.stream_index == info().video) {
                picture_ = position(packet.stream_index, packet.pts);
                return read;
            }
            sound_.emplace_back(av_packet_clone(&packet));
        }
    }

private:
    PatternReader pattern_;
    const Microseconds late_;
    Microseconds picture_{};
    std::deque<PacketPtr> sound_;
};

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

class SoundTest : public ::testing::TestWithParam<int>
{
};

TEST_P(SoundTest, ComesInTimeHoweverTheFileIsInterleaved)
{
    quietFfmpeg();
    Notifier notifier;
    const auto ear = std::make_shared<Ear>();
    StreamOptions options;
    options.bufferFrames = 3;
    StreamState state(7, options, StreamLinks{&notifier, ear, [] {}});
    StreamNews news(state);
    Progress progress;
    LateSound reader(state.guard, std::chrono::milliseconds(GetParam()));
    ASSERT_EQ(reader.open(), MediaReader::Opened::Yes);
    std::thread feeding([&] { ForwardFeed(state, news, reader, progress, {}).run(); });
    const auto isOver = [&] { return state.queue.current() && state.queue.current()->serial == 50; };
    for (int i = 0; i < 2000 && !isOver(); ++i) {
        state.queue.take(Clock::now());
        std::this_thread::sleep_for(2ms);
    }
    state.queue.close();
    feeding.join();
    EXPECT_GT(ear->heard, 1900ms - std::chrono::milliseconds(GetParam())); // the rest was never in the file
    EXPECT_GT(ear->soonest, 60ms);
}

INSTANTIATE_TEST_SUITE_P(Late, SoundTest, ::testing::Values(0, 300, 700));

} // namespace
} // namespace tide
