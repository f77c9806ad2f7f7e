#include "engine/stream/ReverseFeed.h"

#include <algorithm>

extern "C" {
#include <libavutil/imgutils.h>
}

namespace tide {

using namespace std::chrono_literals;

namespace {

constexpr std::size_t kGroupLimit = 64U << 20; // bytes of decoded pictures
constexpr std::size_t kLeastPictures = 2;
constexpr Microseconds kFarthest =
    std::chrono::hours(1000);           // where the end of a source of unknown length is looked for
constexpr Microseconds kFirstStep = 1s; // back from a place where a seek led too far ahead

std::size_t bytesOf(const AVFrame& frame)
{
    const int size = av_image_get_buffer_size(static_cast<AVPixelFormat>(frame.format), frame.width, frame.height, 1);
    return static_cast<std::size_t>(std::max(size, 0));
}

} // namespace

Outcome ReverseFeed::run()
{
    if (!openVideo())
        return Outcome::Hopeless;
    const Microseconds start = span_.start.value_or(Microseconds::zero());
    Microseconds end = span_.stop.value_or(Microseconds::max());
    while (end > start && decodeGroup(end)) {
        if (!showAll())
            return Outcome::Stopped;
        end = group_.front().first;
        while (!group_.empty() && group_.front().first < start)
            group_.pop_front();
        ready_.swap(group_);
    }
    if (state_.guard.isStopped() || !showAll())
        return Outcome::Stopped;
    if (progress_.serial == 0) {
        news_.tell(TP_MESSAGE_NOT_REVERSIBLE);
        return Outcome::Hopeless;
    }
    return state_.queue.waitUntilTaken() ? Outcome::Ended : Outcome::Stopped;
}

// Fills group_ with the pictures from a key picture up to `end`. False when there is none, or when stopped.
bool ReverseFeed::decodeGroup(Microseconds end)
{
    const Microseconds last = std::min(end, reader_.info().duration.value_or(kFarthest)) - 1us;
    for (Microseconds step{}; step <= last + kFirstStep; step = std::max(step * 2, kFirstStep)) {
        if (state_.guard.isStopped())
            return false;
        if (decodeFrom(std::max(last - step, Microseconds::zero()), end))
            return true;
    }
    return false;
}

bool ReverseFeed::decodeFrom(Microseconds target, Microseconds end)
{
    group_.clear();
    groupBytes_ = 0;
    firstKey_ = Microseconds::max();
    if (!reader_.seek(target))
        return false;
    video_->flush();
    PacketPtr packet(av_packet_alloc());
    while (packet && reader_.read(*packet) == MediaReader::Read::Packet) {
        if (packet->stream_index != reader_.info().video)
            continue;
        const bool isKey = (packet->flags & AV_PKT_FLAG_KEY) != 0 && packet->pts != AV_NOPTS_VALUE;
        if (isKey && firstKey_ == Microseconds::max())
            firstKey_ = reader_.position(packet->stream_index, packet->pts);
        video_->send(packet.get());
        if (collect(end))
            return !group_.empty();
        showWhileRoom();
    }
    video_->send(nullptr);
    collect(end);
    return !group_.empty() && !state_.guard.isStopped();
}

// True when the pictures have reached `end`.
bool ReverseFeed::collect(Microseconds end)
{
    while (FramePtr frame = video_->receive()) {
        if (frame->best_effort_timestamp == AV_NOPTS_VALUE)
            continue;
        const Microseconds position = positionOf(*frame);
        if (position >= end)
            return true;
        if (position >= firstKey_)
            keep(std::move(frame), position);
    }
    return false;
}

void ReverseFeed::keep(FramePtr frame, Microseconds position)
{
    groupBytes_ += bytesOf(*frame);
    group_.emplace_back(position, std::move(frame));
    while (groupBytes_ > kGroupLimit && group_.size() > kLeastPictures) {
        groupBytes_ -= bytesOf(*group_.front().second);
        group_.pop_front();
    }
}

void ReverseFeed::showWhileRoom()
{
    while (!ready_.empty() && state_.queue.hasRoom())
        showLast();
}

bool ReverseFeed::showAll()
{
    while (!ready_.empty()) {
        if (!state_.queue.waitForRoom())
            return false;
        showLast();
    }
    return !state_.guard.isStopped();
}

void ReverseFeed::showLast()
{
    auto [position, frame] = std::move(ready_.back());
    ready_.pop_back();
    show(std::move(frame), position);
}

} // namespace tide
