#pragma once

#include "engine/core/Ffmpeg.h"
#include "engine/sound/SoundFormat.h"

#include <vector>

namespace tide {

// Frames of one sound, in any format, to interleaved floats of one format. One user at a time.
class SoundConverter
{
public:
    // Empty when the frame is unusable. `due` becomes that of the first sample that comes out.
    std::vector<float> convert(const AVFrame& frame, SoundFormat to, TimePoint& due);
    void reset() { resampler_.reset(); }

private:
    bool adaptTo(const AVFrame& frame, SoundFormat to);

    ResamplerPtr resampler_;
    int rate_ = 0, channels_ = 0, sampleFormat_ = -1;
    SoundFormat to_;
};

} // namespace tide
