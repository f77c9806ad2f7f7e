#pragma once

#include "engine/core/Time.h"
#include "engine/stream/StreamOptions.h"

namespace tide {

// Maps positions in a stream to the moments at which they are due. Not thread-safe: its owner guards it.
class PlayClock
{
public:
    explicit PlayClock(Direction direction);

    bool isSet() const { return set_; }
    bool isHeld() const { return held_; }
    double speed() const { return speed_; }

    void set(Microseconds position, TimePoint when); // `position` is due at `when`, and the others round it
    void clear() { set_ = false; }
    void setSpeed(double speed, TimePoint now);
    void hold(TimePoint now);
    void release(TimePoint now);
    void standAt(Microseconds position); // while held: goes on from there when it is released

    // While held the answer is as if it had not been. Nothing is due before the clock is set.
    TimePoint due(Microseconds position) const;

private:
    Microseconds position(TimePoint now) const;

    const double direction_; // 1 or -1
    double speed_ = 1.0;
    bool set_ = false;
    bool held_ = false;
    Microseconds anchor_{};
    TimePoint anchoredAt_{};
    TimePoint heldAt_{};
};

} // namespace tide
