#include "engine/stream/PatternReader.h"

#include "engine/stream/Address.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/mathematics.h>
#include <libavutil/opt.h>
}

namespace tide {

namespace {

constexpr int kSampleRate = 48000;
constexpr int kQuality = 3;
constexpr std::size_t kCounts = 16;
constexpr AVRational kMicroseconds{1, 1000000};

struct Key
{
    const char* name;
    int Pattern::*field;
    int least, most;
};

constexpr Key kKeys[] = {
    {"rate", &Pattern::rate, 1, 120},    {"gop", &Pattern::group, 1, 1000},    {"seconds", &Pattern::seconds, 0, 86400},
    {"sound", &Pattern::tone, 0, 20000}, {"people", &Pattern::people, 0, 100},
};

bool parseNumber(const std::string& text, int least, int most, int& out)
{
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, out);
    return result.ec == std::errc() && result.ptr == end && out >= least && out <= most;
}

bool parseSize(const std::string& text, Pattern& pattern)
{
    const auto cross = text.find('x');
    return cross != std::string::npos && parseNumber(text.substr(0, cross), 48, 4096, pattern.width) &&
           parseNumber(text.substr(cross + 1), 48, 4096, pattern.height) && pattern.width % 2 == 0 &&
           pattern.height % 2 == 0;
}

bool assign(Pattern& pattern, const std::string& name, const std::string& value)
{
    if (name == "size")
        return parseSize(value, pattern);
    for (const Key& key : kKeys) {
        if (name == key.name)
            return parseNumber(value, key.least, key.most, pattern.*key.field);
    }
    return false;
}

PacketPtr makeRecord(std::int64_t number)
{
    std::array<std::uint32_t, kCounts> counts{};
    for (std::size_t i = 0; i < counts.size(); ++i)
        counts[i] = static_cast<std::uint32_t>((number * 37 + static_cast<std::int64_t>(i) * 61) % 1000);
    PacketPtr packet(av_packet_alloc());
    if (!packet || av_new_packet(packet.get(), sizeof(counts)) < 0)
        return nullptr;
    std::memcpy(packet->data, counts.data(), sizeof(counts));
    return packet;
}

} // namespace

std::optional<Pattern> parsePattern(const std::string& query)
{
    Pattern pattern;
    const auto values = parseQuery(query);
    for (const auto& [name, value] : values) {
        if (!assign(pattern, name, value))
            return std::nullopt;
    }
    if (values.count("gop") == 0)
        pattern.group = pattern.rate;
    return pattern;
}

PatternReader::PatternReader(const Pattern& pattern, ReadGuard& guard)
    : pattern_(pattern)
    , guard_(guard)
    , picture_(pattern.width, pattern.height, pattern.rate)
{
}

MediaReader::Opened PatternReader::open()
{
    if (!openVideo() || (pattern_.tone > 0 && !openSound()))
        return Opened::No;
    info_.video = addTrack(*videoCoder_, videoParameters_);
    info_.tracks.back().frameRate = {pattern_.rate, 1};
    if (soundCoder_)
        info_.audio = addTrack(*soundCoder_, soundParameters_);
    if (pattern_.people > 0)
        addDataTrack();
    info_.live = pattern_.seconds == 0;
    if (!info_.live)
        info_.duration = std::chrono::seconds(pattern_.seconds);
    startedAt_ = Clock::now();
    return Opened::Yes;
}

bool PatternReader::openVideo()
{
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_MPEG4);
    videoCoder_.reset(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!videoCoder_)
        return false;
    videoCoder_->width = pattern_.width;
    videoCoder_->height = pattern_.height;
    videoCoder_->pix_fmt = AV_PIX_FMT_YUV420P;
    videoCoder_->time_base = {1, pattern_.rate};
    videoCoder_->framerate = {pattern_.rate, 1};
    videoCoder_->gop_size = pattern_.group;
    videoCoder_->thread_count = 1;
    videoCoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_QSCALE;
    videoCoder_->global_quality = FF_QP2LAMBDA * kQuality;
    av_opt_set(videoCoder_->priv_data, "motion_est", "zero", 0); // most of the picture stands still
    av_opt_set_int(videoCoder_->priv_data, "sc_threshold", 1000000000, 0);
    return avcodec_open2(videoCoder_.get(), codec, nullptr) >= 0;
}

bool PatternReader::openSound()
{
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
    soundCoder_.reset(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!soundCoder_)
        return false;
    soundCoder_->sample_fmt = AV_SAMPLE_FMT_FLTP;
    soundCoder_->sample_rate = kSampleRate;
    soundCoder_->time_base = {1, kSampleRate};
    soundCoder_->bit_rate = 64000;
    soundCoder_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    av_channel_layout_default(&soundCoder_->ch_layout, 1);
    return avcodec_open2(soundCoder_.get(), codec, nullptr) >= 0;
}

