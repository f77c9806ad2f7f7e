#include "engine/present/PlanarPicture.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <cstdint>

namespace tide {

namespace {

const AVPixFmtDescriptor* descriptorOf(const AVFrame& frame)
{
    return av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
}

bool isFullRange(const AVFrame& frame)
{
    switch (frame.format) {
    case AV_PIX_FMT_YUVJ420P:
    case AV_PIX_FMT_YUVJ422P:
    case AV_PIX_FMT_YUVJ444P:
    case AV_PIX_FMT_YUVJ440P:
    case AV_PIX_FMT_YUVJ411P:
        return true;
    default:
        return frame.color_range == AVCOL_RANGE_JPEG;
    }
}

// Pictures that do not say are taken as cameras mean them: high definition is 709, less is 601.
AVColorSpace colourSpaceOf(const AVFrame& frame)
{
    switch (frame.colorspace) {
    case AVCOL_SPC_BT709:
    case AVCOL_SPC_BT470BG:
    case AVCOL_SPC_SMPTE170M:
    case AVCOL_SPC_SMPTE240M:
    case AVCOL_SPC_FCC:
    case AVCOL_SPC_BT2020_NCL:
    case AVCOL_SPC_BT2020_CL:
        return frame.colorspace;
    default:
        return frame.height >= 720 ? AVCOL_SPC_BT709 : AVCOL_SPC_SMPTE170M;
    }
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

bool isRgb(const AVPixFmtDescriptor& descriptor)
{
    return (descriptor.flags & AV_PIX_FMT_FLAG_RGB) != 0 || descriptor.nb_components < 3;
}

// Chroma is kept where the source has more of it than 4:2:0.
AVPixelFormat targetFormat(const AVPixFmtDescriptor& descriptor)
{
    const bool quarter = !isRgb(descriptor) && descriptor.log2_chroma_w >= 1 && descriptor.log2_chroma_h >= 1;
    return quarter ? AV_PIX_FMT_YUV420P : AV_PIX_FMT_YUV444P;
}

} // namespace

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

bool hasInterleavedChroma(const AVFrame& frame)
{
    return frame.format == AV_PIX_FMT_NV12;
}

bool isDrawable(const AVFrame& frame)
{
    const AVPixFmtDescriptor* descriptor = descriptorOf(frame);
    if (descriptor == nullptr || frame.linesize[0] < frame.width)
        return false;
    const int across = chromaPlaneOf(frame).width;
    if (hasInterleavedChroma(frame))
        return frame.linesize[1] >= 2 * across && frame.linesize[1] % 2 == 0;
    constexpr std::uint64_t unfit =
        AV_PIX_FMT_FLAG_RGB | AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_BITSTREAM | AV_PIX_FMT_FLAG_PAL;
    return (descriptor->flags & unfit) == 0 && (descriptor->flags & AV_PIX_FMT_FLAG_PLANAR) != 0 &&
           av_pix_fmt_count_planes(static_cast<AVPixelFormat>(frame.format)) == 3 && descriptor->comp[0].depth == 8 &&
           frame.linesize[1] >= across && frame.linesize[2] >= across;
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

const AVFrame* PictureConverter::convert(const AVFrame& frame)
{
    const auto format = static_cast<AVPixelFormat>(frame.format);
    if (descriptorOf(frame) == nullptr || sws_isSupportedInput(format) == 0 || !prepareTarget(frame))
        return nullptr;
    scaler_.reset(sws_getCachedContext(scaler_.release(), frame.width, frame.height, format, frame.width, frame.height,
                                       static_cast<AVPixelFormat>(target_->format), SWS_BILINEAR, nullptr, nullptr,
                                       nullptr));
    if (!scaler_)
        return nullptr;
    const int* weights = sws_getCoefficients(target_->colorspace);
    const int full = isFullRange(*target_) ? 1 : 0;
    sws_setColorspaceDetails(scaler_.get(), weights, full, weights, full, 0, 1 << 16, 1 << 16);
    const int rows =
        sws_scale(scaler_.get(), frame.data, frame.linesize, 0, frame.height, target_->data, target_->linesize);
    return rows > 0 ? target_.get() : nullptr;
}

bool PictureConverter::prepareTarget(const AVFrame& frame)
{
    const AVPixFmtDescriptor& descriptor = *descriptorOf(frame);
    const AVPixelFormat format = targetFormat(descriptor);
    if (!target_ || target_->width != frame.width || target_->height != frame.height || target_->format != format) {
        target_.reset(av_frame_alloc());
        if (!target_)
            return false;
        target_->width = frame.width;
        target_->height = frame.height;
        target_->format = format;
        if (av_frame_get_buffer(target_.get(), 0) < 0)
            target_.reset();
    }
    if (!target_)
        return false;
    const bool full = isRgb(descriptor) || isFullRange(frame);
    target_->color_range = full ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    target_->colorspace = isRgb(descriptor) ? AVCOL_SPC_SMPTE170M : colourSpaceOf(frame);
    return true;
}

} // namespace tide
