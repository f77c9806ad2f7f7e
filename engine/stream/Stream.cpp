#include "engine/stream/Stream.h"

#include "engine/core/Credential.h"
#include "engine/stream/Address.h"
#include "engine/stream/PatternReader.h"
#include "engine/stream/StreamState.h"
#include "engine/stream/StreamThread.h"
#include "engine/stream/TimeText.h"

#include <system_error>
#include <thread>

namespace tide {

namespace {

constexpr double kSlowest = 1.0 / 8;
constexpr double kFastest = 8.0;

} // namespace

class Stream::Impl
{
public:
    Impl(int id, StreamOptions options, StreamLinks links)
        : state(id, std::move(options), std::move(links))
    {
    }

    void run()
    {
        StreamThread(state).run();
        finished = true;
    }

    StreamState state;
    std::mutex speedMutex; // one change of speed at a time
    std::atomic<bool> finished{false};
    std::thread thread;
};

Failure Stream::check(const StreamOptions& options)
{
    const auto address = parseAddress(options.url);
    const bool good = address && parseCredential(options.auth) && parseStreamTime(options.startTime) &&
                      parseStreamTime(options.stopTime) &&
                      (address->scheme != Scheme::Test || parsePattern(address->location));
    return good ? Failure::None : Failure::BadArgument;
}

Stream::Stream(int id, StreamOptions options, StreamLinks links)
    : impl_(std::make_unique<Impl>(id, std::move(options), std::move(links)))
{
}

Stream::~Stream()
{
    stop();
    if (impl_->thread.joinable())
        impl_->thread.join();
}

bool Stream::start()
{
    try {
        impl_->thread = std::thread(&Impl::run, impl_.get());
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

void Stream::stop()
{
    impl_->state.guard.stop();
    impl_->state.queue.close();
}

Failure Stream::pause()
{
    impl_->state.queue.hold();
    flushSound();
    return Failure::None;
}

Failure Stream::resume()
{
    impl_->state.queue.release();
    return Failure::None;
}

Failure Stream::fast()
{
    return changeSpeed(2.0);
}

Failure Stream::slow()
{
    return changeSpeed(0.5);
}

Failure Stream::changeSpeed(double factor)
{
    if (isLive())
        return Failure::WrongState;
    std::lock_guard lock(impl_->speedMutex);
    const double speed = impl_->state.queue.speed() * factor;
    if (speed < kSlowest || speed > kFastest)
        return Failure::None;
    impl_->state.queue.setSpeed(speed);
    flushSound();
    return Failure::None;
}

Failure Stream::frameForward()
{
    if (impl_->state.ended && impl_->state.queue.isEmpty())
        return Failure::NoPicture;
    impl_->state.queue.step();
    flushSound();
    return Failure::None;
}

void Stream::flushSound()
{
    if (impl_->state.links.voice)
        impl_->state.links.voice->flush();
}

Failure Stream::setReconnectAuth(const std::string& auth)
{
    if (!parseCredential(auth))
        return Failure::BadArgument;
    impl_->state.setAuth(auth);
    impl_->state.guard.rouse();
    return Failure::None;
}

void Stream::setAddition(int type, TP_AdditionFun function, void* user)
{
    impl_->state.additions.set(type, function, user);
}

Failure Stream::setOverlay(int selector, int part, int enable)
{
    return impl_->state.overlays.set(selector, part, enable) ? Failure::None : Failure::BadArgument;
}

int Stream::id() const
{
    return impl_->state.id;
}

const StreamOptions& Stream::options() const
{
    return impl_->state.options;
}

bool Stream::finished() const
{
    return impl_->finished;
}

bool Stream::isLive() const
{
    return impl_->state.live;
}

float Stream::scale() const
{
    return static_cast<float>(impl_->state.queue.speed());
}

std::optional<PictureSize> Stream::pictureSize() const
{
    const PictureSize size = impl_->state.size;
    return size.width > 0 ? std::optional(size) : std::nullopt;
}

std::optional<std::chrono::system_clock::time_point> Stream::pictureTime() const
{
    const PicturePtr picture = current();
    const std::int64_t origin = impl_->state.wallClockOrigin;
    if (!picture || origin == 0)
        return std::nullopt;
    return std::chrono::system_clock::time_point(Microseconds(origin) + picture->position);
}

Microseconds Stream::delay() const
{
    return impl_->state.delay;
}

const std::shared_ptr<Voice>& Stream::voice() const
{
    return impl_->state.links.voice;
}

void Stream::addSink(std::shared_ptr<PacketSink> sink)
{
    impl_->state.sinks.add(std::move(sink));
}

void Stream::removeSink(const std::shared_ptr<PacketSink>& sink)
{
    impl_->state.sinks.remove(sink);
}

TimePoint Stream::nextDue() const
{
    return impl_->state.queue.nextDue();
}

PicturePtr Stream::take(TimePoint now)
{
    return impl_->state.queue.take(now);
}

PicturePtr Stream::current() const
{
    return impl_->state.queue.current();
}

void Stream::setWatched(bool watched)
{
    impl_->state.queue.setWatched(watched);
}

} // namespace tide
