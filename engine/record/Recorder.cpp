#include "engine/record/Recorder.h"

#include <pthread.h>

#include <system_error>
#include <thread>
#include <utility>

namespace tide {

std::shared_ptr<Recorder> Recorder::start(const std::string& path, std::function<void()> onFailure)
{
    auto disk = DiskFile::create(path);
    if (!disk)
        return nullptr;
    auto file = std::make_unique<Mp4File>(std::move(disk));
    std::shared_ptr<Recorder> recorder(new Recorder(file->size(), std::move(onFailure)));
    try {
        std::thread([recorder, file = std::move(file)]() mutable { recorder->run(std::move(file)); }).detach();
    } catch (const std::system_error&) {
        return nullptr;
    }
    return recorder;
}

Recorder::Recorder(std::shared_ptr<const Mp4File::Size> size, std::function<void()> onFailure)
    : onFailure_(std::move(onFailure))
    , newestSize_(std::move(size))
{
}

void Recorder::tracks(const std::vector<TrackInfo>& tracks)
{
    std::vector<RecordTrack> chosen = chooseTracks(tracks);
    leadingTrack_ = chosen.empty() ? -1 : chosen.front().sourceIndex;
    queue_.putTracks(std::move(chosen));
}

void Recorder::packet(const AVPacket& packet)
{
    queue_.putPacket(packet, packet.stream_index == leadingTrack_ && (packet.flags & AV_PKT_FLAG_KEY));
}

bool Recorder::isRunning() const
{
    const std::lock_guard lock(mutex_);
    return state_ == State::Running;
}

bool Recorder::switchTo(const std::string& path)
{
    auto disk = isRunning() ? DiskFile::create(path) : nullptr;
    if (!disk)
        return false;
    auto file = std::make_unique<Mp4File>(std::move(disk));
    const std::lock_guard lock(mutex_);
    newestSize_ = file->size();
    queue_.putFile(std::move(file));
    return true;
}

std::int64_t Recorder::size() const
{
    const std::lock_guard lock(mutex_);
    return *newestSize_;
}

bool Recorder::finish(std::chrono::seconds patience)
{
    queue_.close();
    std::unique_lock lock(mutex_);
    return ended_.wait_for(lock, patience, [this] { return state_ != State::Running; });
}

void Recorder::run(std::unique_ptr<Mp4File> first)
{
    pthread_setname_np(pthread_self(), "tide-record");
    const bool isGood = writeAll(std::move(first));
    queue_.close();
    queue_.takeAll();
    end(isGood ? State::Finished : State::Failed);
    if (!isGood)
        onFailure_();
}

// When it returns all files are closed.
bool Recorder::writeAll(std::unique_ptr<Mp4File> first)
{
    RecordWriter writer(std::move(first));
    for (auto items = queue_.takeAll(); !items.empty(); items = queue_.takeAll()) {
        for (RecordQueue::Item& item : items) {
            if (!write(writer, item))
                return false;
        }
    }
    return writer.finish();
}

bool Recorder::write(RecordWriter& writer, RecordQueue::Item& item)
{
    if (auto* packet = std::get_if<PacketPtr>(&item))
        return writer.add(**packet);
    if (auto* tracks = std::get_if<std::vector<RecordTrack>>(&item))
        return writer.setTracks(std::move(*tracks));
    writer.switchTo(std::move(std::get<std::unique_ptr<Mp4File>>(item)));
    return true;
}

void Recorder::end(State state)
{
    const std::lock_guard lock(mutex_);
    state_ = state;
    ended_.notify_all();
}

} // namespace tide
