#pragma once

#include "engine/stream/Additions.h"
#include "engine/stream/OverlaySwitches.h"
#include "engine/stream/PictureQueue.h"
#include "engine/stream/ReadGuard.h"
#include "engine/stream/SinkList.h"
#include "engine/stream/Stream.h"

#include <atomic>
#include <mutex>
#include <string>
#include <utility>

namespace tide {

// What the commands and questions of a stream share with its thread. Each part guards itself.
struct StreamState
{
    StreamState(int id, StreamOptions options, StreamLinks links);

    void tell(TP_Message what) const { links.notifier->message(id, what); }

    std::string auth() const;
    void setAuth(const std::string& auth);

    const int id;
    const StreamOptions options;
    const StreamLinks links;

    PictureQueue queue;
    ReadGuard guard;
    SinkList sinks;
    Additions additions;
    OverlaySwitches overlays;

    std::atomic<bool> live{false};
    std::atomic<bool> ended{false};                        // nothing comes any more
    std::atomic<Microseconds> delay{Microseconds::zero()}; // of a live picture
    std::atomic<PictureSize> size{PictureSize{}};
    std::atomic<std::int64_t> wallClockOrigin{0}; // of position 0 in microseconds since 1970; 0 while unknown

private:
    mutable std::mutex authMutex_;
    std::string auth_; // guarded by authMutex_
};

} // namespace tide
