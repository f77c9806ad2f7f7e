#pragma once

#include "engine/sound/SoundFormat.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

typedef struct _snd_pcm snd_pcm_t;

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
    struct Closer
    {
        void operator()(snd_pcm_t* device) const;
    };
    using Device = std::unique_ptr<snd_pcm_t, Closer>;

    void open(TimePoint now);
    void fallBack(TimePoint now);
    bool tryOpen(const char* name);
    bool configure(snd_pcm_t* device);
    void followDevice(TimePoint now);
    void recover(int error, TimePoint now);

    Device device_; // empty where not even the null device exists: the sound is dropped
    bool isFallback_ = false;
    TimePoint nextRetry_;
    SoundFormat format_;
    TimePoint head_;
    std::vector<std::int16_t> encoded_;
};

} // namespace tide
