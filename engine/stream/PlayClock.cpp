#include "engine/stream/PlayClock.h"

namespace tide {

namespace {

Microseconds scaled(Microseconds time, double factor)
{
    return Microseconds(static_cast<std::int64_t>(static_cast<double>(time.count()) * factor));
}

Microseconds between(TimePoint from, TimePoint to)
{
    return std::chrono::duration_cast<Microseconds>(to - from);
}

} // namespace

PlayClock::PlayClock(Direction direction)
    : direction_(direction == Direction::Forward ? 1.0 : -1.0)
{
}

void PlayClock::set(Microseconds position, TimePoint when)
{
    set_ = true;
    anchor_ = position;
    anchoredAt_ = when;
}

void PlayClock::setSpeed(double speed, TimePoint now)
{
    const TimePoint pivot = held_ ? heldAt_ : now;
    if (set_)
        set(position(pivot), pivot);
    speed_ = speed;
}

void PlayClock::hold(TimePoint now)
{
    if (!held_)
        heldAt_ = now;
    held_ = true;
}

void PlayClock::release(TimePoint now)
{
    if (held_)
        anchoredAt_ += now - heldAt_;
    held_ = false;
}

void PlayClock::standAt(Microseconds position)
{
    set(position, heldAt_);
}

TimePoint PlayClock::due(Microseconds position) const
{
    return set_ ? anchoredAt_ + scaled(position - anchor_, direction_ / speed_) : TimePoint::max();
}

Microseconds PlayClock::position(TimePoint now) const
{
    return anchor_ + scaled(between(anchoredAt_, now), direction_ * speed_);
}

} // namespace tide
