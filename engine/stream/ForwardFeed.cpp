#include "engine/stream/ForwardFeed.h"

namespace tide {

using namespace std::chrono_literals;

namespace {

constexpr Microseconds kBackJump = 500ms; // time stamps that go back further, or ahead further, have begun anew
constexpr Microseconds kAheadJump = 10s;
constexpr Microseconds kEndTolerance = 2s;
constexpr Microseconds kSoundReach = 5s; // sound that is due later than this belongs to another run of time stamps

} // namespace

Outcome ForwardFeed::run()
{
    PacketPtr packet(av_packet_alloc());
    if (!packet || !begin())
        return Outcome::Broken;
    for (;;) {
        const MediaReader::Read read = reader_.read(*packet);
        if (state_.guard.isStopped())
            return Outcome::Stopped;
        if (read == MediaReader::Read::Broken)
            return Outcome::Broken;
        if (read == MediaReader::Read::End)
            return finish();
        news_.tick(Clock::now());
        if (!handle(*packet))
            return reachedStop_ ? finish() : Outcome::Stopped;
    }
}

bool ForwardFeed::begin()
{
    openVideo();
    openSound();
    state_.sinks.announce(reader_.info().tracks);
    if (!reader_.info().live && span_.start && *span_.start > Microseconds::zero())
        reader_.seek(*span_.start); // where that fails the pictures before the start are passed over one by one
    return true;
}

void ForwardFeed::openSound()
{
    const MediaInfo& info = reader_.info();
    if (info.audio < 0 || !state_.links.voice)
        return;
    const TrackInfo& track = info.tracks[static_cast<std::size_t>(info.audio)];
    sound_ = Decoder::open(*track.parameters, track.timeBase);
}

bool ForwardFeed::handle(const AVPacket& packet)
{
    const MediaInfo& info = reader_.info();
    if (packet.stream_index == info.data) {
        state_.additions.deliver(*state_.links.notifier, state_.id, Additions::kPeopleCount, packet);
        return true;
    }
    state_.sinks.packet(packet);
    if (!video_ && !pace(packet))
        return false;
    if (packet.stream_index == info.video)
        return handlePicture(packet);
    return handleSound(packet);
}

bool ForwardFeed::handlePicture(const AVPacket& packet)
{
    if (!video_)
        return true;
    video_->send(&packet);
    return showAll();
}

bool ForwardFeed::showAll()
{
    while (FramePtr frame = video_->receive()) {
        if (!showOne(std::move(frame)))
            return false;
    }
    return true;
}

bool ForwardFeed::showOne(FramePtr frame)
{
    const Microseconds position = positionOf(*frame);
    if (span_.start && position < *span_.start)
        return true;
    if (span_.stop && position >= *span_.stop) {
        reachedStop_ = true;
        return false;
    }
    if (!bridgeJump(position) || !waitForRoom())
        return false;
    const auto pushed = show(std::move(frame), position);
    video_->setEffort(effort_.after(pushed, state_.queue.speed(), Clock::now()));
    return true;
}

bool ForwardFeed::bridgeJump(Microseconds position)
{
    const auto last = progress_.position;
    const bool jumps = last && (position < *last - kBackJump || position > *last + kAheadJump);
    if (!jumps)
        return true;
    if (!reader_.info().live && !state_.queue.waitUntilTaken())
        return false;
    state_.queue.restart();
    return true;
}

bool ForwardFeed::waitForRoom()
{
    if (state_.queue.hasRoom())
        return !state_.guard.isStopped();
    const bool pauses = state_.queue.isHeld();
    if (pauses)
        reader_.setPaused(true);
    const bool room = state_.queue.waitForRoom();
    if (pauses && room)
        reader_.setPaused(false);
    return room;
}

bool ForwardFeed::handleSound(const AVPacket& packet)
{
    if (sound_ && state_.links.voice->isOpen()) {
        sound_->send(&packet);
        while (const FramePtr frame = sound_->receive())
            hear(*frame);
    }
    return !outlastsPictures(packet) || state_.queue.waitUntilDue(reader_.position(packet.stream_index, packet.pts));
}

// The queue of pictures paces a file as long as there are any.
bool ForwardFeed::outlastsPictures(const AVPacket& packet) const
{
    return video_ && !reader_.info().live && packet.pts != AV_NOPTS_VALUE && progress_.position &&
           reader_.position(packet.stream_index, packet.pts) > *progress_.position + kAheadJump;
}

void ForwardFeed::hear(const AVFrame& frame)
{
    if (frame.best_effort_timestamp == AV_NOPTS_VALUE || state_.queue.speed() != 1.0)
        return;
    const Microseconds position = reader_.position(reader_.info().audio, frame.best_effort_timestamp);
    const TimePoint due = state_.queue.due(position);
    if (due < Clock::now() + kSoundReach)
        state_.links.voice->push(frame, due);
}

// A source without pictures: the packets themselves are paced.
bool ForwardFeed::pace(const AVPacket& packet)
{
    const std::int64_t stamp = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
    if (stamp == AV_NOPTS_VALUE)
        return !state_.guard.isStopped();
    const Microseconds position = reader_.position(packet.stream_index, stamp);
    if (span_.start && position < *span_.start)
        return true;
    reachedStop_ = span_.stop && position >= *span_.stop;
    if (reachedStop_ || !bridgeJump(position))
        return false;
    progress_.position = position;
    news_.soundCame();
    return state_.queue.waitUntilDue(position);
}

Outcome ForwardFeed::finish()
{
    if (video_ && !reachedStop_) {
        video_->send(nullptr);
        if (!showAll() && !reachedStop_)
            return Outcome::Stopped;
    }
    if (!isWholeSourceRead())
        return Outcome::Broken;
    return state_.queue.waitUntilTaken() ? Outcome::Ended : Outcome::Stopped;
}

// A server that goes away looks like the end of the stream.
bool ForwardFeed::isWholeSourceRead() const
{
    const MediaInfo& info = reader_.info();
    if (reachedStop_ || (!info.live && !info.duration))
        return true;
    const bool nearEnd =
        !info.live && progress_.position.value_or(Microseconds::zero()) >= *info.duration - kEndTolerance;
    return nearEnd || (!info.live && progress_.serial == firstSerial_); // asked again in vain: the duration was wrong
}

} // namespace tide
