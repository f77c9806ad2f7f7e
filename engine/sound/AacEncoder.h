#pragma once

#include "engine/core/Ffmpeg.h"
#include "engine/sound/SoundFormat.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tide {

// Interleaved floats in, AAC packets out. Used by one thread.
class AacEncoder
{
public:
    using Output = std::function<void(AVPacket& packet)>;

    // `wanted` is brought to the nearest that AAC knows; see format(). A bit rate of 0 is one that suits the format.
    // Null when FFmpeg comes without the encoder.
    static std::unique_ptr<AacEncoder> make(SoundFormat wanted, int bitRate);

    SoundFormat format() const;
    const AVCodecContext& context() const { return *codec_; }

    // Times of the packets are in samples; the first sample that is fed has the time 0.
    void feed(const std::vector<float>& samples, const Output& output);
    void drain(const Output& output); // for good

private:
    AacEncoder() = default;

    bool open(SoundFormat wanted, int bitRate);
    void encodeWaiting(std::size_t smallest, const Output& output);
    FramePtr makeFrame(int count);
    void receive(const Output& output);

    CodecPtr codec_;
    std::vector<float> waiting_; // less than one packet's
    std::int64_t next_ = 0;
};

} // namespace tide
