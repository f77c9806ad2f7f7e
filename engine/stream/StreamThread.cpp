#include "engine/stream/StreamThread.h"

#include "engine/stream/FormatReader.h"
#include "engine/stream/ForwardFeed.h"
#include "engine/stream/PatternReader.h"
#include "engine/stream/ReverseFeed.h"

#include <algorithm>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tide {

using namespace std::chrono_literals;

namespace {

// Below the render thread, which would starve among many decoders; but not far below the other programs of a busy machine.
constexpr int kNice = 5;
constexpr Microseconds kFirstRest = 500ms;
constexpr Microseconds kLongestRest = 15s;
constexpr int kMaxDoublings = 5;

void lowerPriority()
{
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kNice);
}

StreamTime timeOrNone(const std::string& text)
{
    return parseStreamTime(text).value_or(StreamTime{});
}

// A wall clock time of a source that does not tell its own: `zero` stands for its beginning.
std::optional<Microseconds> positionOf(const StreamTime& time, std::optional<Microseconds> zero)
{
    switch (time.kind) {
    case StreamTime::Kind::FromStart:
        return time.value;
    case StreamTime::Kind::WallClock:
        return zero ? std::optional(std::max(time.value - *zero, Microseconds::zero())) : std::nullopt;
    default:
        return std::nullopt;
    }
}

} // namespace

StreamThread::StreamThread(StreamState& state)
    : state_(state)
    , news_(state)
    , address_(parseAddress(state.options.url))
    , start_(timeOrNone(state.options.startTime))
    , stop_(timeOrNone(state.options.stopTime))
{
    state_.guard.setOnTick([this](TimePoint now) { news_.tick(now); });
}

void StreamThread::run()
{
    pthread_setname_np(pthread_self(), "tide-stream");
    lowerPriority();
    Outcome outcome = playOnce();
    while (outcome == Outcome::Broken && rest())
        outcome = playOnce();
    state_.ended = true;
    if (outcome == Outcome::Ended)
        news_.ended();
    state_.guard.setOnTick({});
}

Outcome StreamThread::playOnce()
{
    const std::unique_ptr<MediaReader> reader = makeReader();
    refused_ = false;
    switch (reader->open()) {
    case MediaReader::Opened::Yes:
        return play(*reader);
    case MediaReader::Opened::Refused:
        refused_ = true;
        break;
    case MediaReader::Opened::No:
        break;
    }
    if (!state_.guard.isStopped())
        refused_ ? news_.refused() : news_.openFailed();
    return Outcome::Broken;
}

Outcome StreamThread::play(MediaReader& reader)
{
    const MediaInfo& info = reader.info();
    state_.live = info.live;
    state_.wallClockOrigin = guessWallClock(info);
    state_.queue.setLive(info.live);
    const bool backward = state_.options.direction == Direction::Backward;
    if (backward && info.live) {
        news_.tell(TP_MESSAGE_NOT_REVERSIBLE);
        return Outcome::Hopeless;
    }
    news_.watch(isNetwork());
    const Outcome outcome = backward ? ReverseFeed(state_, news_, reader, progress_, span(info)).run()
                                     : ForwardFeed(state_, news_, reader, progress_, span(info)).run();
    if (outcome == Outcome::Broken && !isNetwork())
        return state_.queue.waitUntilTaken() ? Outcome::Ended : Outcome::Stopped; // what there is has been shown
    if (outcome == Outcome::Broken)
        news_.lost();
    return outcome;
}

// For a source that does not tell its time: the start time asked for, or when the file was written to the end.
std::int64_t StreamThread::guessWallClock(const MediaInfo& info) const
{
    if (start_.kind == StreamTime::Kind::WallClock)
        return start_.value.count();
    struct stat status
    {
    };
    if (address_->scheme != Scheme::File || stat(address_->location.c_str(), &status) != 0)
        return 0;
    const Microseconds written = std::chrono::seconds(status.st_mtim.tv_sec);
    return (written - info.duration.value_or(Microseconds::zero())).count();
}

bool StreamThread::isNetwork() const
{
    return address_->scheme == Scheme::Http || address_->scheme == Scheme::Rtsp;
}

std::unique_ptr<MediaReader> StreamThread::makeReader() const
{
    if (address_->scheme == Scheme::Test)
        return std::make_unique<PatternReader>(*parsePattern(address_->location), state_.guard);
    FormatReader::Setup setup;
    setup.address = *address_;
    setup.credential = *parseCredential(state_.auth());
    setup.protocol = state_.options.protocol;
    if (asksRecorder()) {
        setup.startTime = start_.kind == StreamTime::Kind::WallClock ? compactUtc(start_.value) : "";
        setup.stopTime = stop_.kind == StreamTime::Kind::WallClock ? compactUtc(stop_.value) : "";
    }
    return std::make_unique<FormatReader>(std::move(setup), state_.guard);
}

// Wall clock times go to an RTSP server, in the way recorders take them, unless the host has put them into the url.
bool StreamThread::asksRecorder() const
{
    return address_->scheme == Scheme::Rtsp && address_->location.find("starttime") == std::string::npos;
}

Span StreamThread::span(const MediaInfo& info) const
{
    Span span;
    if (address_->scheme != Scheme::Rtsp || start_.kind != StreamTime::Kind::WallClock) {
        const auto begin = start_.kind == StreamTime::Kind::WallClock ? start_.value : Microseconds::zero();
        const auto zero = info.wallClockOrigin ? info.wallClockOrigin : std::optional(begin);
        span.start = positionOf(start_, zero);
        span.stop = positionOf(stop_, zero);
    }
    if (!info.live && progress_.position) // after a break: on from the last picture
        (state_.options.direction == Direction::Forward ? span.start : span.stop) = *progress_.position;
    return span;
}

// False when there is no point in trying again.
bool StreamThread::rest()
{
    if (!isNetwork())
        return false;
    attempts_ = progress_.serial == seenSerial_ ? attempts_ + 1 : 0;
    seenSerial_ = progress_.serial;
    if (refused_) // trying again with the same credential would lock the account on many devices
        return state_.guard.rest();
    const Microseconds pause = std::min(kFirstRest * (1 << std::min(attempts_, kMaxDoublings)), kLongestRest);
    return state_.guard.restUntil(Clock::now() + pause);
}

} // namespace tide
