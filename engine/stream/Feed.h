#pragma once

#include "engine/stream/Decoder.h"
#include "engine/stream/MediaReader.h"
#include "engine/stream/StreamNews.h"
#include "engine/stream/StreamState.h"

#include <optional>

namespace tide {

// The part of a source that is played; positions from its start.
struct Span
{
    std::optional<Microseconds> start, stop;
};

// What one connection hands on to the next after a break.
struct Progress
{
    std::uint64_t serial = 0;               // of the last picture
    std::optional<Microseconds> position{}; // of the last picture
};

enum class Outcome
{
    Stopped,
    Ended,
    Broken,
    Hopeless
};

// What both directions do with a decoded picture. Belongs to the stream's thread.
class Feed
{
public:
    Feed(StreamState& state, StreamNews& news, MediaReader& reader, Progress& progress, Span span);

protected:
    bool openVideo(); // false when the source has no pictures, or none that can be decoded
    Microseconds positionOf(const AVFrame& frame) const;
    PicturePtr makePicture(FramePtr frame, Microseconds position);
    PictureQueue::Pushed show(FramePtr frame, Microseconds position);

    StreamState& state_;
    StreamNews& news_;
    MediaReader& reader_;
    Progress& progress_;
    const Span span_;
    std::unique_ptr<Decoder> video_;
    Microseconds interval_{40000}; // of the source's pictures, where their time stamps are missing

private:
    void learnWallClock(Microseconds position);
};

} // namespace tide
