#pragma once

#include "engine/core/Ffmpeg.h"
#include "engine/stream/PacketSink.h"
#include "tests/support/Engine.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace record_test {

// Runs the ffmpeg tool; `arguments` ends with the file that it makes.
void makeClip(const std::string& arguments);

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
    explicit Clip(const std::string& path);

    std::vector<Packet> packets(AVMediaType type) const;
    const AVCodecParameters* parameters(AVMediaType type) const;
    double duration() const;
    int decodable(AVMediaType type) const; // how many frames come out of the decoder without an error
    tide::FramePtr firstPicture() const;

    // Does what a stream does for its sinks, for the packets from `first` on, as many as `count`.
    void announce(tide::PacketSink& sink) const;
    void feed(tide::PacketSink& sink, std::size_t first = 0, std::size_t count = SIZE_MAX) const;
    std::size_t size() const { return packets_.size(); }

private:
    int streamOf(AVMediaType type) const;
    void decode(AVMediaType type, const std::function<void(const AVFrame&)>& take) const;

    tide::DemuxerPtr demuxer_;
    std::vector<tide::PacketPtr> packets_;
};

} // namespace record_test
