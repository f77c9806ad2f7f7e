#include "engine/record/RecordTrack.h"

extern "C" {
#include <libavcodec/bsf.h>
}

#include <algorithm>
#include <array>
#include <cstring>

namespace tide {

namespace {

struct FilterDeleter
{
    void operator()(AVBSFContext* filter) const { av_bsf_free(&filter); }
};
using FilterPtr = std::unique_ptr<AVBSFContext, FilterDeleter>;

constexpr int kSoundPacket = 1024; // samples, where the codec does not tell

bool setExtradata(AVCodecParameters& parameters, const std::uint8_t* data, std::size_t size)
{
    auto* copy = static_cast<std::uint8_t*>(av_mallocz(size + AV_INPUT_BUFFER_PADDING_SIZE));
    if (!copy)
        return false;
    std::memcpy(copy, data, size);
    parameters.extradata = copy;
    parameters.extradata_size = static_cast<int>(size);
    return true;
}

// What the decoder has to know stands in each packet's ADTS header, and MP4 wants it beforehand.
void describeAac(AVCodecParameters& parameters)
{
    constexpr std::array<int, 13> kRates{96000, 88200, 64000, 48000, 44100, 32000, 24000,
                                         22050, 16000, 12000, 11025, 8000,  7350};
    const bool isParametric = parameters.profile == FF_PROFILE_AAC_HE_V2; // stereo made of one channel
    const bool isDoubled = isParametric || parameters.profile == FF_PROFILE_AAC_HE;
    const int channels = isParametric ? 1 : parameters.ch_layout.nb_channels;
    const auto* rate = std::find(kRates.begin(), kRates.end(), parameters.sample_rate / (isDoubled ? 2 : 1));
    if (rate == kRates.end())
        return;
    const unsigned kind = parameters.profile == FF_PROFILE_AAC_MAIN ? 1 : 2;
    const auto bits =
        kind << 11 | static_cast<unsigned>(rate - kRates.begin()) << 7 | static_cast<unsigned>(channels & 15) << 3;
    const std::array<std::uint8_t, 2> config{static_cast<std::uint8_t>(bits >> 8), static_cast<std::uint8_t>(bits)};
    setExtradata(parameters, config.data(), config.size());
}

bool isStorableSound(const AVCodecParameters& parameters)
{
    switch (parameters.codec_id) {
    case AV_CODEC_ID_AAC:
    case AV_CODEC_ID_MP3:
        return true;
    case AV_CODEC_ID_OPUS:
        return parameters.extradata_size > 0;
    default:
        return false;
    }
}

} // namespace

RecordTrack::RecordTrack(const TrackInfo& info, int index)
    : sourceIndex(index)
    , parameters(avcodec_parameters_alloc())
    , timeBase(info.timeBase)
    , frameRate(info.frameRate)
{
    avcodec_parameters_copy(parameters.get(), info.parameters);
    if (parameters->codec_id == AV_CODEC_ID_AAC && parameters->extradata_size == 0)
        describeAac(*parameters);
}

TrackTimes RecordTrack::times() const
{
    const AVRational packet =
        isVideo() ? av_inv_q(frameRate.num > 0 ? frameRate : AVRational{25, 1})
                  : AVRational{std::max(parameters->frame_size, kSoundPacket), std::max(parameters->sample_rate, 8000)};
    const auto step = std::max<std::int64_t>(1, av_rescale_q(1, packet, timeBase));
    return {timeBase, step, isVideo() ? std::clamp(parameters->video_delay, 0, 16) : 0};
}

std::vector<RecordTrack> chooseTracks(const std::vector<TrackInfo>& tracks)
{
    std::vector<RecordTrack> chosen;
    for (const AVMediaType type : {AVMEDIA_TYPE_VIDEO, AVMEDIA_TYPE_AUDIO}) {
        const auto found = std::find_if(tracks.begin(), tracks.end(),
                                        [&](const TrackInfo& track) { return track.parameters->codec_type == type; });
        if (found != tracks.end())
            chosen.emplace_back(*found, static_cast<int>(found - tracks.begin()));
    }
    return chosen;
}

bool isStorable(const AVCodecParameters& parameters)
{
    if (parameters.codec_type == AVMEDIA_TYPE_AUDIO)
        return isStorableSound(parameters);
    return avformat_query_codec(av_guess_format("mp4", nullptr, nullptr), parameters.codec_id, FF_COMPLIANCE_NORMAL) ==
           1;
}

void completeSetup(AVCodecParameters& parameters, const AVPacket& packet)
{
    if (parameters.extradata_size > 0)
        return;
    const AVBitStreamFilter* kind = av_bsf_get_by_name("extract_extradata");
    AVBSFContext* made = nullptr;
    if (!kind || av_bsf_alloc(kind, &made) < 0)
        return;
    const FilterPtr filter(made);
    PacketPtr copy(av_packet_clone(&packet));
    if (!copy || avcodec_parameters_copy(made->par_in, &parameters) < 0 || av_bsf_init(made) < 0 ||
        av_bsf_send_packet(made, copy.get()) < 0 || av_bsf_receive_packet(made, copy.get()) < 0)
        return;
    std::size_t size = 0;
    const std::uint8_t* found = av_packet_get_side_data(copy.get(), AV_PKT_DATA_NEW_EXTRADATA, &size);
    if (found)
        setExtradata(parameters, found, size);
}

void stripAdts(AVPacket& packet)
{
    if (packet.size < 9 || packet.data[0] != 0xFF || (packet.data[1] & 0xF6) != 0xF0)
        return;
    const int header = packet.data[1] & 1 ? 7 : 9; // the longer one has a checksum
    packet.data += header;
    packet.size -= header;
}

} // namespace tide
