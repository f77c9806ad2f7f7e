#pragma once

#include "engine/stream/PacketSink.h"

#include <memory>
#include <mutex>
#include <vector>

namespace tide {

// The recorders of one stream. Any thread may add and remove; the stream's thread announces and hands out.
class SinkList
{
public:
    void add(std::shared_ptr<PacketSink> sink);
    void remove(const std::shared_ptr<PacketSink>& sink); // waits for a call of a sink that runs

    void announce(const std::vector<TrackInfo>& tracks); // without those that have no parameters
    void packet(const AVPacket& packet);

private:
    struct Track
    {
        ParametersPtr parameters;
        AVRational timeBase, frameRate;
    };

    std::vector<TrackInfo> infos() const;

    std::mutex mutex_; // guards all below, and is held while a sink is called
    std::vector<std::shared_ptr<PacketSink>> sinks_;
    std::vector<Track> tracks_;
};

} // namespace tide
