#pragma once

#include "engine/stream/Decoder.h"
#include "engine/stream/MediaReader.h"
#include "engine/stream/StreamState.h"

#include <deque>
#include <memory>
#include <optional>

namespace tide {

// The sound of one connection. Its packets wait here until the pictures beside them are on their way to the window:
// what the voice holds is lost at a pause, so it gets no more than it needs. Belongs to the stream's thread.
class SoundTrack
{
public:
    static std::unique_ptr<SoundTrack> open(StreamState& state, const MediaReader& reader);

    bool isWanted() const; // somebody hears it
    void add(const AVPacket& packet);
    void playUpTo(Microseconds position);
    void restart(); // the time stamps have begun anew

    // Whether the sound that belongs to a picture at this position has been read.
    bool hasReached(Microseconds position) const { return readUpTo_ && *readUpTo_ >= position; }

private:
    SoundTrack(StreamState& state, const MediaReader& reader, std::unique_ptr<Decoder> decoder);

    Microseconds positionOf(const AVPacket& packet) const;
    void play(const AVPacket& packet);
    void hear(const AVFrame& frame);

    StreamState& state_;
    const MediaReader& reader_;
    const std::unique_ptr<Decoder> decoder_;
    std::deque<PacketPtr> waiting_;
    std::optional<Microseconds> readUpTo_;
};

} // namespace tide
