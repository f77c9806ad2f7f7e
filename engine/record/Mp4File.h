#pragma once

#include "engine/record/DiskFile.h"
#include "engine/record/RecordTrack.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <vector>

namespace tide {

// One file of a recording: MP4 in fragments of a group of pictures each, so that a killed process leaves a file that
// plays up to its last whole group. Used by the thread that writes, but for size().
class Mp4File
{
public:
    using Size = std::atomic<std::int64_t>;

    explicit Mp4File(std::unique_ptr<DiskFile> disk);
    ~Mp4File(); // a file that the disk broke ends behind its last whole fragment; without one it goes
    Mp4File(const Mp4File&) = delete;
    Mp4File& operator=(const Mp4File&) = delete;

    // `start` of the recording's time line becomes 0 in the file.
    bool begin(const std::vector<const RecordTrack*>& tracks, std::chrono::nanoseconds start);

    // Times are in the time base of the track; the packet is used up. One that the muxer refuses is left out; false
    // means that the disk has failed.
    bool write(AVPacket& packet, std::size_t track);

    // Where a packet stands on the file's time line.
    bool precedes(const AVPacket& packet, std::size_t track) const { return timeOf(packet, track) < 0; }
    bool leads(const AVPacket& packet, std::size_t track, std::chrono::seconds time) const;

    // Writes the last fragment and the index behind it.
    bool close();

    // Bytes, with those that wait for the end of their group; 0 before the first packet. Any thread, and longer than
    // the file is open.
    std::shared_ptr<const Size> size() const { return size_; }

private:
    static int onData(void* self, std::uint8_t* data, int size, AVIODataMarkerType type, std::int64_t time);
    bool append(const std::uint8_t* data, std::size_t size, AVIODataMarkerType type);
    std::int64_t timeOf(const AVPacket& packet, std::size_t track) const { return packet.dts - starts_[track]; }
    bool allocate();
    bool addTrack(const RecordTrack& track);
    void noteLength(const AVPacket& packet, std::size_t track);
    void findLengthField(const std::uint8_t* header, std::size_t size);
    bool writeLength();
    void release();
    void cutBroken();

    const std::unique_ptr<DiskFile> disk_;
    AVFormatContext* muxer_ = nullptr; // with a pb of its own; see release()
    std::vector<AVRational> bases_;
    std::vector<std::int64_t> starts_; // in the bases
    std::int64_t whole_ = 0;           // the file is good up to here
    std::int64_t waiting_ = 0;         // bytes that the muxer holds back
    std::int64_t length_ = 0;          // milliseconds
    std::int64_t lengthField_ = 0;     // where the file tells it; 0 while unknown
    bool hasFragment_ = false;         // one has been begun
    bool isBroken_ = false;
    const std::shared_ptr<Size> size_ = std::make_shared<Size>(0);
};

} // namespace tide
