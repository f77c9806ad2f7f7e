#pragma once

#include "engine/stream/Feed.h"

#include <deque>

namespace tide {

// Plays a file backwards: decodes the group of pictures before the one on show while that is shown, and queues it from
// its end. A group that does not fit into the memory set aside for it is decoded anew for each part of it.
class ReverseFeed : public Feed
{
public:
    using Feed::Feed;

    Outcome run();

private:
    using Group = std::deque<std::pair<Microseconds, FramePtr>>; // in the order of display

    bool seekBefore(Microseconds end);
    bool decodeGroup(Microseconds end);
    bool decodeFrom(Microseconds target, Microseconds end);
    bool collect(Microseconds end);
    void keep(FramePtr frame, Microseconds position);
    void showWhileRoom();
    bool showAll();
    void showLast();

    Group group_;                // being decoded
    Group ready_;                // being shown, from its back
    std::size_t groupBytes_ = 0; // of group_
    Microseconds firstKey_{};    // of the run that is decoded: pictures before it lack what they refer to
};

} // namespace tide
