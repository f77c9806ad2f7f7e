#include "engine/stream/StreamNews.h"

#include <algorithm>

namespace tide {

using namespace std::chrono_literals;

namespace {

constexpr Microseconds kStandingStill = 3s;
constexpr Microseconds kDelayChange = 500ms; // worth a message
constexpr Microseconds kDelayInterval = 1s;

} // namespace

StreamNews::StreamNews(StreamState& state)
    : state_(state)
{
}

void StreamNews::watch(bool on)
{
    watching_ = on;
    lastCame_ = Clock::now();
}

void StreamNews::tick(TimePoint now)
{
    if (!watching_ || standing_ || now - lastCame_ < kStandingStill)
        return;
    standing_ = true;
    tell(TP_MESSAGE_STANDING_STILL);
}

void StreamNews::pictureCame(PictureSize size)
{
    const PictureSize before = state_.size.exchange(size);
    const bool changed = before.width != size.width || before.height != size.height;
    if (opened_ && changed && before.width > 0)
        tell(TP_MESSAGE_SIZE_CHANGED);
    somethingCame();
}

void StreamNews::soundCame()
{
    somethingCame();
}

void StreamNews::goesOn()
{
    if (opened_)
        somethingCame();
}

void StreamNews::somethingCame()
{
    lastCame_ = Clock::now();
    if (!opened_)
        tell(TP_MESSAGE_OPENED);
    else if (trouble_)
        tell(TP_MESSAGE_RESTORED);
    else if (standing_)
        tell(TP_MESSAGE_MOVING_AGAIN);
    opened_ = true;
    standing_ = false;
    trouble_.reset();
}

void StreamNews::delayed(Microseconds delay, TimePoint now)
{
    state_.delay = delay;
    if (now - delayToldAt_ < kDelayInterval || std::chrono::abs(delay - toldDelay_) < kDelayChange)
        return;
    toldDelay_ = delay;
    delayToldAt_ = now;
    const auto tenths = std::clamp<std::int64_t>(delay / 100ms, 0, TP_MESSAGE_DELAY_MOST - TP_MESSAGE_DELAY);
    tell(static_cast<TP_Message>(TP_MESSAGE_DELAY + tenths));
}

void StreamNews::openFailed()
{
    if (!trouble_)
        fail(TP_MESSAGE_OPEN_FAILED);
}

void StreamNews::refused()
{
    if (trouble_ != TP_MESSAGE_AUTH_FAILED)
        fail(TP_MESSAGE_AUTH_FAILED);
}

void StreamNews::lost()
{
    if (!trouble_)
        fail(TP_MESSAGE_LOST);
}

void StreamNews::ended()
{
    watching_ = false;
    tell(TP_MESSAGE_ENDED);
}

void StreamNews::fail(TP_Message what)
{
    watching_ = false;
    trouble_ = what;
    tell(what);
}

} // namespace tide
