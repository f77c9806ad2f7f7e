#include "engine/talk/TalkCoder.h"

#include "engine/sound/AacEncoder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace tide {

namespace {

constexpr std::size_t kAdtsHeader = 7;

AVCodecID codecId(TalkCodec codec)
{
    switch (codec) {
    case TalkCodec::ALaw:
        return AV_CODEC_ID_PCM_ALAW;
    case TalkCodec::MuLaw:
        return AV_CODEC_ID_PCM_MULAW;
    case TalkCodec::Aac:
        break;
    }
    return AV_CODEC_ID_AAC;
}

class G711Encoder : public TalkEncoder
{
public:
    explicit G711Encoder(CodecPtr codec)
        : codec_(std::move(codec))
    {
    }

    SoundFormat format() const override { return {codec_->sample_rate, codec_->ch_layout.nb_channels}; }
    std::string encode(const std::vector<std::int16_t>& samples) override;

private:
    CodecPtr codec_;
};

std::string G711Encoder::encode(const std::vector<std::int16_t>& samples)
{
    const FramePtr frame(av_frame_alloc());
    const PacketPtr packet(av_packet_alloc());
    if (!frame || !packet || samples.empty())
        return {};
    frame->format = codec_->sample_fmt;
    frame->sample_rate = codec_->sample_rate;
    frame->nb_samples = static_cast<int>(samples.size()) / codec_->ch_layout.nb_channels;
    av_channel_layout_default(&frame->ch_layout, codec_->ch_layout.nb_channels);
    if (av_frame_get_buffer(frame.get(), 0) < 0)
        return {};
    std::memcpy(frame->data[0], samples.data(), samples.size() * sizeof(samples[0]));
    if (avcodec_send_frame(codec_.get(), frame.get()) < 0 || avcodec_receive_packet(codec_.get(), packet.get()) < 0)
        return {};
    return {reinterpret_cast<const char*>(packet->data), static_cast<std::size_t>(packet->size)};
}

class AdtsEncoder : public TalkEncoder
{
public:
    explicit AdtsEncoder(std::unique_ptr<AacEncoder> encoder)
        : encoder_(std::move(encoder))
    {
    }

    SoundFormat format() const override { return encoder_->format(); }
    std::string encode(const std::vector<std::int16_t>& samples) override;

private:
    std::string header(std::size_t payload) const;

    std::unique_ptr<AacEncoder> encoder_;
};

std::string AdtsEncoder::encode(const std::vector<std::int16_t>& samples)
{
    std::vector<float> scaled(samples.size());
    std::transform(samples.begin(), samples.end(), scaled.begin(),
                   [](std::int16_t sample) { return static_cast<float>(sample) / 32768.0f; });
    std::string bytes;
    encoder_->feed(scaled, [&](const AVPacket& packet) {
        bytes += header(static_cast<std::size_t>(packet.size));
        bytes.append(reinterpret_cast<const char*>(packet.data), static_cast<std::size_t>(packet.size));
    });
    return bytes;
}

// Rate and channels stand in the encoder's own description as they do in the header.
std::string AdtsEncoder::header(std::size_t payload) const
{
    const std::uint8_t* described = encoder_->context().extradata;
    const unsigned rate = (described[0] & 7u) << 1 | described[1] >> 7;
    const unsigned channels = described[1] >> 3 & 15u;
    const auto length = static_cast<unsigned>(payload + kAdtsHeader);
    const std::array<unsigned, kAdtsHeader> bytes{0xFF,
                                                  0xF1, // MPEG-4, no checksum
                                                  1u << 6 | rate << 2 | channels >> 2,
                                                  (channels & 3) << 6 | length >> 11,
                                                  length >> 3 & 0xFF,
                                                  (length & 7) << 5 | 0x1F,
                                                  0xFC};
    std::string text;
    for (const unsigned byte : bytes)
        text += static_cast<char>(byte);
    return text;
}

CodecPtr openG711(const TalkFormat& format)
{
    const AVCodec* codec = avcodec_find_encoder(codecId(format.codec));
    CodecPtr encoder(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!encoder)
        return nullptr;
    encoder->sample_fmt = AV_SAMPLE_FMT_S16;
    encoder->sample_rate = format.sound.rate;
    encoder->time_base = {1, format.sound.rate};
    av_channel_layout_default(&encoder->ch_layout, format.sound.channels);
    return avcodec_open2(encoder.get(), codec, nullptr) >= 0 ? std::move(encoder) : nullptr;
}

} // namespace

std::unique_ptr<TalkEncoder> makeTalkEncoder(const TalkFormat& format)
{
    if (format.codec == TalkCodec::Aac) {
        auto encoder = AacEncoder::make(format.sound, format.bitRate);
        const bool isDescribed = encoder && encoder->context().extradata_size >= 2;
        return isDescribed ? std::make_unique<AdtsEncoder>(std::move(encoder)) : nullptr;
    }
    CodecPtr codec = openG711(format);
    return codec ? std::make_unique<G711Encoder>(std::move(codec)) : nullptr;
}

std::unique_ptr<TalkDecoder> TalkDecoder::make(const TalkFormat& format)
{
    std::unique_ptr<TalkDecoder> made(new TalkDecoder);
    const AVCodec* codec = avcodec_find_decoder(codecId(format.codec));
    made->codec_.reset(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!made->codec_)
        return nullptr;
    if (format.codec == TalkCodec::Aac) {
        made->parser_.reset(av_parser_init(AV_CODEC_ID_AAC));
    } else {
        made->codec_->sample_rate = format.sound.rate;
        av_channel_layout_default(&made->codec_->ch_layout, format.sound.channels);
    }
    const bool isOpen = avcodec_open2(made->codec_.get(), codec, nullptr) >= 0;
    return isOpen && (made->parser_ || format.codec != TalkCodec::Aac) ? std::move(made) : nullptr;
}

void TalkDecoder::decode(std::string_view bytes, const Output& output)
{
    if (parser_) {
        parse(bytes, output);
        return;
    }
    rest_ += bytes;
    const std::size_t whole = rest_.size() - rest_.size() % static_cast<std::size_t>(codec_->ch_layout.nb_channels);
    send(reinterpret_cast<const std::uint8_t*>(rest_.data()), whole, output);
    rest_.erase(0, whole);
}

void TalkDecoder::parse(std::string_view bytes, const Output& output)
{
    std::vector<std::uint8_t> padded(bytes.begin(), bytes.end());
    padded.resize(bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE);
    const std::uint8_t* from = padded.data();
    for (int left = static_cast<int>(bytes.size()); left > 0;) {
        std::uint8_t* found = nullptr;
        int size = 0;
        const int used =
            av_parser_parse2(parser_.get(), codec_.get(), &found, &size, from, left, AV_NOPTS_VALUE, AV_NOPTS_VALUE, 0);
        from += used;
        left -= used;
        if (size > 0)
            send(found, static_cast<std::size_t>(size), output);
        else if (used == 0)
            return;
    }
}

void TalkDecoder::send(const std::uint8_t* data, std::size_t size, const Output& output)
{
    const PacketPtr packet(av_packet_alloc());
    const FramePtr frame(av_frame_alloc());
    if (size == 0 || !packet || !frame || av_new_packet(packet.get(), static_cast<int>(size)) < 0)
        return;
    std::memcpy(packet->data, data, size);
    if (avcodec_send_packet(codec_.get(), packet.get()) < 0)
        return;
    while (avcodec_receive_frame(codec_.get(), frame.get()) >= 0)
        output(*frame);
}

} // namespace tide
