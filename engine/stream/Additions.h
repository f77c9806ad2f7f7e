#pragma once

#include "engine/core/Ffmpeg.h"
#include "engine/core/Notifier.h"

#include <map>
#include <memory>
#include <mutex>

namespace tide {

// The host's functions for the records that travel beside a stream's pictures, one a type. Any thread may call.
class Additions
{
public:
    static constexpr int kPeopleCount = 2049;

    void set(int type, TP_AdditionFun function, void* user); // a null function ends it: it is not begun any more
    void deliver(Notifier& notifier, int playId, int type, const AVPacket& record);

private:
    struct Registration
    {
        TP_AdditionFun function;
        void* user;
    };

    std::mutex mutex_;
    std::map<int, std::shared_ptr<const Registration>> registrations_; // guarded by mutex_
};

} // namespace tide
