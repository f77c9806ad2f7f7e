#include "engine/stream/EffortControl.h"

#include <algorithm>

namespace tide {

using namespace std::chrono_literals;

namespace {

constexpr Microseconds kPatience = 500ms; // late for so long: do less
constexpr Microseconds kTrust = 3s;       // in time for so long: do more

} // namespace

Decoder::Effort EffortControl::after(PictureQueue::Pushed pushed, double speed, TimePoint now)
{
    const auto least = speed > 1.0 ? Decoder::Effort::KeysOnly : Decoder::Effort::NoSpare;
    effort_ = std::min(effort_, least);
    if (pushed != last_) {
        last_ = pushed;
        since_ = now;
    }
    const bool late = pushed == PictureQueue::Pushed::Late;
    if (now - since_ < (late ? kPatience : kTrust))
        return effort_;
    since_ = now;
    const int step = static_cast<int>(effort_) + (late ? 1 : -1);
    effort_ = static_cast<Decoder::Effort>(std::clamp(step, 0, static_cast<int>(least)));
    return effort_;
}

} // namespace tide
