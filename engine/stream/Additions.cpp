#include "engine/stream/Additions.h"

#include <utility>
#include <vector>

namespace tide {

void Additions::set(int type, TP_AdditionFun function, void* user)
{
    std::lock_guard lock(mutex_);
    if (function)
        registrations_[type] = std::make_shared<const Registration>(Registration{function, user});
    else
        registrations_.erase(type);
}

void Additions::deliver(Notifier& notifier, int playId, int type, const AVPacket& record)
{
    std::weak_ptr<const Registration> wanted;
    {
        std::lock_guard lock(mutex_);
        const auto found = registrations_.find(type);
        if (found == registrations_.end())
            return;
        wanted = found->second;
    }
    std::vector<std::uint8_t> data(record.data, record.data + record.size);
    notifier.data(playId, [wanted, playId, type, bytes = std::move(data)]() mutable {
        const auto registration = wanted.lock(); // gone when the host has taken it back meanwhile
        if (!registration)
            return;
        TP_ADDITION_DATA_INFO info{};
        info.type = type;
        info.length = static_cast<int>(bytes.size());
        info.data = bytes.data();
        registration->function(playId, &info, registration->user);
    });
}

} // namespace tide
