#include "engine/sound/AlsaOutput.h"

#include "engine/sound/Alsa.h"

#include <algorithm>
#include <cmath>

namespace tide {

namespace {

using namespace std::chrono_literals;

constexpr Microseconds kLead = 60ms;         // written ahead of what is heard
constexpr Microseconds kDrift = 30ms;        // between our clock and the device's, before ours is set
constexpr Microseconds kLongestCatchUp = 1s; // a longer stop (suspend) is skipped instead
constexpr Microseconds kRetry = 2s;          // of the default device, while the null device stands in

std::int16_t encode(float sample)
{
    return static_cast<std::int16_t>(std::lrintf(std::clamp(sample, -1.0f, 1.0f) * 32767.0f));
}

} // namespace

AlsaOutput::AlsaOutput(TimePoint now)
{
    open(now);
}

void AlsaOutput::open(TimePoint now)
{
    isFallback_ = !tryOpen("default");
    if (isFallback_)
        fallBack(now);
    head_ = now;
}

void AlsaOutput::fallBack(TimePoint now)
{
    tryOpen("null");
    isFallback_ = true;
    nextRetry_ = now + kRetry;
}

bool AlsaOutput::tryOpen(const char* name)
{
    device_.reset(); // first: it may be the same
    SoundFormat format;
    device_ = openAlsaDevice(name, SoundDirection::Out, format);
    if (device_)
        format_ = format;
    return device_ != nullptr;
}

int AlsaOutput::room(TimePoint now)
{
    if (isFallback_ && now >= nextRetry_)
        open(now);
    followDevice(now);
    if (now - head_ > kLongestCatchUp)
        head_ = now;
    const auto missing = std::chrono::duration_cast<Microseconds>(now + kLead - head_);
    return static_cast<int>(std::max<std::int64_t>(0, missing.count() * format_.rate / 1'000'000));
}

// Null and file devices answer 0 and leave our clock alone.
void AlsaOutput::followDevice(TimePoint now)
{
    snd_pcm_sframes_t delay = 0;
    if (!device_ || snd_pcm_delay(device_.get(), &delay) < 0 || delay <= 0)
        return;
    const TimePoint heard = now + soundLength(delay, format_.rate);
    if (heard - head_ > kDrift || head_ - heard > kDrift)
        head_ = heard;
}

void AlsaOutput::write(const std::vector<float>& samples, TimePoint now)
{
    const auto count = static_cast<std::int64_t>(samples.size()) / format_.channels;
    head_ += soundLength(count, format_.rate);
    if (!device_ || samples.empty())
        return;
    encoded_.resize(samples.size());
    std::transform(samples.begin(), samples.end(), encoded_.begin(), encode);
    const auto written = snd_pcm_writei(device_.get(), encoded_.data(), static_cast<snd_pcm_uframes_t>(count));
    if (written < 0 && written != -EAGAIN)
        recover(static_cast<int>(written), now);
}

void AlsaOutput::recover(int error, TimePoint now)
{
    if (snd_pcm_recover(device_.get(), error, 1) < 0)
        fallBack(now);
    head_ = now;
}

} // namespace tide
