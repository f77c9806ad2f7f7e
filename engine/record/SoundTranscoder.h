#pragma once

#include "engine/record/RecordTrack.h"
#include "engine/sound/AacEncoder.h"
#include "engine/sound/SoundConverter.h"

#include <cstdint>
#include <memory>

namespace tide {

// Sound that MP4 cannot hold, made into AAC. Gaps are filled with silence. Used by one thread.
class SoundTranscoder
{
public:
    using Output = AacEncoder::Output; // times are in the time base of track()

    // Null for sound that cannot be decoded.
    static std::unique_ptr<SoundTranscoder> make(const RecordTrack& from);

    const RecordTrack& track() const { return track_; }

    void feed(const AVPacket& packet, const Output& output); // with mended times, in the source's time base
    void drain(const Output& output);

private:
    SoundTranscoder(const RecordTrack& from, CodecPtr decoder, std::unique_ptr<AacEncoder> encoder);

    void take(const AVFrame& decoded, const Output& output);
    std::int64_t aheadOf(std::int64_t timestamp);
    void send(const std::vector<float>& samples, const Output& output);
    Output shifted(const Output& output) const;

    const AVRational sourceBase_;
    CodecPtr decoder_;
    std::unique_ptr<AacEncoder> encoder_;
    SoundConverter converter_;
    RecordTrack track_;
    std::int64_t origin_ = AV_NOPTS_VALUE; // time of the first sample, in samples
    std::int64_t sent_ = 0;                // samples, since the origin
};

} // namespace tide
