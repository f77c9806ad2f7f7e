#pragma once

#include "engine/stream/PictureSource.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <atomic>
#include <deque>
#include <functional>
#include <mutex>

namespace tide {

// A picture in memory, filled by a function of plane and place. Lines are longer than the picture, as decoders make
// them.
using Fill = std::function<int(int plane, int x, int y)>;
inline FramePtr makeFrame(int width, int height, AVPixelFormat format, const Fill& fill)
{
    FramePtr frame(av_frame_alloc());
    frame->width = width;
    frame->height = height;
    frame->format = format;
    av_frame_get_buffer(frame.get(), 64);
    const AVPixFmtDescriptor* descriptor = av_pix_fmt_desc_get(format);
    for (int plane = 0; plane < descriptor->nb_components; ++plane) {
        const AVComponentDescriptor& component = descriptor->comp[plane];
        const bool chroma = plane > 0 && (descriptor->flags & AV_PIX_FMT_FLAG_RGB) == 0;
        const int across = chroma ? AV_CEIL_RSHIFT(width, descriptor->log2_chroma_w) : width;
        const int down = chroma ? AV_CEIL_RSHIFT(height, descriptor->log2_chroma_h) : height;
        for (int y = 0; y < down; ++y) {
            for (int x = 0; x < across; ++x) {
                const int value = fill(plane, x, y) << (component.depth - 8);
                uint8_t* place = frame->data[component.plane] + y * frame->linesize[component.plane] +
                                 x * component.step + component.offset;
                place[0] = static_cast<uint8_t>(value);
                if (component.depth > 8)
                    place[1] = static_cast<uint8_t>(value >> 8);
            }
        }
    }
    return frame;
}

inline Fill solid(int first, int second, int third)
{
    return [=](int plane, int, int) { return plane == 0 ? first : plane == 1 ? second : third; };
}

// Gives the pictures that the test put in, each at its time.
class FakeSource : public PictureSource
{
public:
    TimePoint nextDue() const override
    {
        const std::lock_guard lock(mutex_);
        return queue_.empty() ? TimePoint::max() : queue_.front().first;
    }
    PicturePtr take(TimePoint now) override
    {
        const std::lock_guard lock(mutex_);
        PicturePtr newest;
        for (; !queue_.empty() && queue_.front().first <= now; queue_.pop_front()) {
            dropped_ += newest ? 1 : 0;
            newest = queue_.front().second;
        }
        taken_ += newest ? 1 : 0;
        current_ = newest ? newest : current_;
        return newest;
    }
    PicturePtr current() const override
    {
        const std::lock_guard lock(mutex_);
        return current_;
    }
    void setWatched(bool watched) override { watched_ = watched; }

    void put(FramePtr frame, TimePoint due = Clock::now())
    {
        const std::lock_guard lock(mutex_);
        queue_.emplace_back(due, std::make_shared<Picture>(Picture{std::move(frame), {}, ++serial_}));
    }
    bool isWatched() const { return watched_; }
    int taken() const { return taken_; }
    int dropped() const { return dropped_; }

private:
    mutable std::mutex mutex_; // guards the next three
    std::deque<std::pair<TimePoint, PicturePtr>> queue_;
    PicturePtr current_;
    std::uint64_t serial_ = 0;
    std::atomic<int> taken_{0}, dropped_{0};
    std::atomic<bool> watched_{true};
};

} // namespace tide
