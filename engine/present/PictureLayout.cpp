#include "engine/present/PictureLayout.h"

#include "engine/core/PixelColours.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <cstdint>

namespace tide {

namespace {

const AVPixFmtDescriptor* descriptorOf(const AVFrame& frame)
{
    return av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
}

struct LumaWeights
{
    float red;
    float blue;
};

LumaWeights weightsOf(AVColorSpace space)
{
    switch (space) {
    case AVCOL_SPC_BT709:
        return {0.2126F, 0.0722F};
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
        return {0.2627F, 0.0593F};
    case AVCOL_SPC_SMPTE240M:
        return {0.212F, 0.087F};
    default:
        return {0.299F, 0.114F};
    }
}

// Where 8 bits a sample lie in three planes, or in two with interleaved chroma.
bool isPlanar(const AVFrame& frame)
{
    const AVPixFmtDescriptor* descriptor = descriptorOf(frame);
    if (descriptor == nullptr || frame.linesize[0] < frame.width)
        return false;
    const int across = chromaPlaneOf(frame).width;
    if (frame.format == AV_PIX_FMT_NV12)
        return frame.linesize[1] >= 2 * across && frame.linesize[1] % 2 == 0;
    constexpr std::uint64_t unfit =
        AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_BITSTREAM | AV_PIX_FMT_FLAG_PAL;
    return (descriptor->flags & unfit) == 0 && (descriptor->flags & AV_PIX_FMT_FLAG_PLANAR) != 0 &&
           av_pix_fmt_count_planes(static_cast<AVPixelFormat>(frame.format)) == 3 && descriptor->comp[0].depth == 8 &&
           frame.linesize[1] >= across && frame.linesize[2] >= across;
}

// From here on packing costs more than a small window's pixels save.
constexpr std::int64_t kMostPixelsToPack = 1920 * 1088;

} // namespace

PictureLayout layoutFor(const AVFrame& frame, bool softwareRenderer)
{
    const bool small = static_cast<std::int64_t>(frame.width) * frame.height <= kMostPixelsToPack;
    if (!isPlanar(frame) || (softwareRenderer && small))
        return PictureLayout::Packed;
    return frame.format == AV_PIX_FMT_NV12 ? PictureLayout::TwoPlanes : PictureLayout::ThreePlanes;
}

ColourMatrix colourMatrixOf(const AVFrame& frame)
{
    const auto [red, blue] = weightsOf(colourSpaceOf(frame));
    const float green = 1.0F - red - blue;
    const bool full = isFullRange(frame);
    const float luma = full ? 1.0F : 255.0F / 219.0F;
    const float chroma = full ? 1.0F : 255.0F / 224.0F;
    const float redness = 2.0F * (1.0F - red) * chroma;
    const float blueness = 2.0F * (1.0F - blue) * chroma;
    ColourMatrix colours;
    colours.matrix = {luma,
                      0.0F,
                      redness, //
                      luma,
                      -blueness * blue / green,
                      -redness * red / green, //
                      luma,
                      blueness,
                      0.0F};
    colours.offset = {full ? 0.0F : 16.0F / 255.0F, 128.0F / 255.0F, 128.0F / 255.0F};
    return colours;
}

ChromaPlane chromaPlaneOf(const AVFrame& frame)
{
    const AVPixFmtDescriptor& descriptor = *descriptorOf(frame);
    ChromaPlane plane;
    plane.width = AV_CEIL_RSHIFT(frame.width, descriptor.log2_chroma_w);
    plane.height = AV_CEIL_RSHIFT(frame.height, descriptor.log2_chroma_h);
    plane.pictureWidth = static_cast<float>(frame.width) / static_cast<float>(plane.width << descriptor.log2_chroma_w);
    plane.pictureHeight =
        static_cast<float>(frame.height) / static_cast<float>(plane.height << descriptor.log2_chroma_h);
    return plane;
}

AVFrame* PackBuffer::atLeast(int width, int height)
{
    if (frame_ && frame_->width >= width && frame_->height >= height)
        return frame_.get();
    const int across = frame_ ? std::max(width, frame_->width) : width;
    const int down = frame_ ? std::max(height, frame_->height) : height;
    frame_.reset(av_frame_alloc());
    if (!frame_)
        return nullptr;
    frame_->width = across;
    frame_->height = down;
    frame_->format = AV_PIX_FMT_RGBA;
    if (av_frame_get_buffer(frame_.get(), 0) < 0)
        frame_.reset();
    return frame_.get();
}

const AVFrame* PicturePacker::pack(const AVFrame& frame, PackBuffer& buffer)
{
    const AVPixelFormat format = plainFormatOf(frame);
    AVFrame* packed = sws_isSupportedInput(format) != 0 ? buffer.atLeast(frame.width, frame.height) : nullptr;
    if (packed == nullptr)
        return nullptr;
    scaler_.reset(sws_getCachedContext(scaler_.release(), frame.width, frame.height, format, frame.width, frame.height,
                                       AV_PIX_FMT_RGBA, SWS_BILINEAR, nullptr, nullptr, nullptr));
    if (!scaler_)
        return nullptr;
    sws_setColorspaceDetails(scaler_.get(), sws_getCoefficients(colourSpaceOf(frame)), isFullRange(frame) ? 1 : 0,
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
    const int rows =
        sws_scale(scaler_.get(), frame.data, frame.linesize, 0, frame.height, packed->data, packed->linesize);
    return rows > 0 ? packed : nullptr;
}

} // namespace tide
