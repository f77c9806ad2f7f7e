#include "engine/record/Mp4File.h"

extern "C" {
#include <libavutil/intreadwrite.h>
}

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace tide {

namespace {

constexpr int kBufferSize = 256 * 1024;
constexpr std::int64_t kLongestFragment = 5'000'000; // microseconds; of a source that hardly ever sends key frames
constexpr AVRational kMillisecond{1, 1000};
constexpr AVRational kNanosecond{1, 1'000'000'000};

// frag_discont keeps the time at which a track begins; the others are what the file is made of.
constexpr const char* kFlags = "frag_keyframe+empty_moov+default_base_moof+frag_discont";

bool isFragmentStart(AVIODataMarkerType type)
{
    return type == AVIO_DATA_MARKER_SYNC_POINT || type == AVIO_DATA_MARKER_BOUNDARY_POINT ||
           type == AVIO_DATA_MARKER_TRAILER;
}

} // namespace

Mp4File::Mp4File(std::unique_ptr<DiskFile> disk)
    : disk_(std::move(disk))
{
}

Mp4File::~Mp4File()
{
    release();
    cutBroken();
}

bool Mp4File::begin(const std::vector<const RecordTrack*>& tracks, std::chrono::nanoseconds start)
{
    if (!allocate())
        return false;
    for (const RecordTrack* track : tracks) {
        if (!addTrack(*track))
            return false;
        bases_.push_back(track->timeBase);
        starts_.push_back(av_rescale_q(start.count(), kNanosecond, track->timeBase));
    }
    AVDictionary* options = nullptr;
    av_dict_set(&options, "movflags", kFlags, 0);
    av_dict_set(&options, "use_editlist", "0", 0);
    av_dict_set_int(&options, "frag_duration", kLongestFragment, 0);
    const bool isWritten = avformat_write_header(muxer_, &options) >= 0;
    av_dict_free(&options);
    return isWritten && !isBroken_;
}

bool Mp4File::allocate()
{
    avformat_alloc_output_context2(&muxer_, nullptr, "mp4", nullptr);
    auto* buffer = static_cast<std::uint8_t*>(av_malloc(kBufferSize));
    if (!muxer_ || !buffer) {
        av_free(buffer);
        return false;
    }
    muxer_->pb = avio_alloc_context(buffer, kBufferSize, 1, this, nullptr, nullptr, nullptr);
    if (!muxer_->pb) {
        av_free(buffer);
        return false;
    }
    muxer_->pb->write_data_type = onData;
    muxer_->pb->seekable = 0;
    muxer_->avoid_negative_ts = AVFMT_AVOID_NEG_TS_DISABLED;
    return true;
}

bool Mp4File::addTrack(const RecordTrack& track)
{
    AVStream* stream = avformat_new_stream(muxer_, nullptr);
    if (!stream || avcodec_parameters_copy(stream->codecpar, track.parameters.get()) < 0)
        return false;
    stream->codecpar->codec_tag = 0;
    stream->time_base = track.timeBase;
    stream->avg_frame_rate = track.frameRate;
    return true;
}

bool Mp4File::write(AVPacket& packet, std::size_t track)
{
    const std::int64_t before = disk_->size();
    const int bytes = packet.size;
    noteLength(packet, track);
    packet.stream_index = static_cast<int>(track);
    packet.pts -= starts_[track];
    packet.dts -= starts_[track];
    av_packet_rescale_ts(&packet, bases_[track], muxer_->streams[track]->time_base);
    av_write_frame(muxer_, &packet);
    waiting_ = disk_->size() == before ? waiting_ + bytes : bytes;
    *size_ = disk_->size() + waiting_;
    return !isBroken_;
}

bool Mp4File::leads(const AVPacket& packet, std::size_t track, std::chrono::seconds time) const
{
    return av_compare_ts(timeOf(packet, track), bases_[track], time.count(), {1, 1}) > 0;
}

bool Mp4File::close()
{
    const bool isWritten = av_write_trailer(muxer_) >= 0 && !isBroken_ && writeLength();
    release();
    *size_ = disk_->size();
    return isWritten;
}

void Mp4File::noteLength(const AVPacket& packet, std::size_t track)
{
    const std::int64_t end = packet.pts + packet.duration - starts_[track];
    length_ = std::max(length_, av_rescale_q(end, bases_[track], kMillisecond));
}

// The length in the movie header is 0 as long as nobody knows it. Some players take it from there alone.
void Mp4File::findLengthField(const std::uint8_t* header, std::size_t size)
{
    constexpr std::string_view kMovieHeader = "mvhd";
    constexpr std::size_t kLengthOffset = 20; // behind the name: version, two times and the scale of a millisecond
    const std::string_view text(reinterpret_cast<const char*>(header), size);
    const std::size_t name = text.find(kMovieHeader);
    if (name != std::string_view::npos && name + kLengthOffset + 4 <= size)
        lengthField_ = disk_->size() + static_cast<std::int64_t>(name + kLengthOffset);
}

bool Mp4File::writeLength()
{
    std::array<std::uint8_t, 4> bytes{};
    AV_WB32(bytes.data(), static_cast<std::uint32_t>(length_));
    return lengthField_ == 0 || disk_->overwrite(lengthField_, bytes.data(), bytes.size());
}

void Mp4File::release()
{
    if (!muxer_)
        return;
    if (muxer_->pb)
        av_freep(&muxer_->pb->buffer);
    avio_context_free(&muxer_->pb);
    avformat_free_context(std::exchange(muxer_, nullptr));
}

// A fragment of which a part is missing would make some players give up the whole file. A header alone is no film.
void Mp4File::cutBroken()
{
    if (isBroken_)
        disk_->cutTo(whole_);
}

int Mp4File::onData(void* self, std::uint8_t* data, int size, AVIODataMarkerType type, std::int64_t)
{
    return static_cast<Mp4File*>(self)->append(data, static_cast<std::size_t>(size), type) ? size : AVERROR(EIO);
}

bool Mp4File::append(const std::uint8_t* data, std::size_t size, AVIODataMarkerType type)
{
    if (isBroken_)
        return false;
    if (type == AVIO_DATA_MARKER_HEADER)
        findLengthField(data, size);
    if (isFragmentStart(type))
        whole_ = std::exchange(hasFragment_, true) ? disk_->size() : 0;
    isBroken_ = disk_->isDeleted() || !disk_->write(data, size);
    return !isBroken_;
}

} // namespace tide
