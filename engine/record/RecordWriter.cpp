#include "engine/record/RecordWriter.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tide {

namespace {

constexpr AVRational kNanosecond{1, 1'000'000'000};
constexpr std::int64_t kLongestOverlap = 2; // seconds for which sound may come later than the picture

std::vector<std::uint8_t> setupOf(const AVCodecParameters& parameters)
{
    return {parameters.extradata, parameters.extradata + parameters.extradata_size};
}

// With start codes: may stand in the stream itself.
bool isInBand(const std::vector<std::uint8_t>& setup)
{
    return setup.size() > 3 && setup[0] == 0 && setup[1] == 0 && (setup[2] == 1 || (setup[2] == 0 && setup[3] == 1));
}

bool isSameSound(const AVCodecParameters& a, const AVCodecParameters& b)
{
    return a.codec_id == b.codec_id && a.sample_rate == b.sample_rate &&
           a.ch_layout.nb_channels == b.ch_layout.nb_channels;
}

} // namespace

RecordWriter::RecordWriter(std::unique_ptr<Mp4File> first)
    : current_(std::move(first))
{
}

bool RecordWriter::setTracks(std::vector<RecordTrack> tracks)
{
    waitsForKey_ = true;
    return tracks_.empty() ? start(std::move(tracks)) : continueWith(tracks);
}

bool RecordWriter::start(std::vector<RecordTrack> tracks)
{
    std::vector<TrackTimes> times;
    for (RecordTrack& track : tracks) {
        const bool isStored = isStorable(*track.parameters);
        if (!isStored && track.isVideo())
            return false;
        if (!isStored && !(transcoder_ = SoundTranscoder::make(track)))
            continue;
        times.push_back(track.times());
        sources_.push_back({track.sourceIndex, track.timeBase});
        tracks_.push_back(std::move(track));
    }
    mender_.emplace(times);
    return !tracks_.empty();
}

bool RecordWriter::continueWith(const std::vector<RecordTrack>& tracks)
{
    for (std::size_t i = 0; i < tracks_.size(); ++i) {
        sources_[i].index = -1;
        const auto now = std::find_if(tracks.begin(), tracks.end(), [&](const RecordTrack& track) {
            return track.isVideo() == tracks_[i].isVideo();
        });
        if (now != tracks.end() && !continueTrack(i, *now))
            return false;
    }
    return true;
}

bool RecordWriter::continueTrack(std::size_t index, const RecordTrack& now)
{
    const RecordTrack& track = tracks_[index];
    if (!track.isVideo() && !isSameSound(*track.parameters, *now.parameters))
        return true; // goes on without sound
    if (track.parameters->codec_id != now.parameters->codec_id)
        return false;
    const std::vector<std::uint8_t> setup = setupOf(*now.parameters);
    const bool isChanged = track.isVideo() && !setup.empty() && setup != setupOf(*track.parameters);
    if (isChanged && !isInBand(setup))
        return false;
    if (isChanged)
        changedSetup_ = setup;
    sources_[index] = {now.sourceIndex, now.timeBase};
    return true;
}

std::optional<std::size_t> RecordWriter::trackOf(const AVPacket& packet) const
{
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        if (sources_[i].index == packet.stream_index)
            return i;
    }
    return std::nullopt;
}

bool RecordWriter::isKey(const AVPacket& packet, std::size_t track) const
{
    return track == 0 && (packet.flags & AV_PKT_FLAG_KEY || !tracks_[0].isVideo());
}

bool RecordWriter::add(AVPacket& packet)
{
    const std::optional<std::size_t> track = trackOf(packet);
    if (!track)
        return true;
    const bool isKeyPacket = isKey(packet, *track);
    waitsForKey_ = waitsForKey_ && !isKeyPacket;
    if (waitsForKey_)
        return true;
    av_packet_rescale_ts(&packet, sources_[*track].base, tracks_[*track].timeBase);
    mender_->mend(packet, *track);
    if (isKeyPacket && (!isBegun_ || next_) && !openPart(packet))
        return false;
    if (isKeyPacket && !changedSetup_.empty())
        prependSetup(packet);
    return store(packet, *track);
}

// The parameter sets that a reconnect has brought stand beside the stream; in the file they have to be in it.
void RecordWriter::prependSetup(AVPacket& packet)
{
    const std::vector<std::uint8_t> setup = std::exchange(changedSetup_, {});
    const PacketPtr joined(av_packet_alloc());
    if (!joined || av_new_packet(joined.get(), static_cast<int>(setup.size()) + packet.size) < 0)
        return;
    std::copy(setup.begin(), setup.end(), joined->data);
    std::memcpy(joined->data + setup.size(), packet.data, static_cast<std::size_t>(packet.size));
    av_packet_copy_props(joined.get(), &packet);
    av_packet_unref(&packet);
    av_packet_move_ref(&packet, joined.get());
}

void RecordWriter::switchTo(std::unique_ptr<Mp4File> next)
{
    (isBegun_ ? next_ : current_) = std::move(next);
}

bool RecordWriter::openPart(const AVPacket& packet)
{
    if (isBegun_) {
        if (!closePrevious())
            return false;
        previous_ = std::exchange(current_, std::move(next_));
    }
    isBegun_ = true;
    if (tracks_[0].isVideo())
        completeSetup(*tracks_[0].parameters, packet);
    return beginFile(std::chrono::nanoseconds(av_rescale_q(packet.dts, tracks_[0].timeBase, kNanosecond))) &&
           (tracks_.size() > 1 || closePrevious());
}

bool RecordWriter::beginFile(std::chrono::nanoseconds start)
{
    std::vector<const RecordTrack*> stored;
    for (const RecordTrack& track : tracks_)
        stored.push_back(!track.isVideo() && transcoder_ ? &transcoder_->track() : &track);
    return current_->begin(stored, start);
}

bool RecordWriter::store(AVPacket& packet, std::size_t track)
{
    if (tracks_[track].parameters->codec_id == AV_CODEC_ID_AAC)
        stripAdts(packet);
    if (tracks_[track].isVideo() || !transcoder_)
        return route(packet, track);
    bool isGood = true;
    transcoder_->feed(packet, [&](AVPacket& made) { isGood = route(made, track) && isGood; });
    return isGood;
}

// Sound comes earlier or later than its pictures: what belongs to the pictures of the file before goes there.
bool RecordWriter::route(AVPacket& packet, std::size_t track)
{
    if (current_->precedes(packet, track))
        return !previous_ || previous_->write(packet, track);
    const bool isLastOfPrevious =
        !tracks_[track].isVideo() || current_->leads(packet, track, std::chrono::seconds(kLongestOverlap));
    if (previous_ && isLastOfPrevious && !closePrevious())
        return false;
    return current_->write(packet, track);
}

bool RecordWriter::closePrevious()
{
    const std::unique_ptr<Mp4File> closed = std::exchange(previous_, nullptr);
    return !closed || closed->close();
}

bool RecordWriter::finish()
{
    if (!isBegun_)
        return true;
    bool isGood = true;
    if (transcoder_) {
        const std::size_t sound = tracks_.size() - 1;
        transcoder_->drain([&](AVPacket& made) { isGood = route(made, sound) && isGood; });
    }
    isGood = closePrevious() && isGood;
    return current_->close() && isGood;
}

} // namespace tide