int PatternReader::addTrack(const AVCodecContext& codec, ParametersPtr& parameters)
{
    parameters.reset(avcodec_parameters_alloc());
    if (parameters)
        avcodec_parameters_from_context(parameters.get(), &codec);
    info_.tracks.push_back({parameters.get(), codec.time_base, {0, 1}});
    return static_cast<int>(info_.tracks.size()) - 1;
}

void PatternReader::addDataTrack()
{
    info_.tracks.push_back({nullptr, {1, pattern_.people}, {0, 1}});
    info_.data = static_cast<int>(info_.tracks.size()) - 1;
}

MediaReader::Read PatternReader::read(AVPacket& packet)
{
    av_packet_unref(&packet);
    while (ready_.empty()) {
        if (guard_.isStopped())
            return Read::Broken;
        if (pattern_.seconds > 0 && nextPicture_ >= static_cast<std::int64_t>(pattern_.seconds) * pattern_.rate)
            return Read::End;
        if (!waitForRealTime() || !produce())
            return Read::Broken;
    }
    av_packet_move_ref(&packet, ready_.front().get());
    ready_.pop_front();
    return Read::Packet;
}

bool PatternReader::waitForRealTime()
{
    const TimePoint due = startedAt_ + std::chrono::microseconds(nextPicture_ * 1000000 / pattern_.rate);
    while (info_.live && Clock::now() < due) {
        if (!guard_.restUntil(due))
            return false;
    }
    return true;
}

// One picture, and the sound and records that go with it.
bool PatternReader::produce()
{
    const FramePtr frame = picture_.draw(nextPicture_);
    if (!frame)
        return false;
    frame->pts = nextPicture_++;
    const Microseconds until(nextPicture_ * 1000000 / pattern_.rate);
    produceRecords(until);
    return encode(*videoCoder_, frame.get(), info_.video) && produceSound(until);
}

bool PatternReader::produceSound(Microseconds until)
{
    constexpr double kTurn = 2.0 * 3.14159265358979323846;
    while (soundCoder_ && av_rescale_q(nextSample_, soundCoder_->time_base, kMicroseconds) < until.count()) {
        FramePtr frame(av_frame_alloc());
        frame->format = soundCoder_->sample_fmt;
        frame->sample_rate = kSampleRate;
        frame->nb_samples = soundCoder_->frame_size;
        av_channel_layout_copy(&frame->ch_layout, &soundCoder_->ch_layout);
        if (av_frame_get_buffer(frame.get(), 0) < 0)
            return false;
        auto* samples = reinterpret_cast<float*>(frame->data[0]);
        for (int i = 0; i < frame->nb_samples; ++i)
            samples[i] =
                static_cast<float>(0.5 * std::sin(kTurn * pattern_.tone *
                                                  static_cast<double>((nextSample_ + i) % kSampleRate) / kSampleRate));
        frame->pts = nextSample_;
        nextSample_ += frame->nb_samples;
        if (!encode(*soundCoder_, frame.get(), info_.audio))
            return false;
    }
    return true;
}

void PatternReader::produceRecords(Microseconds until)
{
    while (info_.data >= 0 && nextRecord_ * 1000000 / pattern_.people < until.count()) {
        PacketPtr packet = makeRecord(nextRecord_);
        if (!packet)
            return;
        packet->stream_index = info_.data;
        packet->pts = packet->dts = nextRecord_++;
        ready_.push_back(std::move(packet));
    }
}

bool PatternReader::encode(AVCodecContext& codec, AVFrame* frame, int track)
{
    if (avcodec_send_frame(&codec, frame) < 0)
        return false;
    for (;;) {
        PacketPtr packet(av_packet_alloc());
        if (!packet || avcodec_receive_packet(&codec, packet.get()) < 0)
            return packet != nullptr;
        packet->stream_index = track;
        ready_.push_back(std::move(packet));
    }
}

// The coder starts anew, so that a group always begins at a multiple of its length.
bool PatternReader::seek(Microseconds position)
{
    const std::int64_t picture = std::max<std::int64_t>(position.count(), 0) * pattern_.rate / 1000000;
    nextPicture_ = picture - picture % pattern_.group;
    nextSample_ = nextPicture_ * kSampleRate / pattern_.rate;
    nextRecord_ = pattern_.people > 0 ? (nextPicture_ * pattern_.people + pattern_.rate - 1) / pattern_.rate : 0;
    ready_.clear();
    if (soundCoder_ && !openSound())
        return false;
    return openVideo();
}

Microseconds PatternReader::position(int track, std::int64_t timeStamp) const
{
    return Microseconds(av_rescale_q(timeStamp, info_.tracks[static_cast<std::size_t>(track)].timeBase, kMicroseconds));
}

} // namespace tide
