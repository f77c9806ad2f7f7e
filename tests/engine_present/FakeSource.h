#pragma once

#include "engine/stream/PictureSource.h"

#include <atomic>
#include <deque>
#include <functional>
#include <mutex>

namespace tide {

// A picture in memory, filled by a function of plane and place. Lines are longer than the picture, as decoders make
// them.
using Fill = std::function<int(int plane, int x, int y)>;
FramePtr makeFrame(int width, int height, AVPixelFormat format, const Fill& fill);

inline Fill solid(int first, int second, int third)
{
    return [=](int plane, int, int) { return plane == 0 ? first : plane == 1 ? second : third; };
}

// Gives the pictures that the test put in, each at its time.
class FakeSource : public PictureSource
{
public:
    TimePoint nextDue() const override;
    PicturePtr take(TimePoint now) override;
    PicturePtr current() const override;
    void setWatched(bool watched) override { watched_ = watched; }
    bool isWatched() const { return watched_; }

    void put(FramePtr frame, TimePoint due = Clock::now());
    int taken() const;
    int dropped() const;

private:
    mutable std::mutex mutex_;
    std::deque<std::pair<TimePoint, PicturePtr>> queue_;
    PicturePtr current_;
    std::uint64_t serial_ = 0;
    int taken_ = 0;
    int dropped_ = 0;
    std::atomic<bool> watched_{true};
};

} // namespace tide
