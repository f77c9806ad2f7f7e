#pragma once

#include "engine/core/Time.h"

#include <optional>

namespace tide {

// How far the reading of a live source is behind the source: packets that wait to be read are older than the newest ever
// were. Belongs to the stream's thread.
class LiveDelay
{
public:
    void came(Microseconds position, TimePoint now); // a packet was read
    void restart();                                  // the time stamps begin anew
    void takeForPresent();                           // the packet that came last had just been sent

    Microseconds behind() const { return behind_; }
    bool isTooLong(TimePoint now) const; // and it was so for a while: decoding does not keep up

private:
    std::optional<Microseconds> edge_; // the least that a packet's moment of arrival is past its position
    Microseconds arrival_{};           // of the last packet, in the same measure
    Microseconds behind_{};
    TimePoint cameAt_{};
    std::optional<TimePoint> longSince_;
};

} // namespace tide
