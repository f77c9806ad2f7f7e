#pragma once

#include "engine/record/TimeMender.h"
#include "engine/stream/PacketSink.h"

#include <optional>
#include <vector>

namespace tide {

// One track of a recording, with its own copy of what the stream said about it.
struct RecordTrack
{
    explicit RecordTrack(const TrackInfo& info, int sourceIndex);

    bool isVideo() const { return parameters->codec_type == AVMEDIA_TYPE_VIDEO; }
    TrackTimes times() const;

    int sourceIndex;
    ParametersPtr parameters;
    AVRational timeBase;
    AVRational frameRate;
};

// The first picture track and the first sound track of a stream, pictures first.
std::vector<RecordTrack> chooseTracks(const std::vector<TrackInfo>& tracks);

// MP4 can hold it and common players know it there.
bool isStorable(const AVCodecParameters& parameters);

// Fills in the decoder's set-up from a key picture that carries it, where the source did not tell it beforehand.
void completeSetup(AVCodecParameters& parameters, const AVPacket& packet);

// Takes away the header that AAC packets of a transport stream carry; RecordTrack has put what it says beside the
// stream.
void stripAdts(AVPacket& packet);

} // namespace tide
