#include "engine/talk/TalkFormat.h"

#include <algorithm>

namespace tide {

namespace {

constexpr int kLowestRate = 8000;
constexpr int kHighestRate = 48000;
constexpr int kHighestBitRate = 320000;

} // namespace

std::optional<TalkFormat> makeTalkFormat(int audioType, int bitRate, int sampleRate, int channels)
{
    if (audioType < static_cast<int>(TalkCodec::ALaw) || audioType > static_cast<int>(TalkCodec::Aac))
        return std::nullopt;
    const auto codec = static_cast<TalkCodec>(audioType);
    const int usualRate = codec == TalkCodec::Aac ? 16000 : 8000;
    const TalkFormat format{
        codec, {sampleRate > 0 ? sampleRate : usualRate, channels > 0 ? channels : 1}, std::max(bitRate, 0)};
    const bool isSpoken = format.sound.rate >= kLowestRate && format.sound.rate <= kHighestRate &&
                          format.sound.channels <= 2 && format.bitRate <= kHighestBitRate;
    return isSpoken ? std::optional(format) : std::nullopt;
}

} // namespace tide
