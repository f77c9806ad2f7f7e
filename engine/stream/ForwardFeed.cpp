#include "engine/stream/ForwardFeed.h"

namespace tide {

using namespace std::chrono_literals;

namespace {

constexpr Microseconds kBackJump = 500ms; // time stamps that go back further, or ahead further, have begun anew
constexpr Microseconds kAheadJump = 10s;
constexpr Microseconds kEndTolerance = 2s;
constexpr Microseconds kSoundAhead = 200ms; // how far the voice is ahead of the last picture in the queue
constexpr Microseconds kLookAhead = 1500ms; // how far a file is read ahead in search of the sound
constexpr Microseconds kLiveLookAhead = 400ms;
constexpr std::size_t kMostWaiting = 500; // packets

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
    sound_ = SoundTrack::open(state_, reader_);
    state_.sinks.announce(reader_.info().tracks);
    if (!reader_.info().live && span_.start && *span_.start > Microseconds::zero())
        reader_.seek(*span_.start); // where that fails the pictures before the start are passed over one by one
    return true;
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
    if (PacketPtr copy{av_packet_clone(&packet)})
        pictures_.push_back(std::move(copy));
    return decodeWhatMay();
}

// Where somebody listens, a picture is not shown before its sound has been read: files and cameras send the sound of a
// moment up to a second after the picture.
bool ForwardFeed::decodeWhatMay()
{
    while (!pictures_.empty() && !waitsForSound()) {
        const PacketPtr packet = std::move(pictures_.front());
        pictures_.pop_front();
        video_->send(packet.get());
        if (!showAll())
            return false;
    }
    playSound();
    return true;
}

bool ForwardFeed::waitsForSound() const
{
    const Microseconds limit = reader_.info().live ? kLiveLookAhead : kLookAhead;
    const auto first = stampOf(*pictures_.front());
    const auto last = stampOf(*pictures_.back());
    return sound_ && sound_->isWanted() && first && last && *last - *first < limit && pictures_.size() < kMostWaiting &&
           !sound_->hasReached(*first + kSoundAhead);
}

void ForwardFeed::playSound()
{
    if (sound_ && progress_.position)
        sound_->playUpTo(*progress_.position + kSoundAhead);
}

std::optional<Microseconds> ForwardFeed::stampOf(const AVPacket& packet) const
{
    const std::int64_t stamp = packet.pts != AV_NOPTS_VALUE ? packet.pts : packet.dts;
    return stamp == AV_NOPTS_VALUE ? std::nullopt : std::optional(reader_.position(packet.stream_index, stamp));
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
    if (sound_)
        sound_->restart();
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
    const auto position = stampOf(packet);
    if (!sound_ || !position)
        return true;
    sound_->add(packet);
    if (!video_ || !outlastsPictures(*position))
        return decodeWhatMay();
    const bool inTime = state_.queue.waitUntilDue(*position);
    sound_->playUpTo(*position);
    return inTime;
}

// The queue of pictures paces a file as long as there are any.
bool ForwardFeed::outlastsPictures(Microseconds position) const
{
    return !reader_.info().live && pictures_.empty() && progress_.position &&
           position > *progress_.position + kAheadJump;
}

// A source without pictures: the packets themselves are paced.
bool ForwardFeed::pace(const AVPacket& packet)
{
    const auto position = stampOf(packet);
    if (!position)
        return !state_.guard.isStopped();
    if (span_.start && *position < *span_.start)
        return true;
    reachedStop_ = span_.stop && *position >= *span_.stop;
    if (reachedStop_ || !bridgeJump(*position))
        return false;
    progress_.position = position;
    news_.soundCame();
    return state_.queue.waitUntilDue(*position);
}

Outcome ForwardFeed::finish()
{
    if (video_ && !reachedStop_ && !showRest() && !reachedStop_)
        return Outcome::Stopped;
    if (!isWholeSourceRead())
        return Outcome::Broken;
    return state_.queue.waitUntilTaken() ? Outcome::Ended : Outcome::Stopped;
}

bool ForwardFeed::showRest()
{
    sound_.reset(); // nothing to wait for any more
    if (!decodeWhatMay())
        return false;
    video_->send(nullptr);
    return showAll();
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
