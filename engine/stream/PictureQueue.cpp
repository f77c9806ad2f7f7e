#include "engine/stream/PictureQueue.h"

#include <algorithm>
#include <utility>

namespace tide {

using namespace std::chrono_literals;

namespace {

constexpr Microseconds kLateLimit = 300ms;    // a file that is later than this goes on from here instead of dropping on
constexpr Microseconds kLateTolerance = 10ms; // timer and scheduler noise
constexpr Microseconds kMaxCushion = 120ms;   // what a live picture may wait for smoothness
constexpr Microseconds kLiveBound = 500ms;    // a live picture due later than this from now: the delay has grown
constexpr Microseconds kSoundLead = 200ms;    // sound without pictures is read so much ahead
constexpr Microseconds kMaxInterval = 2s;
constexpr std::size_t kOvershoot = 2; // live pictures past the capacity while the render thread takes the due one
constexpr int kMaxSteps = 100;
constexpr Microseconds kLookAway = 1s; // a window that is hidden for less is served on

} // namespace

PictureQueue::PictureQueue(int capacity, Direction direction, std::function<void()> wake)
    : capacity_(static_cast<std::size_t>(std::max(capacity, 1)))
    , wake_(std::move(wake))
    , clock_(direction)
{
}

bool PictureQueue::hasRoom() const
{
    std::lock_guard lock(mutex_);
    return live_ || waiting_.size() < capacity_;
}

bool PictureQueue::waitForRoom()
{
    std::unique_lock lock(mutex_);
    if (!live_ && waiting_.size() >= capacity_)
        moved_.wait(lock, [this] { return closed_ || live_ || waiting_.size() <= capacity_ / 2; });
    return !closed_;
}

// More pictures would take the processor from the drawing, and the place of those that it has not come to. Half an
// interval at most: decoding still goes on twice as fast as the stream, so that it stays in time where drawing cannot.
void PictureQueue::giveWay()
{
    std::unique_lock lock(mutex_);
    const auto isBehind = [this] { return !closed_ && frontDue() <= Clock::now(); };
    if (!isBehind())
        return;
    givesWay_ = true;
    moved_.wait_for(lock, interval_ / (2 * std::max(clock_.speed(), 1.0)), [&] { return !isBehind(); });
    givesWay_ = false;
}

bool PictureQueue::waitUntilTaken()
{
    std::unique_lock lock(mutex_);
    moved_.wait(lock, [this] { return closed_ || waiting_.empty(); });
    return !closed_;
}

bool PictureQueue::waitUntilDue(Microseconds position)
{
    return waitUntilDue(position, [] { return false; });
}

bool PictureQueue::passUntilDue(Microseconds position)
{
    return waitUntilDue(position, [this] { return isLookedAt(); });
}

template <typename Early> bool PictureQueue::waitUntilDue(Microseconds position, Early early)
{
    std::unique_lock lock(mutex_);
    if (!clock_.isSet())
        begin(position, Clock::now() + kSoundLead);
    while (!closed_) {
        const TimePoint now = Clock::now();
        const TimePoint due = clock_.due(position);
        if (!clock_.isHeld() && (now > due + kLateLimit || (live_ && due > now + kLiveBound)))
            clock_.set(position, now + kSoundLead);
        else if (early() || live_ || (!clock_.isHeld() && due <= now + kSoundLead))
            return true;
        else if (clock_.isHeld())
            moved_.wait(lock);
        else
            moved_.wait_until(lock, due - kSoundLead);
    }
    return false;
}

PictureQueue::Pushed PictureQueue::push(PicturePtr picture)
{
    Pushed result = Pushed::OnTime;
    bool earlier = false;
    {
        std::lock_guard lock(mutex_);
        if (closed_)
            return result;
        if (live_ && clock_.isHeld() && waiting_.size() >= capacity_)
            return result; // what waits is kept for single steps
        const TimePoint now = Clock::now();
        const TimePoint before = frontDue();
        if (isLookedAt())
            learnInterval(picture->position);
        result = live_ ? scheduleLive(picture->position, now) : schedule(picture->position, now);
        waiting_.push_back(std::move(picture));
        if (live_ && !clock_.isHeld())
            makeRoomLive(now);
        earlier = frontDue() < before;
    }
    if (earlier)
        wake_();
    return result;
}

void PictureQueue::restart()
{
    std::lock_guard lock(mutex_);
    waiting_.clear();
    clock_.clear();
    hasLast_ = false;
    moved_.notify_all();
}

void PictureQueue::replace(PicturePtr picture)
{
    {
        std::lock_guard lock(mutex_);
        if (closed_)
            return;
        replacement_ = std::move(picture);
    }
    wake_();
}

void PictureQueue::setLive(bool live)
{
    std::lock_guard lock(mutex_);
    live_ = live;
    moved_.notify_all();
}

void PictureQueue::close()
{
    std::lock_guard lock(mutex_);
    closed_ = true;
    waiting_.clear();
    replacement_.reset();
    moved_.notify_all();
}

void PictureQueue::hold()
{
    std::lock_guard lock(mutex_);
    clock_.hold(Clock::now());
}

void PictureQueue::release()
{
    {
        std::lock_guard lock(mutex_);
        const bool wasHeld = clock_.isHeld();
        clock_.release(Clock::now());
        steps_ = 0;
        if (live_ && wasHeld) { // a live picture goes on with the present
            waiting_.clear();
            clock_.clear();
        }
        moved_.notify_all();
    }
    wake_();
}

void PictureQueue::setSpeed(double speed)
{
    {
        std::lock_guard lock(mutex_);
        clock_.setSpeed(speed, Clock::now());
        moved_.notify_all();
    }
    wake_();
}

void PictureQueue::step()
{
    {
        std::lock_guard lock(mutex_);
        clock_.hold(Clock::now());
        steps_ = std::min(steps_ + 1, kMaxSteps);
        lookedAtUntil_ = Clock::now() + kLookAway;
        moved_.notify_all();
    }
    wake_();
}

void PictureQueue::setWatched(bool watched)
{
    std::lock_guard lock(mutex_);
    if (watched_ && !watched)
        lookedAtUntil_ = Clock::now() + kLookAway;
    if (!watched_ && watched)
        hasLast_ = false; // the pictures before it were far apart
    watched_ = watched;
    moved_.notify_all();
}

bool PictureQueue::isWatched() const
{
    std::lock_guard lock(mutex_);
    return isLookedAt();
}

bool PictureQueue::isLookedAt() const
{
    return watched_ || steps_ > 0 || Clock::now() < lookedAtUntil_;
}

bool PictureQueue::isHeld() const
{
    std::lock_guard lock(mutex_);
    return clock_.isHeld();
}

bool PictureQueue::isEmpty() const
{
    std::lock_guard lock(mutex_);
    return waiting_.empty();
}

double PictureQueue::speed() const
{
    std::lock_guard lock(mutex_);
    return clock_.speed();
}

TimePoint PictureQueue::due(Microseconds position) const
{
    std::lock_guard lock(mutex_);
    return clock_.isHeld() ? TimePoint::max() : clock_.due(position);
}

TimePoint PictureQueue::nextDue() const
{
    std::lock_guard lock(mutex_);
    return frontDue();
}

PicturePtr PictureQueue::take(TimePoint now)
{
    std::lock_guard lock(mutex_);
    PicturePtr picture = replacement_      ? std::exchange(replacement_, nullptr)
                         : clock_.isHeld() ? takeStep()
                                           : takeDue(now);
    if (!picture)
        return nullptr;
    current_ = picture;
    if (givesWay_ || waiting_.size() <= capacity_ / 2)
        moved_.notify_all();
    return picture;
}

PicturePtr PictureQueue::current() const
{
    std::lock_guard lock(mutex_);
    return current_;
}

void PictureQueue::begin(Microseconds position, TimePoint now)
{
    if (clock_.isHeld())
        clock_.standAt(position);
    else
        clock_.set(position, now);
}

PictureQueue::Pushed PictureQueue::schedule(Microseconds position, TimePoint now)
{
    if (!clock_.isSet())
        begin(position, now);
    if (clock_.isHeld())
        return Pushed::OnTime;
    const auto late = now - clock_.due(position);
    if (late > kLateLimit)
        clock_.set(position, now);
    return late > kLateTolerance ? Pushed::Late : Pushed::OnTime;
}

// The first picture is shown at once. From then on the delay is kept near the cushion: it grows at once when a picture
// comes late, and it shrinks slowly, or at once when it has grown past the bound.
PictureQueue::Pushed PictureQueue::scheduleLive(Microseconds position, TimePoint now)
{
    if (!clock_.isSet()) {
        begin(position, now);
        return Pushed::OnTime;
    }
    const TimePoint due = clock_.due(position);
    if (due < now || due > now + kLiveBound)
        clock_.set(position, now + cushion());
    else if (due > now + cushion())
        clock_.set(position, due - interval_ / 20);
    return now - due > kLateTolerance ? Pushed::Late : Pushed::OnTime;
}

void PictureQueue::makeRoomLive(TimePoint now)
{
    if (waiting_.size() <= capacity_)
        return;
    if (waiting_.size() > capacity_ + kOvershoot)
        waiting_.pop_front();
    if (frontDue() > now)
        clock_.set(waiting_.front()->position, now);
}

void PictureQueue::learnInterval(Microseconds position)
{
    const Microseconds gap = std::chrono::abs(position - lastPosition_);
    if (hasLast_ && gap > Microseconds::zero() && gap < kMaxInterval)
        interval_ = (interval_ * 7 + gap) / 8;
    lastPosition_ = position;
    hasLast_ = true;
}

Microseconds PictureQueue::cushion() const
{
    return std::min(interval_ * static_cast<std::int64_t>(capacity_ - 1) / 2, kMaxCushion);
}

TimePoint PictureQueue::frontDue() const
{
    if (replacement_)
        return TimePoint{};
    if (waiting_.empty())
        return TimePoint::max();
    if (clock_.isHeld())
        return steps_ > 0 ? TimePoint{} : TimePoint::max();
    return clock_.due(waiting_.front()->position);
}

PicturePtr PictureQueue::takeDue(TimePoint now)
{
    PicturePtr picture;
    while (!waiting_.empty() && frontDue() <= now) {
        picture = std::move(waiting_.front());
        waiting_.pop_front();
    }
    return picture;
}

PicturePtr PictureQueue::takeStep()
{
    if (steps_ == 0 || waiting_.empty())
        return nullptr;
    PicturePtr picture = std::move(waiting_.front());
    waiting_.pop_front();
    --steps_;
    clock_.standAt(picture->position);
    return picture;
}

} // namespace tide
