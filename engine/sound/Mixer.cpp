#include "engine/sound/Mixer.h"

#include "engine/sound/AlsaOutput.h"
#include "engine/sound/StreamVoice.h"

#include <pthread.h>

#include <algorithm>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace tide {

namespace {

using namespace std::chrono_literals;

constexpr Microseconds kTick = 20ms;

} // namespace

class Mixer::Impl
{
public:
    ~Impl();

    std::shared_ptr<Voice> makeVoice(Sharing sharing) { return std::make_shared<StreamVoice>(bus_, sharing); }
    bool open(const std::shared_ptr<StreamVoice>& voice);
    void close(StreamVoice& voice);
    void closeAll();

private:
    using Voices = std::vector<std::shared_ptr<StreamVoice>>;

    // mutex_ is held.
    void closeVoices();
    void add(const std::shared_ptr<StreamVoice>& voice);
    bool startThread();

    // Mixer thread.
    void run();
    void play();
    Voices sounding();
    bool mix(AlsaOutput& output);
    void forget(const std::shared_ptr<StreamVoice>& voice);

    const std::shared_ptr<BusFormat> bus_ = std::make_shared<BusFormat>(SoundFormat());

    std::mutex mutex_;                               // guards what follows
    std::vector<std::weak_ptr<StreamVoice>> voices_; // open or fading away; a stream that goes takes its own along
    bool isRunning_ = false;                         // the thread will look at voices_ again before it ends
    bool isEnding_ = false;
    std::thread thread_;
    std::vector<float> sum_; // mixer thread
};

Mixer::Impl::~Impl()
{
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    if (thread_.joinable())
        thread_.join();
}

bool Mixer::Impl::open(const std::shared_ptr<StreamVoice>& voice)
{
    std::thread finished;
    bool isStarted = true;
    {
        const std::lock_guard lock(mutex_);
        if (voice->sharing() == Sharing::Alone)
            closeVoices();
        add(voice);
        if (!isRunning_) {
            finished = std::move(thread_);
            isStarted = startThread();
        }
        voice->setOpen(isStarted);
    }
    if (finished.joinable())
        finished.join();
    return isStarted;
}

void Mixer::Impl::close(StreamVoice& voice)
{
    const std::lock_guard lock(mutex_);
    voice.setOpen(false);
}

void Mixer::Impl::closeAll()
{
    const std::lock_guard lock(mutex_);
    closeVoices();
}

void Mixer::Impl::closeVoices()
{
    for (const auto& entry : voices_) {
        const auto voice = entry.lock();
        if (voice && voice->sharing() == Sharing::Alone)
            voice->setOpen(false);
    }
}

void Mixer::Impl::add(const std::shared_ptr<StreamVoice>& voice)
{
    const bool isKnown =
        std::any_of(voices_.begin(), voices_.end(), [&](const auto& entry) { return entry.lock() == voice; });
    if (!isKnown)
        voices_.push_back(voice);
}

bool Mixer::Impl::startThread()
{
    try {
        thread_ = std::thread([this] { run(); });
        isRunning_ = true;
    } catch (const std::system_error&) {
        voices_.clear();
    }
    return isRunning_;
}

void Mixer::Impl::run()
{
    pthread_setname_np(pthread_self(), "tide-sound");
    for (;;) {
        play();
        const std::lock_guard lock(mutex_);
        isRunning_ = !voices_.empty() && !isEnding_;
        if (!isRunning_)
            return;
    }
}

// The device is closed before the thread says that it has ended, so that the next thread finds it free.
void Mixer::Impl::play()
{
    AlsaOutput output(Clock::now());
    TimePoint next = Clock::now();
    while (mix(output)) {
        next = std::max(next + kTick, Clock::now());
        std::this_thread::sleep_until(next);
    }
}

Mixer::Impl::Voices Mixer::Impl::sounding()
{
    const std::lock_guard lock(mutex_);
    Voices found;
    for (const auto& entry : voices_) {
        if (auto voice = entry.lock())
            found.push_back(std::move(voice));
    }
    voices_.assign(found.begin(), found.end());
    return isEnding_ ? Voices() : found;
}

bool Mixer::Impl::mix(AlsaOutput& output)
{
    const Voices voices = sounding();
    const TimePoint now = Clock::now();
    const int room = output.room(now);
    const SoundFormat format = output.format();
    *bus_ = format;
    sum_.assign(static_cast<std::size_t>(room) * static_cast<std::size_t>(format.channels), 0.0f);
    for (const auto& voice : voices) {
        if (!voice->mix(sum_, format, output.head()))
            forget(voice);
    }
    output.write(sum_, now);
    return !voices.empty();
}

void Mixer::Impl::forget(const std::shared_ptr<StreamVoice>& voice)
{
    const std::lock_guard lock(mutex_);
    if (voice->isOpen())
        return;
    const auto isIt = [&](const auto& entry) { return entry.lock() == voice; };
    voices_.erase(std::remove_if(voices_.begin(), voices_.end(), isIt), voices_.end());
}

Mixer::Mixer()
    : impl_(std::make_unique<Impl>())
{
}

Mixer::~Mixer() = default;

std::shared_ptr<Voice> Mixer::makeVoice(Sharing sharing)
{
    return impl_->makeVoice(sharing);
}

bool Mixer::open(const std::shared_ptr<Voice>& voice)
{
    const auto ours = std::dynamic_pointer_cast<StreamVoice>(voice);
    return ours && impl_->open(ours);
}

void Mixer::close(const std::shared_ptr<Voice>& voice)
{
    if (const auto ours = std::dynamic_pointer_cast<StreamVoice>(voice))
        impl_->close(*ours);
}

void Mixer::closeAll()
{
    impl_->closeAll();
}

} // namespace tide
