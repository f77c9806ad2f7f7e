#include "tests/engine_present/FakeSource.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace tide {

FramePtr makeFrame(int width, int height, AVPixelFormat format, const Fill& fill)
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

} // namespace tide
