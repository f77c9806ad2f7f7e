#include "engine/record/SoundTranscoder.h"

#include <algorithm>
#include <utility>

namespace tide {

namespace {

constexpr std::int64_t kJitterPerSecond = 10; // a tenth of a second is no gap yet

CodecPtr openDecoder(const RecordTrack& from)
{
    const AVCodec* codec = avcodec_find_decoder(from.parameters->codec_id);
    CodecPtr decoder(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!decoder || avcodec_parameters_to_context(decoder.get(), from.parameters.get()) < 0)
        return nullptr;
    decoder->pkt_timebase = from.timeBase;
    return avcodec_open2(decoder.get(), codec, nullptr) >= 0 ? std::move(decoder) : nullptr;
}

std::vector<float> silence(std::int64_t samples, SoundFormat format)
{
    return std::vector<float>(static_cast<std::size_t>(samples * format.channels));
}

RecordTrack describe(const RecordTrack& from, const AacEncoder& encoder)
{
    RecordTrack track({from.parameters.get(), {1, encoder.format().rate}, {0, 1}}, from.sourceIndex);
    avcodec_parameters_from_context(track.parameters.get(), &encoder.context());
    return track;
}

} // namespace

std::unique_ptr<SoundTranscoder> SoundTranscoder::make(const RecordTrack& from)
{
    CodecPtr decoder = openDecoder(from);
    const SoundFormat wanted{from.parameters->sample_rate, from.parameters->ch_layout.nb_channels};
    auto encoder = decoder ? AacEncoder::make(wanted, 0) : nullptr;
    if (!encoder)
        return nullptr;
    return std::unique_ptr<SoundTranscoder>(new SoundTranscoder(from, std::move(decoder), std::move(encoder)));
}

SoundTranscoder::SoundTranscoder(const RecordTrack& from, CodecPtr decoder, std::unique_ptr<AacEncoder> encoder)
    : sourceBase_(from.timeBase)
    , decoder_(std::move(decoder))
    , encoder_(std::move(encoder))
    , track_(describe(from, *encoder_))
{
}

void SoundTranscoder::feed(const AVPacket& packet, const Output& output)
{
    if (avcodec_send_packet(decoder_.get(), &packet) < 0)
        return;
    const FramePtr frame(av_frame_alloc());
    while (frame && avcodec_receive_frame(decoder_.get(), frame.get()) >= 0)
        take(*frame, output);
}

void SoundTranscoder::take(const AVFrame& decoded, const Output& output)
{
    const SoundFormat format = encoder_->format();
    TimePoint unused;
    const std::vector<float> samples = converter_.convert(decoded, format, unused);
    const std::int64_t ahead = aheadOf(decoded.best_effort_timestamp);
    const std::int64_t jitter = format.rate / kJitterPerSecond;
    if (ahead < -jitter) // the source's clock is slow: what we have sent is longer than the time that has passed
        return;
    for (std::int64_t gap = ahead > jitter ? ahead : 0; gap > 0; gap -= format.rate)
        send(silence(std::min<std::int64_t>(gap, format.rate), format), output);
    send(samples, output);
}

// Samples between what was sent and the time of what comes now.
std::int64_t SoundTranscoder::aheadOf(std::int64_t timestamp)
{
    if (timestamp == AV_NOPTS_VALUE)
        return 0;
    const std::int64_t time = av_rescale_q(timestamp, sourceBase_, {1, encoder_->format().rate});
    if (origin_ == AV_NOPTS_VALUE)
        origin_ = time;
    return time - origin_ - sent_;
}

void SoundTranscoder::send(const std::vector<float>& samples, const Output& output)
{
    if (origin_ == AV_NOPTS_VALUE)
        return;
    sent_ += static_cast<std::int64_t>(samples.size()) / encoder_->format().channels;
    encoder_->feed(samples, shifted(output));
}

void SoundTranscoder::drain(const Output& output)
{
    if (origin_ != AV_NOPTS_VALUE)
        encoder_->drain(shifted(output));
}

SoundTranscoder::Output SoundTranscoder::shifted(const Output& output) const
{
    return [this, &output](AVPacket& packet) {
        packet.pts += origin_;
        packet.dts += origin_;
        output(packet);
    };
}

} // namespace tide
