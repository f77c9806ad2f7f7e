#pragma once

#include "engine/record/RecordQueue.h"
#include "engine/record/RecordWriter.h"
#include "engine/stream/PacketSink.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tide {

// Records one stream without encoding its pictures anew, with a thread of its own for the disk.
class Recorder final : public PacketSink
{
public:
    // Null when the file cannot be made. `onFailure` is called once, on the disk's thread, when the disk ends the
    // recording; what was written until then is good.
    static std::shared_ptr<Recorder> start(const std::string& path, std::function<void()> onFailure);

    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    // Stream's thread.
    void tracks(const std::vector<TrackInfo>& tracks) override;
    void packet(const AVPacket& packet) override;

    // Any thread.
    bool isRunning() const; // false once the disk has ended it, or after finish()
    bool switchTo(const std::string& path);
    std::int64_t size() const;                  // of the file that was asked for last
    bool finish(std::chrono::seconds patience); // false when the disk takes longer; it then ends by itself

private:
    enum class State
    {
        Running,
        Failed,
        Finished
    };

    Recorder(std::shared_ptr<const Mp4File::Size> size, std::function<void()> onFailure);

    // Disk's thread, which keeps the recorder alive.
    void run(std::unique_ptr<Mp4File> first);
    bool writeAll(std::unique_ptr<Mp4File> first);
    static bool write(RecordWriter& writer, RecordQueue::Item& item);
    void end(State state);

    const std::function<void()> onFailure_;
    RecordQueue queue_;
    int leadingTrack_ = -1; // stream's thread; its key packets start a group

    mutable std::mutex mutex_; // guards what follows
    std::condition_variable ended_;
    State state_ = State::Running;
    std::shared_ptr<const Mp4File::Size> newestSize_;
};

} // namespace tide
