#include "engine/stream/LiveDelay.h"

#include <algorithm>

namespace tide {

using namespace std::chrono_literals;

namespace {

constexpr Microseconds kBound = 500ms;
constexpr Microseconds kPatience = 1s; // a network that sends by fits and starts is in time again and again
constexpr int kLeak = 200;             // a clock that differs by less than one part of so many is no delay

} // namespace

void LiveDelay::came(Microseconds position, TimePoint now)
{
    arrival_ = std::chrono::duration_cast<Microseconds>(now.time_since_epoch()) - position;
    const auto passed = std::chrono::duration_cast<Microseconds>(now - cameAt_);
    edge_ = std::min(edge_.value_or(arrival_) + (edge_ ? passed / kLeak : 0us), arrival_);
    cameAt_ = now;
    behind_ = arrival_ - *edge_;
    if (behind_ < kBound)
        longSince_.reset();
    else if (!longSince_)
        longSince_ = now;
}

void LiveDelay::restart()
{
    *this = {};
}

void LiveDelay::takeForPresent()
{
    edge_ = arrival_;
    behind_ = {};
    longSince_.reset();
}

bool LiveDelay::isTooLong(TimePoint now) const
{
    return longSince_ && now - *longSince_ > kPatience;
}

} // namespace tide
