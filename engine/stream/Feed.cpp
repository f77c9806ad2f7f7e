#include "engine/stream/Feed.h"

extern "C" {
#include <libavutil/mathematics.h>
}

namespace tide {

Feed::Feed(StreamState& state, StreamNews& news, MediaReader& reader, Progress& progress, Span span)
    : state_(state)
    , news_(news)
    , reader_(reader)
    , progress_(progress)
    , span_(span)
{
}

bool Feed::openVideo()
{
    const MediaInfo& info = reader_.info();
    if (info.video < 0)
        return false;
    const TrackInfo& track = info.tracks[static_cast<std::size_t>(info.video)];
    if (track.frameRate.num > 0 && track.frameRate.den > 0)
        interval_ = Microseconds(av_rescale(1000000, track.frameRate.den, track.frameRate.num));
    video_ = Decoder::open(*track.parameters, track.timeBase);
    if (!video_)
        news_.tell(TP_MESSAGE_NOT_DECODABLE);
    return video_ != nullptr;
}

Microseconds Feed::positionOf(const AVFrame& frame) const
{
    if (frame.best_effort_timestamp != AV_NOPTS_VALUE)
        return reader_.position(reader_.info().video, frame.best_effort_timestamp);
    return progress_.position ? *progress_.position + interval_ : Microseconds::zero();
}

PicturePtr Feed::makePicture(FramePtr frame, Microseconds position)
{
    auto picture = std::make_shared<Picture>();
    picture->frame = std::move(frame);
    picture->position = position;
    picture->serial = ++progress_.serial;
    return picture;
}

PictureQueue::Pushed Feed::show(FramePtr frame, Microseconds position)
{
    const PictureSize size{frame->width, frame->height};
    progress_.position = position;
    learnWallClock(position);
    const auto pushed = state_.queue.push(makePicture(std::move(frame), position));
    news_.pictureCame(size);
    return pushed;
}

// A live source that does not tell the time is dated by the arrival of its first picture.
void Feed::learnWallClock(Microseconds position)
{
    using std::chrono::system_clock;
    const MediaInfo& info = reader_.info();
    if (info.wallClockOrigin)
        state_.wallClockOrigin = info.wallClockOrigin->count();
    else if (info.live && state_.wallClockOrigin == 0)
        state_.wallClockOrigin =
            std::chrono::duration_cast<Microseconds>(system_clock::now().time_since_epoch() - position).count();
}

} // namespace tide
