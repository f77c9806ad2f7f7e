#include "engine/stream/PassedGroup.h"

#include <utility>

namespace tide {

namespace {

constexpr std::size_t kMostBytes = 16U << 20;
constexpr std::size_t kMostPackets = 1500;

} // namespace

bool isKey(const AVPacket& packet)
{
    return (packet.flags & AV_PKT_FLAG_KEY) != 0;
}

void PassedGroup::add(PacketPtr packet)
{
    if (isKey(*packet))
        clear();
    if (needsKey_)
        return;
    bytes_ += static_cast<std::size_t>(packet->size);
    packets_.push_back(std::move(packet));
    if (bytes_ > kMostBytes || packets_.size() > kMostPackets)
        giveUp();
}

std::deque<PacketPtr> PassedGroup::take()
{
    bytes_ = 0;
    return std::exchange(packets_, {});
}

void PassedGroup::clear()
{
    take();
    needsKey_ = false;
}

void PassedGroup::giveUp()
{
    take();
    needsKey_ = true;
}

bool PassedGroup::startsWithKey() const
{
    return !packets_.empty() && isKey(*packets_.front());
}

} // namespace tide
