#pragma once

#include "engine/core/Ffmpeg.h"
#include "engine/core/Time.h"

#include <cstdint>
#include <memory>

namespace tide {

// One decoded picture. Shared by the stream, the presenter and a snapshot; never changed after it was made.
struct Picture
{
    FramePtr frame;           // in system memory, whatever software pixel format the decoder gave
    Microseconds position{};  // of the picture in its stream
    std::uint64_t serial = 0; // grows with every picture of a stream: a new serial is a new upload
};
using PicturePtr = std::shared_ptr<const Picture>;

// Where the presenter gets the pictures of one stream from. The stream implements it; any thread may call.
// A stream calls Presenter::wake after its answer to nextDue has become earlier.
class PictureSource
{
public:
    virtual ~PictureSource() = default;

    // When the next picture should be on show; TimePoint::max() when none waits (paused, empty, ended).
    virtual TimePoint nextDue() const = 0;

    // The picture that should be on show at `now`. Takes it out of the queue together with the late ones before it,
    // which are dropped. Null when nothing new is due.
    virtual PicturePtr take(TimePoint now) = 0;

    // The picture on show: what take() gave last. Null before the first one.
    virtual PicturePtr current() const = 0;

    // Whether anybody can see the pictures; at first somebody can. A source that nobody sees may give fewer.
    virtual void setWatched(bool) {}
};

} // namespace tide
