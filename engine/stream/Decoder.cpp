#include "engine/stream/Decoder.h"

#include "engine/stream/HardwareDevice.h"

namespace tide {

std::unique_ptr<Decoder> Decoder::open(const AVCodecParameters& parameters, AVRational timeBase)
{
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    CodecPtr context(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!context || avcodec_parameters_to_context(context.get(), &parameters) < 0)
        return nullptr;
    context->pkt_timebase = timeBase;
    context->thread_count = 1; // many streams share the machine: one thread each is enough, and costs least
    if (parameters.codec_type == AVMEDIA_TYPE_VIDEO && hardwareDevice())
        useHardware(*context, *hardwareDevice());
    if (avcodec_open2(context.get(), codec, nullptr) < 0)
        return nullptr;
    return std::unique_ptr<Decoder>(new Decoder(std::move(context)));
}

Decoder::Decoder(CodecPtr codec)
    : codec_(std::move(codec))
{
}

void Decoder::send(const AVPacket* packet)
{
    avcodec_send_packet(codec_.get(), packet);
}

FramePtr Decoder::receive()
{
    FramePtr frame(av_frame_alloc());
    while (frame && avcodec_receive_frame(codec_.get(), frame.get()) >= 0) {
        if (FramePtr picture = toSystemMemory(std::move(frame)))
            return picture;
        frame.reset(av_frame_alloc());
    }
    return nullptr;
}

void Decoder::flush()
{
    avcodec_flush_buffers(codec_.get());
}

void Decoder::setEffort(Effort effort)
{
    static constexpr AVDiscard kDiscard[] = {AVDISCARD_DEFAULT, AVDISCARD_NONREF, AVDISCARD_NONKEY};
    codec_->skip_frame = kDiscard[static_cast<int>(effort)];
}

} // namespace tide
