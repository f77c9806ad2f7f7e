#pragma once

#include "engine/stream/Address.h"
#include "engine/stream/MediaReader.h"
#include "engine/stream/ReadGuard.h"

namespace tide {

// Files, HTTP and RTSP, by libavformat.
class FormatReader final : public MediaReader
{
public:
    struct Setup
    {
        Address address;
        Credential credential; // empty: the one in the address
        int protocol = 0;
        std::string startTime, stopTime; // wall clock times for a recorder on the network, in compact form, or empty
    };

    FormatReader(Setup setup, ReadGuard& guard);

    Opened open() override;
    const MediaInfo& info() const override { return info_; }
    Read read(AVPacket& packet) override;
    bool seek(Microseconds position) override;
    void setPaused(bool paused) override;
    Microseconds position(int track, std::int64_t timeStamp) const override;

private:
    bool isNetwork() const { return setup_.address.scheme != Scheme::File; }
    std::string url() const;
    int openInput();
    bool choose();
    void describe();
    void learnWallClock();
    int addTrack(AVMediaType type);

    const Setup setup_;
    ReadGuard& guard_;
    DemuxerPtr demuxer_;
    MediaInfo info_;
    std::vector<int> tracks_; // by stream of the demuxer: index into info_.tracks or -1
    std::int64_t start_ = 0;  // of the source, in AV_TIME_BASE units
};

} // namespace tide
