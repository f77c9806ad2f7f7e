#pragma once

#include "engine/stream/EffortControl.h"
#include "engine/stream/Feed.h"

namespace tide {

// Plays one connection forwards: reads, hands packets to the recorders, decodes, and queues pictures and sound.
class ForwardFeed : public Feed
{
public:
    using Feed::Feed;

    Outcome run(); // until the end, a break or a stop

private:
    bool begin();
    void openSound();
    bool handle(const AVPacket& packet);
    bool handlePicture(const AVPacket& packet);
    bool handleSound(const AVPacket& packet);
    bool outlastsPictures(const AVPacket& packet) const;
    bool pace(const AVPacket& packet);
    bool showAll();
    bool showOne(FramePtr frame);
    bool waitForRoom();
    bool bridgeJump(Microseconds position);
    void hear(const AVFrame& frame);
    Outcome finish();
    bool isWholeSourceRead() const;

    EffortControl effort_;
    std::unique_ptr<Decoder> sound_;
    const std::uint64_t firstSerial_ = progress_.serial;
    bool reachedStop_ = false;
};

} // namespace tide
