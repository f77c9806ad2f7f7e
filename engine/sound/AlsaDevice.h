#pragma once

#include "engine/sound/SoundFormat.h"

#include <memory>

typedef struct _snd_pcm snd_pcm_t;

namespace tide {

struct AlsaCloser
{
    void operator()(snd_pcm_t* device) const;
};
using AlsaDevice = std::unique_ptr<snd_pcm_t, AlsaCloser>;

enum class SoundDirection
{
    Out,
    In
};

// Opens without ever blocking, for 16-bit interleaved samples. `format` is what is wanted, and becomes what the device
// agrees to. Empty when the device is missing, busy or not able. ALSA's own complaints are not printed on this thread.
AlsaDevice openAlsaDevice(const char* name, SoundDirection direction, SoundFormat& format);

} // namespace tide
