#include "tests/engine_stream/StreamTestKit.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>

namespace tide {
namespace {

using namespace std::chrono_literals;

// A film whose sound lies behind the pictures that it belongs to, as broadcast recordings have it.
std::string withLateSound(int milliseconds)
{
    const std::string film = bytesOf(clip("sound.ts", "-f lavfi -i testsrc2=size=64x64:rate=25:duration=2 "
                                                      "-f lavfi -i sine=440:duration=2 -c:v libx264 -g 1 "
                                                      "-c:a mp2 -b:a 384k"));
    const std::size_t shift = film.size() / 2000 * static_cast<std::size_t>(milliseconds);
    std::multimap<std::size_t, std::string> packets; // by their new places
    for (std::size_t at = 0; at < film.size(); at += 188) {
        const bool isSound = (film[at + 1] & 0x1f) == 1 && film[at + 2] == 1; // the second track
        packets.emplace(at + (isSound ? shift : 0), film.substr(at, 188));
    }
    std::string late;
    for (const auto& [place, packet] : packets)
        late += packet;
    return fileOf("late" + std::to_string(milliseconds) + ".ts", late);
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

TEST(SoundTest, ComesInTimeHoweverTheFileIsInterleaved)
{
    for (const int late : {0, 300, 700}) {
        const auto ear = std::make_shared<Ear>();
        Viewer(optionsFor(withLateSound(late)), ear).takeAll();
        EXPECT_GT(ear->heard, 1900ms) << late;
        EXPECT_GT(ear->soonest, 60ms) << late;
    }
}

} // namespace
} // namespace tide
