#pragma once

#include "engine/sound/SoundFormat.h"
#include "include/tide_pipe/tide_pipe.h"

#include <optional>

namespace tide {

enum class TalkCodec
{
    ALaw = TP_AUDIO_A_LAW,
    MuLaw = TP_AUDIO_MU_LAW,
    Aac = TP_AUDIO_AAC
};

// Both directions of a talk speak the same.
struct TalkFormat
{
    TalkCodec codec = TalkCodec::ALaw;
    SoundFormat sound;
    int bitRate = 0; // of AAC; 0 is one that suits
};

// From the numbers of a host; a negative number or 0 stands for the usual value. Nothing for what no device speaks.
std::optional<TalkFormat> makeTalkFormat(int audioType, int bitRate, int sampleRate, int channels);

} // namespace tide
