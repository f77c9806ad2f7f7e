#pragma once

#include "engine/core/Ffmpeg.h"

#include <cstddef>
#include <deque>

namespace tide {

bool isKey(const AVPacket& packet);

// The packets that were not decoded while nobody watched: those from which the present picture can still be made.
class PassedGroup
{
public:
    void add(PacketPtr packet); // a key picture begins anew
    std::deque<PacketPtr> take();
    void clear();  // the decoder goes on
    void giveUp(); // nothing is decoded before the next key picture

    bool isEmpty() const { return packets_.empty(); }
    bool startsWithKey() const;                 // else they go on where the decoder stands
    bool needsKey() const { return needsKey_; } // it was given up or has grown too long

private:
    std::deque<PacketPtr> packets_;
    std::size_t bytes_ = 0;
    bool needsKey_ = false;
};

} // namespace tide
