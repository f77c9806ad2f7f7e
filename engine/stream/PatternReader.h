#pragma once

#include "engine/stream/MediaReader.h"
#include "engine/stream/ReadGuard.h"
#include "engine/stream/TestPicture.h"

#include <deque>
#include <optional>
#include <string>

namespace tide {

// What "test:pattern?..." asks for.
struct Pattern
{
    int width = 704, height = 576;
    int rate = 25;   // pictures a second
    int group = 25;  // pictures from one key picture to the next
    int seconds = 0; // length; 0 is endless, and then the source is live: it comes in real time
    int tone = 0;    // Hz; 0 is no sound
    int people = 0;  // people-count records a second
};

// Nothing for an unknown key or a value out of range.
std::optional<Pattern> parsePattern(const std::string& query);

// A generated source that behaves like a camera or a file: coded packets with groups of pictures, sound, and a track of
// people-count records (16 unsigned numbers in thousandths).
class PatternReader final : public MediaReader
{
public:
    PatternReader(const Pattern& pattern, ReadGuard& guard);

    Opened open() override;
    const MediaInfo& info() const override { return info_; }
    Read read(AVPacket& packet) override;
    bool seek(Microseconds position) override;
    void setPaused(bool) override {}
    Microseconds position(int track, std::int64_t timeStamp) const override;

private:
    bool openVideo();
    bool openSound();
    int addTrack(const AVCodecContext& codec, ParametersPtr& parameters);
    void addDataTrack();
    bool produce();
    bool produceSound(Microseconds until);
    void produceRecords(Microseconds until);
    bool encode(AVCodecContext& codec, AVFrame* frame, int track);
    bool waitForRealTime();

    const Pattern pattern_;
    ReadGuard& guard_;
    const TestPicture picture_;
    CodecPtr videoCoder_, soundCoder_;
    ParametersPtr videoParameters_, soundParameters_;
    MediaInfo info_;
    std::deque<PacketPtr> ready_;
    std::int64_t nextPicture_ = 0;
    std::int64_t nextSample_ = 0;
    std::int64_t nextRecord_ = 0;
    TimePoint startedAt_{};
};

} // namespace tide
