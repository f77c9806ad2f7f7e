#include "engine/record/TimeMender.h"

#include <gtest/gtest.h>

#include <random>

namespace tide {
namespace {

constexpr std::int64_t kNone = AV_NOPTS_VALUE;
constexpr std::int64_t kStep = 3600; // 25 pictures a second
constexpr TrackTimes kPictures{{1, 90000}, kStep, 0};
constexpr TrackTimes kReordered{{1, 90000}, kStep, 2};
constexpr TrackTimes kSound{{1, 8000}, 160, 0};

using Times = std::pair<std::int64_t, std::int64_t>; // for showing, for decoding

Times mended(TimeMender& mender, Times times, std::size_t track = 0)
{
    AVPacket packet{};
    std::tie(packet.pts, packet.dts) = times;
    mender.mend(packet, track);
    return {packet.pts, packet.dts};
}

TEST(TimeMender, whatIsMissingIsFilledIn)
{
    TimeMender plain({kPictures});
    EXPECT_EQ(mended(plain, {500, kNone}), (Times{0, 0}));
    EXPECT_EQ(mended(plain, {500 + kStep, kNone}), (Times{kStep, kStep}));
    EXPECT_EQ(mended(plain, {kNone, kNone}), (Times{2 * kStep, 2 * kStep}));
    EXPECT_EQ(mended(plain, {kNone, 500 + 3 * kStep}), (Times{3 * kStep, 3 * kStep}));

    TimeMender reordered({kReordered});
    const int shown[] = {0, 3, 1, 2, 6, 4, 5, 9};
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(mended(reordered, {shown[i] * kStep, kNone}), (Times{(shown[i] + 2) * kStep, i * kStep})) << i;
}

TEST(TimeMender, jumpsAreClosedAndSoundStaysWithItsPicture)
{
    TimeMender mender({kPictures, kSound});
    mended(mender, {900000, 900000}, 0);
    EXPECT_EQ(mended(mender, {80080, 80080}, 1), (Times{80, 80}));
    mended(mender, {900000 + kStep, 900000 + kStep}, 0);
    EXPECT_EQ(mended(mender, {5000, 5000}, 0), (Times{2 * kStep, 2 * kStep})); // back to another time line
    EXPECT_EQ(mended(mender, {80240, 80240}, 1), (Times{240, 240}));           // sound of the old one still comes
    EXPECT_EQ(mended(mender, {444 + 400, 444 + 400}, 1), (Times{640 + 400, 640 + 400}));
    EXPECT_EQ(mended(mender, {5000 + 5 * 90000, 5000 + 5 * 90000}, 0).second, 2 * kStep + 5 * 90000); // a real gap
    EXPECT_EQ(mended(mender, {5000 + 50 * 90000, 5000 + 50 * 90000}, 0).second, 3 * kStep + 5 * 90000);
}

TEST(TimeMender, noTimesHoweverWildReachTheMuxerUnmended)
{
    std::mt19937_64 random(7);
    TimeMender mender({kReordered, kSound});
    std::int64_t last[2] = {INT64_MIN, INT64_MIN};
    for (int i = 0; i < 20000; ++i) {
        const auto wild = [&] {
            const int bits = static_cast<int>(random() % 64);
            const auto value = static_cast<std::int64_t>(random() >> bits);
            return random() % 8 == 0 ? kNone : random() % 2 ? value : -value;
        };
        const std::size_t track = random() % 2;
        const auto [pts, dts] = mended(mender, {wild(), wild()}, track);
        ASSERT_GT(dts, std::exchange(last[track], dts)) << i;
        ASSERT_GE(pts, dts) << i;
    }
}

} // namespace
} // namespace tide
