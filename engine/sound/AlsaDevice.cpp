#include "engine/sound/AlsaDevice.h"

#include "engine/sound/Alsa.h"

namespace tide {

namespace {

constexpr unsigned kBufferMicroseconds = 200000;

// Standard error belongs to the host. The handler is this thread's own.
void ignoreReport(const char*, int, const char*, int, const char*, va_list) {}

bool configure(snd_pcm_t* device, SoundFormat& format)
{
    snd_pcm_hw_params_t* wanted = nullptr;
    snd_pcm_hw_params_alloca(&wanted);
    auto rate = static_cast<unsigned>(format.rate);
    auto channels = static_cast<unsigned>(format.channels);
    unsigned buffer = kBufferMicroseconds;
    const bool accepted = snd_pcm_hw_params_any(device, wanted) >= 0 &&
                          snd_pcm_hw_params_set_access(device, wanted, SND_PCM_ACCESS_RW_INTERLEAVED) >= 0 &&
                          snd_pcm_hw_params_set_format(device, wanted, SND_PCM_FORMAT_S16) >= 0 &&
                          snd_pcm_hw_params_set_channels_near(device, wanted, &channels) >= 0 &&
                          snd_pcm_hw_params_set_rate_near(device, wanted, &rate, nullptr) >= 0 &&
                          snd_pcm_hw_params_set_buffer_time_near(device, wanted, &buffer, nullptr) >= 0 &&
                          snd_pcm_hw_params(device, wanted) >= 0 && snd_pcm_prepare(device) >= 0;
    if (accepted)
        format = {static_cast<int>(rate), static_cast<int>(channels)};
    return accepted;
}

} // namespace

void AlsaCloser::operator()(snd_pcm_t* device) const
{
    snd_pcm_close(device);
}

AlsaDevice openAlsaDevice(const char* name, SoundDirection direction, SoundFormat& format)
{
    snd_lib_error_set_local(ignoreReport);
    snd_pcm_t* opened = nullptr;
    const auto stream = direction == SoundDirection::Out ? SND_PCM_STREAM_PLAYBACK : SND_PCM_STREAM_CAPTURE;
    if (snd_pcm_open(&opened, name, stream, SND_PCM_NONBLOCK) < 0)
        return nullptr;
    AlsaDevice device(opened);
    return configure(opened, format) ? std::move(device) : nullptr;
}

} // namespace tide
