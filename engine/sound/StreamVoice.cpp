#include "engine/sound/StreamVoice.h"

#include <algorithm>
#include <utility>

namespace tide {

namespace {

using namespace std::chrono_literals;

constexpr Clock::duration kFarthestAhead = 10s; // what is due later has a broken time stamp
constexpr Clock::duration kJitter = 80ms;       // of due times within running sound
constexpr Clock::duration kLongestLatency = 250ms;
constexpr Clock::duration kMargin = 30ms;  // that late sound gets, so that what follows is not late again
constexpr std::size_t kLongestQueue = 512; // chunks: some ten seconds of common codecs
constexpr Clock::duration kCutOff = 10ms;  // from running sound to silence
constexpr float kFadeSeconds = 0.02f;      // from silence to full volume

std::size_t sampleCount(Clock::duration length, SoundFormat format)
{
    const auto frames =
        std::chrono::duration_cast<std::chrono::nanoseconds>(length).count() * format.rate / 1'000'000'000;
    return static_cast<std::size_t>(std::max<std::int64_t>(0, frames)) * static_cast<std::size_t>(format.channels);
}

} // namespace

TimePoint StreamVoice::Chunk::nextDue() const
{
    return due + soundLength(static_cast<std::int64_t>(used) / format.channels, format.rate);
}

TimePoint StreamVoice::Chunk::end() const
{
    return due + soundLength(static_cast<std::int64_t>(samples.size()) / format.channels, format.rate);
}

StreamVoice::StreamVoice(std::shared_ptr<const BusFormat> bus, Sharing sharing)
    : bus_(std::move(bus))
    , sharing_(sharing)
{
}

void StreamVoice::push(const AVFrame& frame, TimePoint due)
{
    if (!isOpen_ || due - Clock::now() > kFarthestAhead)
        return;
    const SoundFormat format = *bus_;
    const std::lock_guard converting(convertMutex_);
    std::vector<float> samples = converter_.convert(frame, format, due);
    if (!samples.empty())
        enqueue({due, format, std::move(samples)});
}

void StreamVoice::enqueue(Chunk chunk)
{
    const std::lock_guard lock(queueMutex_);
    dropSuperseded(chunk.due);
    if (isOpen_ && queue_.size() < kLongestQueue)
        queue_.push_back(std::move(chunk));
}

// The stream has jumped back: what it said before about this time does not hold any more.
void StreamVoice::dropSuperseded(TimePoint due)
{
    while (!queue_.empty() && queue_.back().end() - due > kJitter && queue_.back().due >= due)
        queue_.pop_back();
}

void StreamVoice::flush()
{
    {
        const std::lock_guard converting(convertMutex_);
        converter_.reset();
    }
    const std::lock_guard lock(queueMutex_);
    if (isContinuing_ && !queue_.empty())
        fadeOutQueue();
    else
        queue_.clear();
}

// Sound that is cut off clicks.
void StreamVoice::fadeOutQueue()
{
    queue_.erase(queue_.begin() + 1, queue_.end());
    Chunk& last = queue_.front();
    const std::size_t kept = std::min(last.samples.size() - last.used, sampleCount(kCutOff, last.format));
    last.samples.resize(last.used + kept);
    for (std::size_t i = 0; i < kept; ++i)
        last.samples[last.used + i] *= 1.0f - static_cast<float>(i) / static_cast<float>(kept);
}

void StreamVoice::clear()
{
    const std::lock_guard lock(queueMutex_);
    queue_.clear();
    isContinuing_ = false;
}

bool StreamVoice::mix(std::vector<float>& bus, SoundFormat format, TimePoint head)
{
    fetched_.assign(bus.size(), 0.0f);
    fetch(fetched_, format, head);
    addFaded(bus, fetched_, format);
    const bool isHeard = isOpen_ || gain_ > 0;
    if (!isHeard)
        clear();
    return isHeard;
}

void StreamVoice::fetch(std::vector<float>& out, SoundFormat format, TimePoint head)
{
    const std::lock_guard lock(queueMutex_);
    std::size_t filled = 0;
    while (filled < out.size() && !queue_.empty()) {
        Chunk& chunk = queue_.front();
        if (!(chunk.format == format)) {
            queue_.pop_front();
            continue;
        }
        const TimePoint here = head + soundLength(static_cast<std::int64_t>(filled) / format.channels, format.rate);
        filled += std::min(align(chunk, here), out.size() - filled);
        filled += take(chunk, out, filled);
        if (chunk.used == chunk.samples.size())
            queue_.pop_front();
    }
    isContinuing_ = isContinuing_ && filled == out.size();
}

// How many samples of silence come before the chunk. Sound that runs is left alone within the jitter of its time
// stamps, since every correction is heard. Sound that comes late, as that of a live stream without a buffer does, is
// heard later altogether; where it is too late for that, its beginning is dropped.
std::size_t StreamVoice::align(Chunk& chunk, TimePoint head)
{
    const Clock::duration early = chunk.nextDue() - head;
    const Clock::duration deviation = early + latency_;
    if (isContinuing_ && deviation < kJitter && deviation > -kJitter)
        return 0;
    constexpr auto kNone = Clock::duration::zero();
    if (early >= kNone)
        latency_ = kNone;
    else if (deviation < kNone)
        latency_ = -early <= kLongestLatency ? kMargin - early : kNone;
    chunk.used = std::min(chunk.samples.size(), chunk.used + sampleCount(-early - latency_, chunk.format));
    return sampleCount(early + latency_, chunk.format);
}

std::size_t StreamVoice::take(Chunk& chunk, std::vector<float>& out, std::size_t from)
{
    const std::size_t count = std::min(chunk.samples.size() - chunk.used, out.size() - from);
    std::copy_n(chunk.samples.data() + chunk.used, count, out.data() + from);
    chunk.used += count;
    isContinuing_ = count > 0;
    return count;
}

void StreamVoice::addFaded(std::vector<float>& bus, const std::vector<float>& sound, SoundFormat format)
{
    const float wanted = isOpen_ ? static_cast<float>(volume_) / 65535.0f : 0.0f;
    const float step = 1.0f / (kFadeSeconds * static_cast<float>(format.rate));
    const auto channels = static_cast<std::size_t>(format.channels);
    for (std::size_t i = 0; i < bus.size(); i += channels) {
        gain_ += std::clamp(wanted - gain_, -step, step);
        for (std::size_t channel = 0; channel < channels; ++channel)
            bus[i + channel] += sound[i + channel] * gain_;
    }
}

} // namespace tide
