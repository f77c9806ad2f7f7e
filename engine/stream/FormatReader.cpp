#include "engine/stream/FormatReader.h"

#include <cstring>
#include <sys/stat.h>

extern "C" {
#include <libavutil/dict.h>
#include <libavutil/mathematics.h>
#include <libavutil/parseutils.h>
}

namespace tide {

using namespace std::chrono_literals;

namespace {

constexpr Microseconds kOpenTime = 10s;
constexpr Microseconds kSilence = 10s; // a network source that sends nothing for so long is lost
constexpr Microseconds kAnalysis = 1s; // of a network source's packets, before the first is shown
constexpr Microseconds kShortAnalysis = 100ms;

class Options
{
public:
    ~Options() { av_dict_free(&dictionary_); }
    void set(const char* key, const std::string& value) { av_dict_set(&dictionary_, key, value.c_str(), 0); }
    AVDictionary** address() { return &dictionary_; }

private:
    AVDictionary* dictionary_ = nullptr;
};

// What a source of this scheme, and all that it refers to, may be fetched with.
const char* whitelist(Scheme scheme)
{
    switch (scheme) {
    case Scheme::Http:
        return "http,https,tcp,tls,crypto";
    case Scheme::Rtsp:
        return "rtsp,rtsps,rtp,srtp,udp,tcp,tls,http,https";
    default:
        return "file";
    }
}

// A pipe or a device could hold the thread in open() for ever.
bool isRegularFile(const std::string& path)
{
    struct stat status
    {
    };
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool isCover(const AVStream& stream)
{
    return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

// A camera that has described its pictures need not be listened to for long before the first one is shown.
Microseconds analysisTime(const AVFormatContext& demuxer)
{
    for (unsigned i = 0; i < demuxer.nb_streams; ++i) {
        const AVCodecParameters& parameters = *demuxer.streams[i]->codecpar;
        if (parameters.codec_type == AVMEDIA_TYPE_VIDEO && parameters.extradata_size == 0)
            return kAnalysis;
    }
    return kShortAnalysis;
}

std::optional<Microseconds> creationTime(const AVFormatContext& demuxer)
{
    const AVDictionaryEntry* entry = av_dict_get(demuxer.metadata, "creation_time", nullptr, 0);
    std::int64_t time = 0;
    if (!entry || av_parse_time(&time, entry->value, 0) < 0 || time <= 0)
        return std::nullopt;
    return Microseconds(time);
}

} // namespace

FormatReader::FormatReader(Setup setup, ReadGuard& guard)
    : setup_(std::move(setup))
    , guard_(guard)
{
}

std::string FormatReader::url() const
{
    const Address& address = setup_.address;
    if (address.scheme == Scheme::File)
        return "file:" + address.location;
    std::string url = address.location;
    if (wantsHttps(setup_.protocol) && url.compare(0, 5, "http:") == 0)
        url.insert(4, "s");
    if (!setup_.startTime.empty())
        url = withQuery(url, "starttime", setup_.startTime);
    if (!setup_.stopTime.empty())
        url = withQuery(url, "endtime", setup_.stopTime);
    return urlWithCredential(url, setup_.credential.isEmpty() ? address.credential : setup_.credential);
}

MediaReader::Opened FormatReader::open()
{
    if (!isNetwork() && !isRegularFile(setup_.address.location))
        return Opened::No;
    guard_.allow(kOpenTime);
    const int result = openInput();
    if (result == AVERROR_HTTP_UNAUTHORIZED || result == AVERROR_HTTP_FORBIDDEN)
        return Opened::Refused;
    if (result >= 0 && isNetwork())
        demuxer_->max_analyze_duration = analysisTime(*demuxer_).count();
    if (result < 0 || avformat_find_stream_info(demuxer_.get(), nullptr) < 0 || !choose())
        return Opened::No;
    describe();
    return Opened::Yes;
}

int FormatReader::openInput()
{
    Options options;
    options.set("protocol_whitelist", whitelist(setup_.address.scheme));
    if (setup_.address.scheme == Scheme::Rtsp) {
        options.set("rtsp_transport", rtspTransport(setup_.protocol));
        options.set("allowed_media_types", "video+audio");
        options.set("buffer_size", "1048576");
        options.set("fpsprobesize", "0");
        options.set("max_ts_probe", "1"); // a decoding time stamp would be known after seven pictures only
    }
    if (setup_.address.scheme == Scheme::Http && !setup_.credential.header.empty())
        options.set("headers", setup_.credential.header + "\r\n");

    AVFormatContext* demuxer = avformat_alloc_context();
    if (!demuxer)
        return AVERROR(ENOMEM);
    demuxer->interrupt_callback = {&ReadGuard::interrupt, &guard_};
    const int result = avformat_open_input(&demuxer, url().c_str(), nullptr, options.address()); // frees it on failure
    demuxer_.reset(demuxer);
    return result;
}

bool FormatReader::choose()
{
    tracks_.assign(demuxer_->nb_streams, -1);
    for (unsigned i = 0; i < demuxer_->nb_streams; ++i)
        demuxer_->streams[i]->discard = AVDISCARD_ALL;
    info_ = {};
    info_.video = addTrack(AVMEDIA_TYPE_VIDEO);
    info_.audio = addTrack(AVMEDIA_TYPE_AUDIO);
    return !info_.tracks.empty();
}

int FormatReader::addTrack(AVMediaType type)
{
    const int index = av_find_best_stream(demuxer_.get(), type, -1, -1, nullptr, 0);
    if (index < 0 || isCover(*demuxer_->streams[index]))
        return -1;
    AVStream* stream = demuxer_->streams[index];
    stream->discard = AVDISCARD_DEFAULT;
    const auto track = static_cast<int>(info_.tracks.size());
    tracks_[static_cast<std::size_t>(index)] = track;
    info_.tracks.push_back({stream->codecpar, stream->time_base, av_guess_frame_rate(demuxer_.get(), stream, nullptr)});
    return track;
}

void FormatReader::describe()
{
    start_ = demuxer_->start_time == AV_NOPTS_VALUE ? 0 : demuxer_->start_time;
    if (demuxer_->duration > 0)
        info_.duration = Microseconds(demuxer_->duration);
    const bool hasLength = demuxer_->pb && avio_size(demuxer_->pb) > 0;
    info_.live = isNetwork() && !info_.duration && !hasLength;
    info_.wallClockOrigin = creationTime(*demuxer_);
    learnWallClock();
}

// An RTSP server tells the time some seconds after the first pictures.
void FormatReader::learnWallClock()
{
    if (demuxer_->start_time_realtime != AV_NOPTS_VALUE && demuxer_->start_time_realtime > 0)
        info_.wallClockOrigin = Microseconds(demuxer_->start_time_realtime);
}

MediaReader::Read FormatReader::read(AVPacket& packet)
{
    for (;;) {
        guard_.allow(kSilence);
        av_packet_unref(&packet);
        const int result = av_read_frame(demuxer_.get(), &packet);
        if (guard_.hasTripped())
            return Read::Broken;
        if (result == AVERROR(EAGAIN) && guard_.restUntil(Clock::now() + 10ms))
            continue;
        if (result == AVERROR_EOF)
            return Read::End;
        if (result < 0)
            return Read::Broken;
        learnWallClock();
        const auto stream = static_cast<std::size_t>(packet.stream_index);
        if (stream < tracks_.size() && tracks_[stream] >= 0) {
            packet.stream_index = tracks_[stream];
            return Read::Packet;
        }
    }
}

bool FormatReader::seek(Microseconds position)
{
    guard_.allow(kOpenTime);
    const std::int64_t target = position.count() + start_;
    return av_seek_frame(demuxer_.get(), -1, target, AVSEEK_FLAG_BACKWARD) >= 0;
}

void FormatReader::setPaused(bool paused)
{
    if (setup_.address.scheme != Scheme::Rtsp)
        return;
    guard_.allow(kOpenTime);
    paused ? av_read_pause(demuxer_.get()) : av_read_play(demuxer_.get());
}

Microseconds FormatReader::position(int track, std::int64_t timeStamp) const
{
    const AVRational timeBase = info_.tracks[static_cast<std::size_t>(track)].timeBase;
    return Microseconds(av_rescale_q(timeStamp, timeBase, av_get_time_base_q()) - start_);
}

} // namespace tide
