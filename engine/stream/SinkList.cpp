#include "engine/stream/SinkList.h"

#include <algorithm>
#include <utility>

namespace tide {

void SinkList::add(std::shared_ptr<PacketSink> sink)
{
    std::lock_guard lock(mutex_);
    if (!tracks_.empty())
        sink->tracks(infos());
    sinks_.push_back(std::move(sink));
}

void SinkList::remove(const std::shared_ptr<PacketSink>& sink)
{
    std::lock_guard lock(mutex_);
    sinks_.erase(std::remove(sinks_.begin(), sinks_.end(), sink), sinks_.end());
}

void SinkList::announce(const std::vector<TrackInfo>& tracks)
{
    std::lock_guard lock(mutex_);
    tracks_.clear();
    for (const TrackInfo& track : tracks) {
        ParametersPtr copy(track.parameters ? avcodec_parameters_alloc() : nullptr);
        if (copy && avcodec_parameters_copy(copy.get(), track.parameters) >= 0)
            tracks_.push_back({std::move(copy), track.timeBase, track.frameRate});
    }
    for (const auto& sink : sinks_)
        sink->tracks(infos());
}

void SinkList::packet(const AVPacket& packet)
{
    std::lock_guard lock(mutex_);
    if (static_cast<std::size_t>(packet.stream_index) >= tracks_.size())
        return;
    for (const auto& sink : sinks_)
        sink->packet(packet);
}

std::vector<TrackInfo> SinkList::infos() const
{
    std::vector<TrackInfo> infos;
    for (const Track& track : tracks_)
        infos.push_back({track.parameters.get(), track.timeBase, track.frameRate});
    return infos;
}

} // namespace tide
