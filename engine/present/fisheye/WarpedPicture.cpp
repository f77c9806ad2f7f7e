#include "engine/present/fisheye/WarpedPicture.h"

#include "engine/present/PictureLayout.h"

#include <algorithm>
#include <cstdint>

namespace tide {

namespace {

constexpr int kMostPixels = 4096; // a side
constexpr int kBytes = 4;         // a pixel

FramePtr makeFrame(int height, double aspect)
{
    const double scale = std::min(1.0, kMostPixels / (height * std::max(1.0, aspect)));
    FramePtr frame(av_frame_alloc());
    if (!frame)
        return nullptr;
    frame->width = std::max(2, static_cast<int>(std::lround(height * scale * aspect)));
    frame->height = std::max(2, static_cast<int>(std::lround(height * scale)));
    frame->format = AV_PIX_FMT_RGBA;
    return av_frame_get_buffer(frame.get(), 0) >= 0 ? std::move(frame) : nullptr;
}

// The four pixels round a place, by their nearness; a place is counted from the corner of the picture.
void blend(const AVFrame& from, int width, int height, Point place, std::uint8_t* pixel)
{
    const double x = std::clamp(place.x * width - 0.5, 0.0, width - 1.0);
    const double y = std::clamp(place.y * height - 0.5, 0.0, height - 1.0);
    const int left = static_cast<int>(x);
    const int top = static_cast<int>(y);
    const int right = std::min(left + 1, width - 1);
    const int bottom = std::min(top + 1, height - 1);
    const double h = x - left;
    const double v = y - top;
    const std::uint8_t* above = from.data[0] + static_cast<std::ptrdiff_t>(top) * from.linesize[0];
    const std::uint8_t* below = from.data[0] + static_cast<std::ptrdiff_t>(bottom) * from.linesize[0];
    for (int c = 0; c < kBytes; ++c) {
        const double upper = above[left * kBytes + c] * (1 - h) + above[right * kBytes + c] * h;
        const double lower = below[left * kBytes + c] * (1 - h) + below[right * kBytes + c] * h;
        pixel[c] = static_cast<std::uint8_t>(std::lround(upper * (1 - v) + lower * v));
    }
}

} // namespace

FramePtr warpedPicture(const AVFrame& picture, const Warp& warp, const WindowShape& shape)
{
    constexpr std::uint8_t black[kBytes] = {0, 0, 0, 255};
    PackBuffer buffer;
    PicturePacker packer;
    const AVFrame* packed = packer.pack(picture, buffer);
    FramePtr frame = makeFrame(picture.height, shape.aspect());
    if (!packed || !frame)
        return nullptr;
    for (int row = 0; row < frame->height; ++row) {
        std::uint8_t* pixel = frame->data[0] + static_cast<std::ptrdiff_t>(row) * frame->linesize[0];
        for (int column = 0; column < frame->width; ++column, pixel += kBytes) {
            const Point at = shape.part.ofView({(column + 0.5) / frame->width, (row + 0.5) / frame->height});
            if (const auto place = warp.pictureAt(at, picture.width, picture.height))
                blend(*packed, picture.width, picture.height, *place, pixel);
            else
                std::copy_n(black, kBytes, pixel);
        }
    }
    return frame;
}

} // namespace tide
