#pragma once

#include "engine/core/Ffmpeg.h"
#include "engine/core/Time.h"
#include "engine/stream/PacketSink.h"

#include <optional>
#include <vector>

namespace tide {

// What is known of a source once it is open.
struct MediaInfo
{
    std::vector<TrackInfo> tracks; // those that are read; a packet's stream_index points here
    int video = -1;                // indices into the tracks, -1 where there is none
    int audio = -1;
    int data = -1; // people-count records, see PatternReader
    bool live = false;
    std::optional<Microseconds> duration;
    std::optional<Microseconds> wallClockOrigin; // of position 0, since 1970 in UTC
};

// The packets of one source. Belongs to the stream's thread.
class MediaReader
{
public:
    enum class Opened
    {
        Yes,
        No,
        Refused
    }; // Refused: the credential
    enum class Read
    {
        Packet,
        End,
        Broken
    };

    virtual ~MediaReader() = default;

    virtual Opened open() = 0;
    virtual const MediaInfo& info() const = 0; // valid after open
    virtual Read read(AVPacket& packet) = 0;
    virtual bool seek(Microseconds position) = 0; // to the key picture at or before the position
    virtual void setPaused(bool paused) = 0;      // tells a server that nothing is read for a while

    // Where a time stamp of the track lies, from the start of the source.
    virtual Microseconds position(int track, std::int64_t timeStamp) const = 0;
};

} // namespace tide
