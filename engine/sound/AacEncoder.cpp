#include "engine/sound/AacEncoder.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tide {

namespace {

int nearestRate(const AVCodec& codec, int wanted)
{
    int best = codec.supported_samplerates[0];
    for (const int* rate = codec.supported_samplerates; *rate; ++rate) {
        if (std::abs(*rate - wanted) < std::abs(best - wanted))
            best = *rate;
    }
    return best;
}

int usualBitRate(SoundFormat format)
{
    return format.channels * std::clamp(format.rate * 2, 24000, 80000);
}

} // namespace

std::unique_ptr<AacEncoder> AacEncoder::make(SoundFormat wanted, int bitRate)
{
    std::unique_ptr<AacEncoder> made(new AacEncoder);
    return made->open(wanted, bitRate) ? std::move(made) : nullptr;
}

bool AacEncoder::open(SoundFormat wanted, int bitRate)
{
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
    codec_.reset(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!codec_)
        return false;
    const SoundFormat format{nearestRate(*codec, wanted.rate), std::clamp(wanted.channels, 1, 2)};
    codec_->sample_fmt = AV_SAMPLE_FMT_FLTP;
    codec_->sample_rate = format.rate;
    codec_->time_base = {1, format.rate};
    codec_->bit_rate = bitRate > 0 ? bitRate : usualBitRate(format);
    codec_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    av_channel_layout_default(&codec_->ch_layout, format.channels);
    return avcodec_open2(codec_.get(), codec, nullptr) >= 0;
}

SoundFormat AacEncoder::format() const
{
    return {codec_->sample_rate, codec_->ch_layout.nb_channels};
}

void AacEncoder::feed(const std::vector<float>& samples, const Output& output)
{
    waiting_.insert(waiting_.end(), samples.begin(), samples.end());
    encodeWaiting(static_cast<std::size_t>(codec_->frame_size), output);
}

void AacEncoder::drain(const Output& output)
{
    encodeWaiting(1, output);
    avcodec_send_frame(codec_.get(), nullptr);
    receive(output);
}

void AacEncoder::encodeWaiting(std::size_t smallest, const Output& output)
{
    const auto channels = static_cast<std::size_t>(codec_->ch_layout.nb_channels);
    while (waiting_.size() / channels >= smallest) {
        const std::size_t count = std::min(waiting_.size() / channels, static_cast<std::size_t>(codec_->frame_size));
        const FramePtr frame = makeFrame(static_cast<int>(count));
        waiting_.erase(waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(count * channels));
        if (frame && avcodec_send_frame(codec_.get(), frame.get()) >= 0)
            receive(output);
    }
}

FramePtr AacEncoder::makeFrame(int count)
{
    FramePtr frame(av_frame_alloc());
    if (!frame)
        return nullptr;
    const int channels = codec_->ch_layout.nb_channels;
    frame->format = codec_->sample_fmt;
    frame->sample_rate = codec_->sample_rate;
    frame->nb_samples = count;
    frame->pts = std::exchange(next_, next_ + count);
    av_channel_layout_default(&frame->ch_layout, channels);
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        return nullptr;
    for (int channel = 0; channel < channels; ++channel) {
        auto* plane = reinterpret_cast<float*>(frame->extended_data[channel]);
        for (int i = 0; i < count; ++i)
            plane[i] = waiting_[static_cast<std::size_t>(i * channels + channel)];
    }
    return frame;
}

void AacEncoder::receive(const Output& output)
{
    const PacketPtr packet(av_packet_alloc());
    while (packet && avcodec_receive_packet(codec_.get(), packet.get()) >= 0) {
        output(*packet);
        av_packet_unref(packet.get());
    }
}

} // namespace tide
