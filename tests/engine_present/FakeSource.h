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
    TimePoint nextDue() const override
    {
        const std::lock_guard lock(mutex_);
        return queue_.empty() ? TimePoint::max() : queue_.front().first;
    }
    PicturePtr take(TimePoint now) override
    {
        const std::lock_guard lock(mutex_);
        PicturePtr newest;
        for (; !queue_.empty() && queue_.front().first <= now; queue_.pop_front()) {
            dropped_ += newest ? 1 : 0;
            newest = queue_.front().second;
        }
        taken_ += newest ? 1 : 0;
        current_ = newest ? newest : current_;
        return newest;
    }
    PicturePtr current() const override
    {
        const std::lock_guard lock(mutex_);
        return current_;
    }
    void setWatched(bool watched) override { watched_ = watched; }

    void put(FramePtr frame, TimePoint due = Clock::now())
    {
        const std::lock_guard lock(mutex_);
        queue_.emplace_back(due, std::make_shared<Picture>(Picture{std::move(frame), {}, ++serial_}));
    }
    bool isWatched() const { return watched_; }
    int taken() const { return taken_; }
    int dropped() const { return dropped_; }

private:
    mutable std::mutex mutex_; // guards the next three
    std::deque<std::pair<TimePoint, PicturePtr>> queue_;
    PicturePtr current_;
    std::uint64_t serial_ = 0;
    std::atomic<int> taken_{0}, dropped_{0};
    std::atomic<bool> watched_{true};
};

} // namespace tide
