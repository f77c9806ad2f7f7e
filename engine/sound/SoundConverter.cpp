#include "engine/sound/SoundConverter.h"

#include <algorithm>

namespace tide {

namespace {

bool isUsable(const AVFrame& frame)
{
    return frame.nb_samples > 0 && frame.sample_rate > 0 && frame.ch_layout.nb_channels > 0 && frame.format >= 0 &&
           frame.format < AV_SAMPLE_FMT_NB;
}

} // namespace

std::vector<float> SoundConverter::convert(const AVFrame& frame, SoundFormat to, TimePoint& due)
{
    if (!isUsable(frame) || !adaptTo(frame, to))
        return {};
    SwrContext* resampler = resampler_.get();
    due -= std::chrono::nanoseconds(swr_get_delay(resampler, 1'000'000'000));
    const int room = std::max(0, swr_get_out_samples(resampler, frame.nb_samples));
    std::vector<float> out(static_cast<std::size_t>(room) * static_cast<std::size_t>(to.channels));
    auto* target = reinterpret_cast<std::uint8_t*>(out.data());
    const int made =
        swr_convert(resampler, &target, room, const_cast<const std::uint8_t**>(frame.extended_data), frame.nb_samples);
    out.resize(static_cast<std::size_t>(std::max(0, made)) * static_cast<std::size_t>(to.channels));
    return out;
}

bool SoundConverter::adaptTo(const AVFrame& frame, SoundFormat to)
{
    const int channels = frame.ch_layout.nb_channels;
    if (resampler_ && rate_ == frame.sample_rate && channels_ == channels && sampleFormat_ == frame.format && to_ == to)
        return true;
    AVChannelLayout source{}, target{};
    av_channel_layout_default(&source, channels);
    av_channel_layout_default(&target, to.channels);
    SwrContext* made = nullptr;
    swr_alloc_set_opts2(&made, &target, AV_SAMPLE_FMT_FLT, to.rate, &source, static_cast<AVSampleFormat>(frame.format),
                        frame.sample_rate, 0, nullptr);
    resampler_.reset(made);
    // Left to itself the resampler makes a single channel weaker by 3 dB.
    const std::vector<double> everywhere(static_cast<std::size_t>(to.channels), 1.0);
    if (made && channels == 1)
        swr_set_matrix(made, everywhere.data(), 1);
    rate_ = frame.sample_rate;
    channels_ = channels;
    sampleFormat_ = frame.format;
    to_ = to;
    if (made && swr_init(made) >= 0)
        return true;
    resampler_.reset();
    return false;
}

} // namespace tide
