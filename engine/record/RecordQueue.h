#pragma once

#include "engine/record/Mp4File.h"
#include "engine/record/RecordTrack.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <variant>
#include <vector>

namespace tide {

// From the stream's thread to the disk's. Bounded: while the disk hangs, packets are lost up to the next key picture
// that finds room. Any thread may call.
class RecordQueue
{
public:
    using Item = std::variant<std::vector<RecordTrack>, PacketPtr, std::unique_ptr<Mp4File>>;

    void putTracks(std::vector<RecordTrack> tracks);
    void putPacket(const AVPacket& packet, bool isKey);
    void putFile(std::unique_ptr<Mp4File> file);
    void close(); // nothing is taken in any more

    // Waits until there is enough to be worth a wake-up. Empty when the queue is closed and all has been taken.
    std::deque<Item> takeAll();

private:
    void put(Item item, bool isUrgent);

    std::mutex mutex_;
    std::condition_variable wake_;
    // All under mutex_.
    std::deque<Item> items_;
    std::size_t bytes_ = 0;
    bool isUrgent_ = false;
    bool isLosing_ = false;
    bool isClosed_ = false;
};

} // namespace tide
