#include "engine/record/Snapshot.h"

#include "engine/core/PixelColours.h"
#include "engine/transfer/PartFile.h"

extern "C" {
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
}

#include <string_view>
#include <utility>

namespace tide {

namespace {

constexpr int kQuality = 2; // 1 is the best that JPEG can do, at twice the size

struct Coding
{
    AVCodecID codec;
    AVPixelFormat scaled; // what the scaler makes
    AVPixelFormat coded;  // how the encoder calls it
};

// As much colour as the picture has.
Coding jpegFor(const AVFrame& picture)
{
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(picture.format));
    const bool isHalvedAcross = format && format->log2_chroma_w > 0;
    const bool isHalvedDown = format && format->log2_chroma_h > 0;
    if (isHalvedDown)
        return {AV_CODEC_ID_MJPEG, AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUVJ420P};
    if (isHalvedAcross)
        return {AV_CODEC_ID_MJPEG, AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUVJ422P};
    return {AV_CODEC_ID_MJPEG, AV_PIX_FMT_YUV444P, AV_PIX_FMT_YUVJ444P};
}

Coding codingOf(const AVFrame& picture, PictureFile kind)
{
    return kind == PictureFile::Jpeg ? jpegFor(picture) : Coding{AV_CODEC_ID_BMP, AV_PIX_FMT_BGR24, AV_PIX_FMT_BGR24};
}

FramePtr makeFrame(int width, int height, AVPixelFormat format)
{
    FramePtr frame(av_frame_alloc());
    if (!frame)
        return nullptr;
    frame->width = width;
    frame->height = height;
    frame->format = format;
    return av_frame_get_buffer(frame.get(), 0) >= 0 ? std::move(frame) : nullptr;
}

// Picture files have the full range, and JPEG means BT.601 whatever the size. A scaler that is told so only after it
// was set up would copy planes of the same format as they are.
ScalerPtr makeScaler(const AVFrame& picture, AVPixelFormat target)
{
    ScalerPtr scaler(sws_alloc_context());
    if (!scaler)
        return nullptr;
    const struct
    {
        const char* name;
        int value;
    } options[] = {{"srcw", picture.width},
                   {"srch", picture.height},
                   {"src_format", plainFormatOf(picture)},
                   {"dstw", picture.width},
                   {"dsth", picture.height},
                   {"dst_format", target},
                   {"src_range", isFullRange(picture)},
                   {"dst_range", 1},
                   {"sws_flags", SWS_BICUBIC | SWS_ACCURATE_RND}};
    for (const auto& option : options)
        av_opt_set_int(scaler.get(), option.name, option.value, 0);
    if (sws_init_context(scaler.get(), nullptr, nullptr) < 0)
        return nullptr;
    sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(colourSpaceOf(picture)), isFullRange(picture) ? 1 : 0,
                             sws_getCoefficients(SWS_CS_ITU601), 1, 0, 1 << 16, 1 << 16);
    return scaler;
}

FramePtr convert(const AVFrame& picture, const Coding& coding)
{
    const ScalerPtr scaler = makeScaler(picture, coding.scaled);
    FramePtr converted = makeFrame(picture.width, picture.height, coding.scaled);
    if (!converted || !scaler)
        return nullptr;
    const int rows = sws_scale(scaler.get(), picture.data, picture.linesize, 0, picture.height, converted->data,
                               converted->linesize);
    converted->format = coding.coded;
    return rows == picture.height ? std::move(converted) : nullptr;
}

PacketPtr encode(const AVFrame& picture, AVCodecID id)
{
    const AVCodec* codec = avcodec_find_encoder(id);
    const CodecPtr encoder(codec ? avcodec_alloc_context3(codec) : nullptr);
    PacketPtr packet(av_packet_alloc());
    if (!encoder || !packet)
        return nullptr;
    encoder->width = picture.width;
    encoder->height = picture.height;
    encoder->pix_fmt = static_cast<AVPixelFormat>(picture.format);
    encoder->color_range = AVCOL_RANGE_JPEG;
    encoder->time_base = {1, 1};
    encoder->flags |= AV_CODEC_FLAG_QSCALE;
    encoder->global_quality = kQuality * FF_QP2LAMBDA;
    const bool isDone = avcodec_open2(encoder.get(), codec, nullptr) >= 0 &&
                        avcodec_send_frame(encoder.get(), &picture) >= 0 &&
                        avcodec_receive_packet(encoder.get(), packet.get()) >= 0;
    return isDone ? std::move(packet) : nullptr;
}

bool writeWhole(const std::string& path, std::string_view bytes)
{
    PartFile file;
    return file.open(path) && file.write(bytes) && file.publish();
}

} // namespace

Failure saveSnapshot(const AVFrame& picture, PictureFile kind, const std::string& path)
{
    const Coding coding = codingOf(picture, kind);
    const FramePtr converted = convert(picture, coding);
    if (!converted)
        return Failure::NoPicture;
    converted->quality = kQuality * FF_QP2LAMBDA;
    const PacketPtr packet = encode(*converted, coding.codec);
    if (!packet)
        return Failure::Internal;
    const std::string_view bytes(reinterpret_cast<const char*>(packet->data), static_cast<std::size_t>(packet->size));
    return writeWhole(path, bytes) ? Failure::None : Failure::WriteFailed;
}

} // namespace tide
