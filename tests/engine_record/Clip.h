#pragma once

#include "engine/core/Ffmpeg.h"
#include "engine/stream/PacketSink.h"
#include "tests/support/Engine.h"

#include <algorithm>
#include <vector>

namespace record_test {

struct Packet
{
    double pts, dts; // seconds
    bool isKey;
    std::vector<std::uint8_t> data;
};

// A media file, read to its end.
class Clip
{
public:
    explicit Clip(const std::string& path)
    {
        AVFormatContext* opened = nullptr;
        if (avformat_open_input(&opened, path.c_str(), nullptr, nullptr) < 0)
            return;
        demuxer_.reset(opened);
        avformat_find_stream_info(opened, nullptr);
        for (tide::PacketPtr packet(av_packet_alloc()); av_read_frame(opened, packet.get()) >= 0;)
            packets_.push_back(std::exchange(packet, tide::PacketPtr(av_packet_alloc())));
    }

    std::vector<Packet> packets(AVMediaType type) const
    {
        const int stream = streamOf(type);
        std::vector<Packet> found;
        for (const auto& packet : packets_) {
            if (packet->stream_index != stream)
                continue;
            const double base = av_q2d(demuxer_->streams[stream]->time_base);
            found.push_back({static_cast<double>(packet->pts) * base,
                             static_cast<double>(packet->dts) * base,
                             (packet->flags & AV_PKT_FLAG_KEY) != 0,
                             {packet->data, packet->data + packet->size}});
        }
        return found;
    }

    const AVCodecParameters* parameters(AVMediaType type) const
    {
        const int stream = streamOf(type);
        return stream < 0 ? nullptr : demuxer_->streams[stream]->codecpar;
    }

    double duration() const { return demuxer_ ? static_cast<double>(demuxer_->duration) / AV_TIME_BASE : 0; }

    // What comes out of the decoder without an error.
    std::vector<tide::FramePtr> frames(AVMediaType type) const
    {
        std::vector<tide::FramePtr> found;
        const int stream = streamOf(type);
        if (stream < 0)
            return found;
        const AVCodec* codec = avcodec_find_decoder(parameters(type)->codec_id);
        const tide::CodecPtr decoder(avcodec_alloc_context3(codec));
        avcodec_parameters_to_context(decoder.get(), parameters(type));
        avcodec_open2(decoder.get(), codec, nullptr);
        const auto decode = [&](const AVPacket* packet) {
            avcodec_send_packet(decoder.get(), packet);
            for (tide::FramePtr frame(av_frame_alloc()); avcodec_receive_frame(decoder.get(), frame.get()) >= 0;) {
                if (frame->decode_error_flags == 0)
                    found.push_back(std::exchange(frame, tide::FramePtr(av_frame_alloc())));
            }
        };
        for (const auto& packet : packets_) {
            if (packet->stream_index == stream)
                decode(packet.get());
        }
        decode(nullptr);
        return found;
    }
    int decodable(AVMediaType type) const { return static_cast<int>(frames(type).size()); }

    // Does what a stream does for its sinks, for the packets from `first` on, as many as `count`.
    void announce(tide::PacketSink& sink) const
    {
        std::vector<tide::TrackInfo> tracks;
        for (unsigned i = 0; i < demuxer_->nb_streams; ++i) {
            const AVStream& stream = *demuxer_->streams[i];
            tracks.push_back({stream.codecpar, stream.time_base, stream.avg_frame_rate});
        }
        sink.tracks(tracks);
    }

    void feed(tide::PacketSink& sink, std::size_t first = 0, std::size_t count = SIZE_MAX) const
    {
        const std::size_t end = first + std::min(count, packets_.size() - first);
        for (std::size_t i = first; i < end; ++i)
            sink.packet(*packets_[i]);
    }

    std::size_t size() const { return packets_.size(); }

private:
    int streamOf(AVMediaType type) const
    {
        return demuxer_ ? av_find_best_stream(demuxer_.get(), type, -1, -1, nullptr, 0) : -1;
    }

    tide::DemuxerPtr demuxer_;
    std::vector<tide::PacketPtr> packets_;
};

} // namespace record_test
