#include "engine/stream/SoundTrack.h"

namespace tide {

using namespace std::chrono_literals;

namespace {

constexpr Microseconds kReach = 5s;        // what is due later than this belongs to another run of time stamps
constexpr std::size_t kLongestWait = 1000; // packets

} // namespace

std::unique_ptr<SoundTrack> SoundTrack::open(StreamState& state, const MediaReader& reader)
{
    const MediaInfo& info = reader.info();
    if (info.audio < 0 || !state.links.voice)
        return nullptr;
    const TrackInfo& track = info.tracks[static_cast<std::size_t>(info.audio)];
    auto decoder = Decoder::open(*track.parameters, track.timeBase);
    return decoder ? std::unique_ptr<SoundTrack>(new SoundTrack(state, reader, std::move(decoder))) : nullptr;
}

SoundTrack::SoundTrack(StreamState& state, const MediaReader& reader, std::unique_ptr<Decoder> decoder)
    : state_(state)
    , reader_(reader)
    , decoder_(std::move(decoder))
{
}

bool SoundTrack::isWanted() const
{
    return state_.links.voice->isOpen() && state_.queue.speed() == 1.0;
}

void SoundTrack::add(const AVPacket& packet)
{
    if (packet.pts == AV_NOPTS_VALUE)
        return;
    readUpTo_ = positionOf(packet);
    if (waiting_.size() >= kLongestWait)
        waiting_.pop_front();
    if (PacketPtr copy{av_packet_clone(&packet)})
        waiting_.push_back(std::move(copy));
}

void SoundTrack::playUpTo(Microseconds position)
{
    while (!waiting_.empty() && positionOf(*waiting_.front()) <= position) {
        if (isWanted())
            play(*waiting_.front());
        waiting_.pop_front();
    }
}

void SoundTrack::restart()
{
    waiting_.clear();
    readUpTo_.reset();
}

Microseconds SoundTrack::positionOf(const AVPacket& packet) const
{
    return reader_.position(reader_.info().audio, packet.pts);
}

void SoundTrack::play(const AVPacket& packet)
{
    decoder_->send(&packet);
    while (const FramePtr frame = decoder_->receive())
        hear(*frame);
}

void SoundTrack::hear(const AVFrame& frame)
{
    if (frame.best_effort_timestamp == AV_NOPTS_VALUE)
        return;
    const TimePoint due = state_.queue.due(reader_.position(reader_.info().audio, frame.best_effort_timestamp));
    if (due < Clock::now() + kReach)
        state_.links.voice->push(frame, due);
}

} // namespace tide
