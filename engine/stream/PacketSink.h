#pragma once

#include "engine/core/Ffmpeg.h"

#include <vector>

namespace tide {

// What a recorder has to know of one elementary stream. `parameters` is valid during the call only.
struct TrackInfo
{
    const AVCodecParameters* parameters = nullptr;
    AVRational timeBase{0, 1};
    AVRational frameRate{0, 1};
};

// Gets a copy (a reference) of every packet of a stream, on the demuxing thread, before it is decoded. It must not
// block. Calls never overlap; the first tracks() comes on the thread that attaches the sink when the tracks are known
// by then. `packet.stream_index` is an index into the tracks that were announced last.
class PacketSink
{
public:
    virtual ~PacketSink() = default;
    virtual void tracks(const std::vector<TrackInfo>& tracks) = 0; // at attach, and anew after a reconnect
    virtual void packet(const AVPacket& packet) = 0;
};

} // namespace tide
