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

int ReadGuard::interrupt(void* opaque)
{
    auto& guard = *static_cast<ReadGuard*>(opaque);
    if (guard.stopped_)
        return 1;
    const TimePoint now = Clock::now();
    if (guard.onTick_)
        guard.onTick_(now);
    return now > guard.deadline_ ? 1 : 0;
}

} // namespace tide
