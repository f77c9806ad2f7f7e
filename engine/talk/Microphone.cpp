#include "engine/talk/Microphone.h"

#include "engine/sound/Alsa.h"

#include <algorithm>
#include <thread>

namespace tide {

namespace {

using namespace std::chrono_literals;

constexpr Clock::duration kPiece = 40ms;
constexpr Clock::duration kLongestDelay = 200ms; // of the reader, before what was missed is left out
constexpr int kPatience = 100;                   // milliseconds for a device to have sound

} // namespace

Microphone::Microphone(SoundFormat format)
    : format_(format)
    , next_(Clock::now())
{
    openDefault();
}

bool Microphone::openDefault()
{
    SoundFormat agreed = format_;
    device_ = openAlsaDevice("default", SoundDirection::In, agreed);
    if (!(agreed == format_) || (device_ && snd_pcm_start(device_.get()) < 0))
        device_.reset();
    return device_ != nullptr;
}

std::vector<std::int16_t> Microphone::read()
{
    const TimePoint now = Clock::now();
    next_ = now - next_ > kLongestDelay ? now : next_ + kPiece;
    std::this_thread::sleep_until(next_);
    const long frames = format_.rate * static_cast<long>(kPiece / 1ms) / 1000;
    std::vector<std::int16_t> samples(static_cast<std::size_t>(frames * format_.channels));
    const long read = device_ ? readDevice(samples, frames) : frames;
    samples.resize(static_cast<std::size_t>(read * format_.channels));
    return samples;
}

// A device whose clock is slower than ours is waited for; one that is quicker has more and more, which is left out.
long Microphone::readDevice(std::vector<std::int16_t>& samples, long frames)
{
    long read = snd_pcm_readi(device_.get(), samples.data(), static_cast<snd_pcm_uframes_t>(frames));
    if (read == -EAGAIN && snd_pcm_wait(device_.get(), kPatience) > 0)
        read = snd_pcm_readi(device_.get(), samples.data(), static_cast<snd_pcm_uframes_t>(frames));
    if (read >= 0)
        return read;
    if (read != -EAGAIN &&
        (snd_pcm_recover(device_.get(), static_cast<int>(read), 1) < 0 || snd_pcm_start(device_.get()) < 0))
        device_.reset();
    return 0;
}

} // namespace tide
