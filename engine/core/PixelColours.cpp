#include "engine/core/PixelColours.h"

namespace tide {

// The "J" formats say full range by their name; the scaler wants it said by the range alone.
AVPixelFormat plainFormatOf(const AVFrame& frame)
{
    switch (frame.format) {
    case AV_PIX_FMT_YUVJ420P:
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P:
        return AV_PIX_FMT_YUV444P;
    case AV_PIX_FMT_YUVJ440P:
        return AV_PIX_FMT_YUV440P;
    case AV_PIX_FMT_YUVJ411P:
        return AV_PIX_FMT_YUV411P;
    default:
        return static_cast<AVPixelFormat>(frame.format);
    }
}

bool isFullRange(const AVFrame& frame)
{
    return plainFormatOf(frame) != frame.format || frame.color_range == AVCOL_RANGE_JPEG;
}

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

} // namespace tide
