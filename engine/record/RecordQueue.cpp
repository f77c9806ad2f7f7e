#include "engine/record/RecordQueue.h"

#include <utility>

namespace tide {

namespace {

constexpr std::size_t kMostBytes = 64u << 20;
constexpr std::size_t kMostItems = 20000;
constexpr std::size_t kBatch = 32; // items that are worth a wake-up; some half a second of a camera

} // namespace

void RecordQueue::putTracks(std::vector<RecordTrack> tracks)
{
    const std::lock_guard lock(mutex_);
    put(std::move(tracks), true);
}

void RecordQueue::putFile(std::unique_ptr<Mp4File> file)
{
    const std::lock_guard lock(mutex_);
    put(std::move(file), true);
}

void RecordQueue::putPacket(const AVPacket& packet, bool isKey)
{
    const auto size = static_cast<std::size_t>(packet.size);
    const std::lock_guard lock(mutex_);
    const bool hasRoom = bytes_ + size <= kMostBytes && items_.size() < kMostItems;
    isLosing_ = !hasRoom || (isLosing_ && !isKey);
    PacketPtr copy(isLosing_ || isClosed_ ? nullptr : av_packet_clone(&packet));
    if (!copy)
        return;
    bytes_ += size;
    put(std::move(copy), isKey);
}

void RecordQueue::close()
{
    const std::lock_guard lock(mutex_);
    isClosed_ = true;
    wake_.notify_one();
}

void RecordQueue::put(Item item, bool isUrgent)
{
    if (isClosed_)
        return;
    items_.push_back(std::move(item));
    isUrgent_ = isUrgent_ || isUrgent || items_.size() >= kBatch;
    if (isUrgent_)
        wake_.notify_one();
}

std::deque<RecordQueue::Item> RecordQueue::takeAll()
{
    std::unique_lock lock(mutex_);
    wake_.wait(lock, [this] { return isUrgent_ || isClosed_; });
    isUrgent_ = false;
    bytes_ = 0;
    return std::exchange(items_, {});
}

} // namespace tide
