#pragma once

#include "engine/stream/EffortControl.h"
#include "engine/stream/Feed.h"
#include "engine/stream/LiveDelay.h"
#include "engine/stream/PassedGroup.h"
#include "engine/stream/SoundTrack.h"

#include <deque>

namespace tide {

// Plays one connection forwards: reads, hands packets to the recorders, decodes, and queues pictures and sound.
class ForwardFeed : public Feed
{
public:
    using Feed::Feed;

    Outcome run(); // until the end, a break or a stop

private:
    bool begin();
    void measureDelay(const AVPacket& packet, TimePoint askedAt);
    bool handle(const AVPacket& packet);
    bool handlePicture(const AVPacket& packet);
    bool handleSound(const AVPacket& packet);
    bool outlastsPictures(Microseconds position) const;
    bool pace(const AVPacket& packet);
    bool decodeWhatMay();
    bool decode(PacketPtr packet);
    bool mayPassOver(const AVPacket& packet) const;
    bool passOver(PacketPtr packet, Microseconds position);
    bool showAlone(const AVPacket& packet);
    bool catchUp();
    void showLatest();
    bool waitsForSound() const;
    void playSound();
    std::optional<Microseconds> stampOf(const AVPacket& packet) const;
    std::optional<Microseconds> decodingStampOf(const AVPacket& packet) const;
    bool showAll();
    bool showRest();
    bool showOne(FramePtr frame);
    bool waitForRoom();
    template <typename Wait> bool restDuring(Wait wait);
    bool bridgeJump(Microseconds position);
    Outcome finish();
    bool isWholeSourceRead() const;

    EffortControl effort_;
    std::unique_ptr<SoundTrack> sound_;
    std::deque<PacketPtr> pictures_; // read, and not decoded yet
    LiveDelay delay_;
    PassedGroup passed_;
    std::optional<Microseconds> resumesAt_; // pictures before it were passed over
    FramePtr latest_;                       // of those, made after all
    TimePoint keyShownAt_{};                // while nobody watches
    const std::uint64_t firstSerial_ = progress_.serial;
    bool reachedStop_ = false;
};

} // namespace tide
