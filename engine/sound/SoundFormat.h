#pragma once

#include "engine/core/Time.h"

#include <cstdint>

namespace tide {

struct SoundFormat
{
    int rate = 48000;
    int channels = 2;
};

inline bool operator==(SoundFormat a, SoundFormat b)
{
    return a.rate == b.rate && a.channels == b.channels;
}

// How long `samples` of one channel sound.
inline Clock::duration soundLength(std::int64_t samples, int rate)
{
    return std::chrono::nanoseconds(samples * 1'000'000'000 / rate);
}

} // namespace tide
