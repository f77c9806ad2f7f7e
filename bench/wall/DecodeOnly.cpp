#include "bench/wall/Figures.h"
#include "engine/core/Ffmpeg.h"

namespace bench {

namespace {

tide::DemuxerPtr openClip(const QString& path)
{
    AVFormatContext* demuxer = nullptr;
    if (avformat_open_input(&demuxer, path.toLocal8Bit().constData(), nullptr, nullptr) < 0)
        return nullptr;
    return tide::DemuxerPtr(demuxer);
}

tide::CodecPtr openDecoder(const AVCodecParameters& parameters)
{
    const AVCodec* codec = avcodec_find_decoder(parameters.codec_id);
    tide::CodecPtr decoder(avcodec_alloc_context3(codec));
    avcodec_parameters_to_context(decoder.get(), &parameters);
    decoder->thread_count = 1;
    return avcodec_open2(decoder.get(), codec, nullptr) < 0 ? nullptr : std::move(decoder);
}

int framesOf(AVCodecContext& decoder, const AVPacket* packet, AVFrame& frame)
{
    int frames = 0;
    avcodec_send_packet(&decoder, packet);
    while (avcodec_receive_frame(&decoder, &frame) >= 0)
        ++frames;
    return frames;
}

} // namespace

Figures decodeOnly(const QString& clip)
{
    Figures figures;
    const tide::DemuxerPtr demuxer = openClip(clip);
    const tide::CodecPtr decoder = demuxer ? openDecoder(*demuxer->streams[0]->codecpar) : nullptr;
    if (!decoder)
        return figures;
    const tide::PacketPtr packet(av_packet_alloc());
    const tide::FramePtr frame(av_frame_alloc());
    const double before = processCpuSeconds();
    int frames = 0;
    for (; av_read_frame(demuxer.get(), packet.get()) >= 0; av_packet_unref(packet.get()))
        frames += framesOf(*decoder, packet.get(), *frame);
    frames += framesOf(*decoder, nullptr, *frame);
    figures.cpuPerFrame = (processCpuSeconds() - before) * 1000 / frames;
    figures.shownShare = 1;
    figures.threads = threadCount();
    return figures;
}

} // namespace bench
