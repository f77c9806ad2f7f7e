#include "engine/record/TimeMender.h"

#include <algorithm>

namespace tide {

namespace {

using namespace std::chrono_literals;
using Nanoseconds = std::chrono::nanoseconds;

constexpr AVRational kNanosecond{1, 1'000'000'000};
constexpr Nanoseconds kLongestGap = 10s;     // a longer one is a jump, and closed
constexpr Nanoseconds kLongestBackstep = 1s; // of a track's time against the other tracks'
constexpr Nanoseconds kLastUsable = std::chrono::hours(24 * 365 * 100);

Nanoseconds toTime(std::int64_t ticks, AVRational base)
{
    return Nanoseconds(av_rescale_q(ticks, base, kNanosecond));
}

std::int64_t toTicks(Nanoseconds time, AVRational base)
{
    return av_rescale_q(time.count(), kNanosecond, base);
}

// Far beyond any clock: arithmetic on it would overflow.
bool isUsable(std::int64_t ticks, AVRational base)
{
    if (ticks == AV_NOPTS_VALUE)
        return false;
    const Nanoseconds time = toTime(ticks, base);
    return time < kLastUsable && time > -kLastUsable;
}

} // namespace

TimeMender::TimeMender(const std::vector<TrackTimes>& tracks)
{
    for (const TrackTimes& times : tracks) {
        Track track;
        track.times = times;
        tracks_.push_back(track);
    }
}

void TimeMender::mend(AVPacket& packet, std::size_t index)
{
    Track& track = tracks_[index];
    complete(packet, track);
    place(track, packet.dts);
    packet.dts -= track.shift;
    packet.pts -= track.shift;
    if (track.last != AV_NOPTS_VALUE)
        packet.dts = std::max(packet.dts, track.last + 1);
    packet.pts = std::max(packet.pts, packet.dts);
    track.last = packet.dts;
    latest_ = std::max(latest_, toTime(packet.dts, track.times.base));
}

void TimeMender::complete(AVPacket& packet, Track& track)
{
    const bool hasPts = isUsable(packet.pts, track.times.base);
    const std::int64_t guess = hasPts                            ? decodeTime(packet.pts, track)
                               : track.lastRaw == AV_NOPTS_VALUE ? 0
                                                                 : track.lastRaw + track.times.step;
    if (!isUsable(packet.dts, track.times.base))
        packet.dts = guess;
    if (!hasPts)
        packet.pts = packet.dts;
    packet.dts = std::min(packet.dts, packet.pts);
    track.lastRaw = packet.dts;
}

// Pictures are decoded in the order of their packets and shown in the order of their times: with a reordering of n the
// smallest of the newest n+1 times is the one whose turn it is.
std::int64_t TimeMender::decodeTime(std::int64_t pts, Track& track)
{
    const auto full = static_cast<std::size_t>(track.times.reorderDepth) + 1;
    auto& window = track.window;
    window.insert(std::upper_bound(window.begin(), window.end(), pts), pts);
    if (window.size() > full)
        window.erase(window.begin());
    const auto missing = static_cast<std::int64_t>(full - window.size());
    return window.front() - missing * track.times.step;
}

// Finds the shift for the packet. After a jump the track first tries the time line that another track has jumped to, so
// that sound and picture stay together.
void TimeMender::place(Track& track, std::int64_t dts)
{
    const AVRational base = track.times.base;
    if (!hasStarted_)
        shift_ = toTime(dts, base);
    hasStarted_ = true;
    const std::int64_t expected = expectedOf(track);
    if (track.last != AV_NOPTS_VALUE && isContinuous(track, expected, dts, 0s))
        return;
    track.shift = toTicks(shift_, base);
    if (isContinuous(track, expected, dts, kLongestBackstep))
        return;
    track.shift = dts - expected;
    track.window.clear();
    shift_ = toTime(track.shift, base);
}

std::int64_t TimeMender::expectedOf(const Track& track) const
{
    return track.last == AV_NOPTS_VALUE ? toTicks(latest_, track.times.base) : track.last + track.times.step;
}

bool TimeMender::isContinuous(const Track& track, std::int64_t expected, std::int64_t dts, Nanoseconds backwards)
{
    const std::int64_t early = dts - track.shift - expected;
    const std::int64_t tolerance = std::max(track.times.step, toTicks(backwards, track.times.base));
    return early >= -tolerance && early <= toTicks(kLongestGap, track.times.base);
}

} // namespace tide
