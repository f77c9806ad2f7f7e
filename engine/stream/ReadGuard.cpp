#include "engine/stream/ReadGuard.h"

#include <utility>

namespace tide {

void ReadGuard::stop()
{
    {
        std::lock_guard lock(mutex_);
        stopped_ = true;
    }
    changed_.notify_all();
}

void ReadGuard::rouse()
{
    {
        std::lock_guard lock(mutex_);
        roused_ = true;
    }
    changed_.notify_all();
}

bool ReadGuard::restUntil(TimePoint end)
{
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, end, [this] { return stopped_ || roused_; });
    roused_ = false;
    return !stopped_;
}

bool ReadGuard::rest()
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return stopped_ || roused_; });
    roused_ = false;
    return !stopped_;
}

void ReadGuard::allow(Microseconds time)
{
    deadline_ = Clock::now() + time;
    tripped_ = false;
}

int ReadGuard::interrupt(void* opaque)
{
    auto& guard = *static_cast<ReadGuard*>(opaque);
    const TimePoint now = Clock::now();
    guard.tripped_ = guard.tripped_ || guard.stopped_ || now > guard.deadline_;
    if (!guard.tripped_ && guard.onTick_)
        guard.onTick_(now);
    return guard.tripped_ ? 1 : 0;
}

} // namespace tide
