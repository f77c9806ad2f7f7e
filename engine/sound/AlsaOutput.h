#pragma once

#include "engine/sound/AlsaDevice.h"
#include "engine/sound/SoundFormat.h"

#include <cstdint>
#include <vector>

namespace tide {

// ALSA's default device, or the null device where that cannot be had. The caller paces: it asks how much is due and
// writes that. Null and file devices take everything at once, so the clock is ours; a device with a clock of its own
// corrects it. Not thread-safe: opened, used and closed by one thread.
class AlsaOutput
{
public:
    explicit AlsaOutput(TimePoint now);

    SoundFormat format() const { return format_; }

    // When the next sample that is written will be heard.
    TimePoint head() const { return head_; }

    // How many samples a channel have to be written now to stay ahead of what is heard.
    int room(TimePoint now);

    // Interleaved, -1 to 1; what is beyond is clipped. Never blocks: what a full device refuses is lost.
    void write(const std::vector<float>& samples, TimePoint now);

private:
    void open(TimePoint now);
    void fallBack(TimePoint now);
    bool tryOpen(const char* name);
    void followDevice(TimePoint now);
    void recover(int error, TimePoint now);

    AlsaDevice device_; // empty where not even the null device exists: the sound is dropped
    bool isFallback_ = false;
    TimePoint nextRetry_;
    SoundFormat format_;
    TimePoint head_;
    std::vector<std::int16_t> encoded_;
};

} // namespace tide
