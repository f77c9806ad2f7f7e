#include "engine/sound/Mixer.h"
#include "tests/engine_sound/Pitch.h"
#include "tests/support/AlsaFiles.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>

namespace tide {
namespace {

using namespace std::chrono_literals;
using engine_test::eventually;

constexpr int kRate = 48000; // of the device, with two channels

// In stereo.
FramePtr makeFrame(int rate, Microseconds length, const std::function<double(double seconds)>& wave)
{
    FramePtr frame(av_frame_alloc());
    frame->format = AV_SAMPLE_FMT_FLTP;
    frame->sample_rate = rate;
    frame->nb_samples = static_cast<int>(length.count() * rate / 1'000'000);
    av_channel_layout_default(&frame->ch_layout, 2);
    av_frame_get_buffer(frame.get(), 0);
    for (int i = 0; i < 2 * frame->nb_samples; ++i)
        reinterpret_cast<float*>(frame->extended_data[i % 2])[i / 2] = static_cast<float>(wave(i / 2 / double(rate)));
    return frame;
}

FramePtr level(double value, Microseconds length)
{
    return makeFrame(kRate, length, [value](double) { return value; });
}

FramePtr rise(Microseconds length)
{
    return makeFrame(kRate, length, [](double seconds) { return std::min(0.8, 40 * seconds); });
}

// The left channel, 1 being full scale.
class Played
{
public:
    explicit Played(const AlsaFiles& files)
    {
        const std::vector<std::int16_t> raw = files.played();
        for (std::size_t i = 0; i + 1 < raw.size(); i += 2) {
            samples.push_back(raw[i] / 32767.0);
            isStereoEqual = isStereoEqual && raw[i] == raw[i + 1];
        }
    }

    std::size_t onset(std::size_t from = 0) const
    {
        while (from < samples.size() && std::abs(samples[from]) < 0.01)
            ++from;
        return from;
    }
    double peak(std::size_t from, std::size_t count) const
    {
        double found = 0;
        for (std::size_t i = from; i < std::min(samples.size(), from + count); ++i)
            found = std::max(found, std::abs(samples[i]));
        return found;
    }
    std::vector<double> samples;
    bool isStereoEqual = true;
};

int soundThreads()
{
    int found = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string name;
        std::getline(std::ifstream(task.path() / "comm"), name);
        found += name == "tide-sound";
    }
    return found;
}

// The device's files, a mixer and one voice.
class MixerTest : public ::testing::Test
{
protected:
    // Ends the mixer: all has been written by then.
    Played heard()
    {
        mixer_.reset();
        return Played(files_);
    }

