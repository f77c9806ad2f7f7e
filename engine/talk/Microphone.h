#pragma once

#include "engine/sound/AlsaDevice.h"

#include <cstdint>
#include <vector>

namespace tide {

// ALSA's default device, or silence where that cannot be had. Opened, used and closed by one thread.
class Microphone
{
public:
    explicit Microphone(SoundFormat format);

    // Waits for the next piece of some 40 ms. Devices without a clock of their own are paced by ours.
    std::vector<std::int16_t> read();

private:
    bool openDefault();
    long readDevice(std::vector<std::int16_t>& samples, long frames);

    const SoundFormat format_;
    AlsaDevice device_; // empty: silence
    TimePoint next_;
};

} // namespace tide
