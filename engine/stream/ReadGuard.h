#pragma once

#include "engine/core/Time.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace tide {

// Ends what a stream's thread waits for: at once when the stream is stopped, and when the network is silent too long.
class ReadGuard
{
public:
    // any thread
    void stop();
    bool isStopped() const { return stopped_; }
    void rouse(); // ends a rest before its time

    // The stream's thread. `onTick` runs some ten times a second while libavformat waits.
    void allow(Microseconds time);
    bool hasTripped() const { return tripped_; } // since the last allow(); what libavformat read then is not whole
    void setOnTick(std::function<void(TimePoint)> onTick) { onTick_ = std::move(onTick); }
    bool restUntil(TimePoint end); // false when stopped meanwhile
    bool rest();                   // until it is roused; false when stopped

    // For AVIOInterruptCB; `opaque` is the guard.
    static int interrupt(void* opaque);

private:
    std::atomic<bool> stopped_{false};
    TimePoint deadline_ = TimePoint::max();
    bool tripped_ = false;
    std::function<void(TimePoint)> onTick_;

    std::mutex mutex_;
    std::condition_variable changed_;
    bool roused_ = false; // guarded by mutex_
};

} // namespace tide