    AlsaFiles files_;
    std::unique_ptr<Mixer> mixer_ = std::make_unique<Mixer>();
    std::shared_ptr<Voice> voice_ = mixer_->makeVoice();
};

TEST_F(MixerTest, soundIsHeardAtItsTimeAtItsPitchAndVolume)
{
    const TimePoint start = Clock::now();
    voice_->setVolume(32768);
    ASSERT_TRUE(mixer_->open(voice_));
    const FramePtr frame =
        makeFrame(44100, 100ms, [](double seconds) { return 0.5 * std::sin(2 * 3.14159265358979 * 1000 * seconds); });
    voice_->push(*frame, start + 200ms);
    voice_->push(*frame, start + 300ms);
    voice_->push(*frame, start + 550ms);
    std::this_thread::sleep_until(start + 750ms);

    const Played played = heard();
    const std::size_t first = played.onset();
    const std::size_t second = played.onset(first + kRate / 4);
    EXPECT_NEAR(static_cast<double>(first), 0.2 * kRate, 0.05 * kRate);
    EXPECT_NEAR(static_cast<double>(second - first), 0.35 * kRate, 0.003 * kRate);
    EXPECT_NEAR(pitch(files_.played(), kRate, 2), 1000, 5);
    EXPECT_NEAR(played.peak(first, kRate / 5), 0.25, 0.01);
    EXPECT_LT(played.peak(first + kRate / 5 + 200, kRate / 10), 0.001);
    EXPECT_TRUE(played.isStereoEqual);
}

TEST_F(MixerTest, volumeChangesWithoutAClickAndIsKeptWhileClosed)
{
    EXPECT_EQ(voice_->volume(), 65535);
    EXPECT_EQ(soundThreads(), 0);
    const FramePtr sound = rise(500ms);
    mixer_->open(voice_);
    const TimePoint start = Clock::now() + 100ms;
    voice_->push(*sound, start);
    std::this_thread::sleep_until(start + 150ms);
    voice_->setVolume(0);
    std::this_thread::sleep_until(start + 300ms);
    voice_->setVolume(16384);
    std::this_thread::sleep_until(start + 400ms);
    mixer_->closeAll();
    EXPECT_EQ(voice_->volume(), 16384);
    EXPECT_TRUE(eventually([] { return soundThreads() == 0; }, 5s));

    const Played played = heard();
    EXPECT_NEAR(played.peak(0, kRate / 5), 0.8, 0.01);
    EXPECT_NEAR(played.samples.at(kRate * 7 / 20), 0, 0.001);
    EXPECT_NEAR(played.peak(kRate * 7 / 20, kRate), 0.2, 0.01);
    for (std::size_t i = 1; i < played.samples.size(); ++i)
        ASSERT_NEAR(played.samples[i], played.samples[i - 1], 0.002) << i;
}

TEST_F(MixerTest, onlyTheVoiceThatWasOpenedLastIsHeard)
{
    const auto second = mixer_->makeVoice();
    const TimePoint start = Clock::now() + 50ms;
    const auto pushBoth = [&](TimePoint due) {
        voice_->push(*level(0.2, 400ms), due);
        second->push(*rise(400ms), due);
    };
    mixer_->open(voice_);
    pushBoth(start);
    std::this_thread::sleep_until(start + 150ms);
    mixer_->open(second);
    EXPECT_FALSE(voice_->isOpen());
    pushBoth(start + 150ms);
    std::this_thread::sleep_until(start + 300ms);
    second->flush();
    std::this_thread::sleep_until(start + 550ms);

    const Played played = heard();
    EXPECT_NEAR(played.peak(0, kRate / 8), 0.2, 0.01);
    EXPECT_NEAR(played.peak(0, played.samples.size()), 0.8, 0.01);
    EXPECT_LT(played.peak(kRate / 2, kRate), 0.001);
}

TEST_F(MixerTest, lateAndAbsurdlyTimedAndBrokenSoundIsDropped)
{
    mixer_->open(voice_);
    const TimePoint start = Clock::now();
    voice_->push(*level(0.9, 100ms), start - 1s);
    voice_->push(*level(0.9, 100ms), start + 1h);
    voice_->push(*level(0.9, 100ms), start + 5s);
    FramePtr broken = level(0.9, 100ms);
    broken->format = AV_SAMPLE_FMT_NB;
    voice_->push(*broken, start);
    voice_->push(*level(0.4, 100ms), start + 100ms); // the stream has jumped back
    for (int i = 0; i < 2000; ++i)
        voice_->push(*level(0.4, 1ms), start + 200ms);
    std::this_thread::sleep_until(start + 400ms);

    const Played played = heard();
    EXPECT_NEAR(played.peak(0, kRate), 0.4, 0.01);
}

TEST_F(MixerTest, soundThatIsAlwaysALittleLateIsHeardLaterButWhole)
{
    mixer_->open(voice_);
    const FramePtr frame = level(0.4, 20ms);
    const TimePoint start = Clock::now();
    for (int i = 0; i < 30; ++i) {
        std::this_thread::sleep_until(start + i * 20ms);
        voice_->push(*frame, start + i * 20ms - 100ms);
    }
    std::this_thread::sleep_for(300ms);

    const Played played = heard();
    const auto isHeard = [](double sample) { return sample > 0.001; };
    EXPECT_GT(std::count_if(played.samples.begin(), played.samples.end(), isHeard), kRate / 2);
}

TEST_F(MixerTest, aDeviceThatFailsIsReplacedUntilItIsBack)
{
    files_.unplug();
    const TimePoint start = Clock::now();
    EXPECT_TRUE(mixer_->open(voice_));
    voice_->push(*level(0.5, 5s), start);
    std::this_thread::sleep_until(start + 300ms);
    EXPECT_EQ(soundThreads(), 1);
    files_.putBack();
    EXPECT_TRUE(eventually([&] { return !files_.played().empty(); }, 5s));
    voice_.reset(); // a stream that goes takes its voice along, and the thread with the last
    EXPECT_TRUE(eventually([] { return soundThreads() == 0; }, 5s));
    EXPECT_NEAR(heard().peak(0, kRate), 0.5, 0.01);
}

TEST_F(MixerTest, standsManyThreadsThatOpenAndCloseAndPush)
{
    std::atomic<bool> isDone{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            while (!isDone) {
                const auto voice = mixer_->makeVoice();
                mixer_->open(voice);
                voice->push(*level(0.1, 20ms), Clock::now());
                voice->setVolume(1000);
                voice->flush();
                std::this_thread::sleep_for(3ms);
                mixer_->closeAll();
            }
        });
    }
    std::this_thread::sleep_for(500ms);
    isDone = true;
    for (auto& thread : threads)
        thread.join();
    EXPECT_TRUE(eventually([] { return soundThreads() == 0; }, 5s));
    EXPECT_FALSE(files_.played().empty());
}

} // namespace
} // namespace tide
