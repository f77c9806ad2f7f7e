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
constexpr Microseconds kWaitsForSource = 20ms;
constexpr Microseconds kWaitsSurely = 500ms;
constexpr Microseconds kKeyInterval = 1s; // how often a picture is made that nobody watches, for snapshots

} // namespace

Outcome ForwardFeed::run()
{
    PacketPtr packet(av_packet_alloc());
    if (!packet || !begin())
        return Outcome::Broken;
    for (;;) {
        const TimePoint askedAt = Clock::now();
        const MediaReader::Read read = reader_.read(*packet);
        if (state_.guard.isStopped())
            return Outcome::Stopped;
        if (read == MediaReader::Read::Broken)
            return Outcome::Broken;
        if (read == MediaReader::Read::End)
            return finish();
        news_.tick(Clock::now());
        measureDelay(*packet, askedAt);
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

// A live stream that decodes too slowly leaves pictures out until it is in time. When it then has to wait for a packet,
// that is the present, whatever the clock says; while it decodes, a short wait may be for the processor.
void ForwardFeed::measureDelay(const AVPacket& packet, TimePoint askedAt)
{
    const auto position = decodingStampOf(packet);
    if (!reader_.info().live || !video_ || packet.stream_index != reader_.info().video || !position)
        return;
    const TimePoint now = Clock::now();
    delay_.came(*position, now);
    if (now - askedAt > (passed_.needsKey() ? kWaitsForSource : kWaitsSurely))
        delay_.takeForPresent();
    else if (delay_.isTooLong(now))
        passed_.giveUp();
    const PicturePtr shown = state_.queue.current();
    if (shown && state_.queue.isWatched() && !state_.queue.isHeld())
        news_.delayed(delay_.behind() + *position - shown->position, now);
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
        PacketPtr packet = std::move(pictures_.front());
        pictures_.pop_front();
        if (!decode(std::move(packet)))
            return false;
    }
    playSound();
    return true;
}

bool ForwardFeed::decode(PacketPtr packet)
{
    const auto position = decodingStampOf(*packet);
    if (position && mayPassOver(*packet))
        return passOver(std::move(packet), *position);
    if (!catchUp())
        return false;
    state_.queue.giveWay();
    video_->send(packet.get());
    return showAll();
}

// The first picture is made in any case: with it the stream counts as open.
bool ForwardFeed::mayPassOver(const AVPacket& packet) const
{
    const bool isUseless = passed_.needsKey() && !isKey(packet);
    return progress_.serial != firstSerial_ && (isUseless || !state_.queue.isWatched());
}

// Goes on in time without decoding. Of the key pictures one a second is made.
bool ForwardFeed::passOver(PacketPtr packet, Microseconds position)
{
    if (span_.stop && position >= *span_.stop) {
        reachedStop_ = catchUp(); // the last picture stays on show
        return false;
    }
    if (!bridgeJump(position))
        return false;
    const Microseconds last = progress_.position.value_or(position);
    const bool isMade = isKey(*packet) && Clock::now() - keyShownAt_ >= kKeyInterval;
    if (isMade && !showAlone(*packet))
        return false;
    passed_.add(std::move(packet));
    progress_.position = position < last - kBackJump ? position : std::max(last, position);
    const bool goesOn = reader_.info().live ? !state_.guard.isStopped()
                                            : restDuring([&] { return state_.queue.passUntilDue(position); });
    if (!state_.queue.isWatched())
        news_.goesOn();
    return goesOn;
}

// Without those that follow, which some decoders wait for.
bool ForwardFeed::showAlone(const AVPacket& packet)
{
    keyShownAt_ = Clock::now();
    video_->flush();
    video_->send(&packet);
    video_->send(nullptr);
    const bool goesOn = showAll();
    video_->flush();
    return goesOn;
}

// Somebody watches again: makes the present picture from what was passed over.
bool ForwardFeed::catchUp()
{
    if (passed_.startsWithKey() || passed_.needsKey())
        video_->flush();
    if (passed_.isEmpty()) {
        passed_.clear();
        return true;
    }
    resumesAt_ = progress_.position;
    for (const PacketPtr& packet : passed_.take()) {
        video_->send(packet.get());
        if (!showAll())
            return false;
    }
    showLatest();
    return true;
}

// A live picture that is held stays.
void ForwardFeed::showLatest()
{
    const bool stays = reader_.info().live && state_.queue.isHeld();
    if (latest_ && !stays) {
        const Microseconds position = positionOf(*latest_);
        state_.queue.replace(makePicture(std::move(latest_), position));
    }
    latest_.reset();
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

// Never goes back, other than the stamps for showing.
std::optional<Microseconds> ForwardFeed::decodingStampOf(const AVPacket& packet) const
{
    return packet.dts != AV_NOPTS_VALUE ? std::optional(reader_.position(packet.stream_index, packet.dts))
                                        : stampOf(packet);
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
    if (resumesAt_ && position < *resumesAt_) {
        latest_ = std::move(frame);
        return true;
    }
    resumesAt_.reset();
    showLatest();
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
    delay_.restart();
    if (sound_)
        sound_->restart();
    return true;
}

bool ForwardFeed::waitForRoom()
{
    if (state_.queue.hasRoom())
        return !state_.guard.isStopped();
    return restDuring([this] { return state_.queue.waitForRoom(); });
}

template <typename Wait> bool ForwardFeed::restDuring(Wait wait)
{
    const bool pauses = state_.queue.isHeld();
    if (pauses)
        reader_.setPaused(true);
    const bool goesOn = wait();
    if (pauses && goesOn)
        reader_.setPaused(false);
    return goesOn;
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
    sound_.reset();                     // nothing to wait for any more
    if (!decodeWhatMay() || !catchUp()) // the last picture stays on show
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
