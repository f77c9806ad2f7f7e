#pragma once

#include "engine/stream/Address.h"
#include "engine/stream/Feed.h"
#include "engine/stream/TimeText.h"

namespace tide {

// What a stream's own thread does: connects, plays, and connects again after a break.
class StreamThread
{
public:
    explicit StreamThread(StreamState& state);

    void run();

private:
    Outcome playOnce();
    Outcome play(MediaReader& reader);
    std::unique_ptr<MediaReader> makeReader() const;
    Span span(const MediaInfo& info) const;
    bool asksRecorder() const;
    std::int64_t guessWallClock(const MediaInfo& info) const;
    bool isNetwork() const;
    bool rest();

    StreamState& state_;
    StreamNews news_;
    Progress progress_;
    const std::optional<Address> address_;
    const StreamTime start_, stop_;
    std::uint64_t seenSerial_ = 0; // progress at the last rest
    int attempts_ = 0;             // in vain, one after the other
    bool refused_ = false;
};

} // namespace tide
