#pragma once

#include "engine/core/Ffmpeg.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tide {

struct TrackTimes
{
    AVRational base{1, 90000};
    std::int64_t step = 1; // the usual distance of two packets, in `base`
    int reorderDepth = 0;  // how many packets may come before one that is shown earlier
};

// Time stamps as a muxer needs them, whatever a source sends: all there, none before its dts, every dts of a track
// later than the one before, and one time line from 0 on for all tracks, through jumps and reconnects.
class TimeMender
{
public:
    explicit TimeMender(const std::vector<TrackTimes>& tracks);

    // The packet's times are in the time base of the track. Times before 0 come out for packets that belong before the
    // first one that was given.
    void mend(AVPacket& packet, std::size_t track);

private:
    using Nanoseconds = std::chrono::nanoseconds;

    struct Track
    {
        TrackTimes times;
        std::vector<std::int64_t> window; // the latest presentation times, sorted
        std::int64_t lastRaw = AV_NOPTS_VALUE;
        std::int64_t last = AV_NOPTS_VALUE; // dts as mended
        std::int64_t shift = 0;             // from raw to mended time
    };

    static void complete(AVPacket& packet, Track& track);
    static std::int64_t decodeTime(std::int64_t pts, Track& track);
    void place(Track& track, std::int64_t dts);
    static bool isContinuous(const Track& track, std::int64_t expected, std::int64_t dts, Nanoseconds backwards);
    std::int64_t expectedOf(const Track& track) const;

    std::vector<Track> tracks_;
    bool hasStarted_ = false;
    Nanoseconds shift_{};  // the newest of all tracks
    Nanoseconds latest_{}; // mended time of the newest packet of any track
};

} // namespace tide
