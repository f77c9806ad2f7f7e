#include "engine/stream/HardwareDevice.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

extern "C" {
#include <libavutil/hwcontext.h>
#include <libavutil/pixdesc.h>
}

namespace tide {

namespace {

struct Candidate
{
    AVHWDeviceType type;
    const char* file;
};

constexpr Candidate kCandidates[] = {
    {AV_HWDEVICE_TYPE_CUDA, "/dev/nvidiactl"},
    {AV_HWDEVICE_TYPE_VAAPI, "/dev/dri/renderD128"},
};

AVBufferRef* find()
{
    const char* wish = std::getenv("TIDE_PIPE_HARDWARE");
    if (wish && std::strcmp(wish, "0") == 0)
        return nullptr;
    for (const Candidate& candidate : kCandidates) {
        AVBufferRef* device = nullptr;
        if (access(candidate.file, R_OK | W_OK) == 0 &&
            av_hwdevice_ctx_create(&device, candidate.type, nullptr, nullptr, 0) >= 0)
            return device;
    }
    return nullptr;
}

bool isOnDevice(AVPixelFormat format)
{
    const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(format);
    return description && (description->flags & AV_PIX_FMT_FLAG_HWACCEL) != 0;
}

// `codec->opaque` holds the device's own format. It stands first only while the decoder can use the device; it comes
// again without it when that fails.
AVPixelFormat chooseFormat(AVCodecContext* codec, const AVPixelFormat* formats)
{
    const auto wanted = static_cast<AVPixelFormat>(reinterpret_cast<std::intptr_t>(codec->opaque));
    for (const AVPixelFormat* format = formats; *format != AV_PIX_FMT_NONE; ++format) {
        if (*format == wanted)
            return wanted;
    }
    while (*formats != AV_PIX_FMT_NONE && isOnDevice(*formats))
        ++formats;
    return *formats;
}

} // namespace

AVBufferRef* hardwareDevice()
{
    static AVBufferRef* const device = find();
    return device;
}

void useHardware(AVCodecContext& codec, AVBufferRef& device)
{
    const AVHWDeviceType type = reinterpret_cast<AVHWDeviceContext*>(device.data)->type;
    for (int i = 0; const AVCodecHWConfig* config = avcodec_get_hw_config(codec.codec, i); ++i) {
        if (config->device_type != type || (config->methods & AV_CODEC_HW_CONFIG_METHOD_HW_DEVICE_CTX) == 0)
            continue;
        codec.opaque = reinterpret_cast<void*>(static_cast<std::intptr_t>(config->pix_fmt));
        codec.get_format = chooseFormat;
        codec.hw_device_ctx = av_buffer_ref(&device);
        return;
    }
}

FramePtr toSystemMemory(FramePtr frame)
{
    if (!frame->hw_frames_ctx)
        return frame;
    FramePtr copy(av_frame_alloc());
    if (!copy || av_hwframe_transfer_data(copy.get(), frame.get(), 0) < 0)
        return nullptr;
    av_frame_copy_props(copy.get(), frame.get());
    return copy;
}

} // namespace tide
