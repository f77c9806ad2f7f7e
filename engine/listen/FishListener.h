#pragma once

#include "engine/core/Credential.h"
#include "engine/listen/FishReport.h"
#include "engine/transfer/HttpClient.h"

#include <atomic>
#include <functional>
#include <string>
#include <thread>

namespace tide {

struct FishOrder
{
    std::string url;
    Credential credential;
    std::string extData; // sent to the device; empty: it is asked without
};

// The line to one fisheye device, on a thread of its own. One that breaks or falls silent is opened again until the
// listener is stopped.
class FishListener
{
public:
    using Sink = std::function<void(const FishReport& report)>; // called on the listener's thread

    FishListener(FishOrder order, Sink sink);
    ~FishListener(); // waits for the thread, which stop() has sent home
    FishListener(const FishListener&) = delete;
    FishListener& operator=(const FishListener&) = delete;

    static bool isUsable(const FishOrder& order); // false for an address that is not http or https

    bool start(); // false when the system has no thread to give
    void stop();  // returns at once
    bool isFinished() const { return isFinished_; }

private:
    void listen();
    HttpAnswer listenOnce();
    void hear(std::string_view bytes);

    const FishOrder order_;
    const Sink sink_;
    HttpClient client_;
    std::atomic<bool> isFinished_{false};
    FishLines lines_;      // listener's thread
    bool isHeard_ = false; // listener's thread: something came over this line
    std::thread thread_;
};

} // namespace tide
