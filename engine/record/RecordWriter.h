#pragma once

#include "engine/record/Mp4File.h"
#include "engine/record/RecordTrack.h"
#include "engine/record/SoundTranscoder.h"
#include "engine/record/TimeMender.h"

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace tide {

// Puts the packets of a stream into one file after another. Used by the recorder's thread. A function that answers
// false has ended the recording: the disk has failed, or the stream became something that the file cannot hold.
class RecordWriter
{
public:
    explicit RecordWriter(std::unique_ptr<Mp4File> first);

    // Of the stream, at the beginning and after each reconnect.
    bool setTracks(std::vector<RecordTrack> tracks);
    bool add(AVPacket& packet);

    // From the next key picture on.
    void switchTo(std::unique_ptr<Mp4File> next);

    bool finish();

private:
    struct Source // where the packets of a track come from at present
    {
        int index = -1; // among the stream's tracks; -1 when a reconnect has brought no such track
        AVRational base{1, 1};
    };

    bool start(std::vector<RecordTrack> tracks);
    bool continueWith(const std::vector<RecordTrack>& tracks);
    bool continueTrack(std::size_t track, const RecordTrack& now);
    std::optional<std::size_t> trackOf(const AVPacket& packet) const;
    bool isKey(const AVPacket& packet, std::size_t track) const;
    bool openPart(const AVPacket& packet);
    bool beginFile(std::chrono::nanoseconds start);
    bool store(AVPacket& packet, std::size_t track);
    bool route(AVPacket& packet, std::size_t track);
    bool closePrevious();
    void prependSetup(AVPacket& packet);

    std::unique_ptr<Mp4File> current_;  // begun with its first packet
    std::unique_ptr<Mp4File> next_;     // waits for a key picture
    std::unique_ptr<Mp4File> previous_; // waits for the sound that belongs to its last pictures
    bool isBegun_ = false;
    bool waitsForKey_ = true;
    std::vector<RecordTrack> tracks_; // as the stream had them at the beginning, the leading one first
    std::vector<Source> sources_;     // of the tracks
    std::optional<TimeMender> mender_;
    std::unique_ptr<SoundTranscoder> transcoder_; // of the sound track, where MP4 cannot hold it
    std::vector<std::uint8_t> changedSetup_;      // goes before the next key picture
};

} // namespace tide
