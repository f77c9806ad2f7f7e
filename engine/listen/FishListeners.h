#pragma once

#include "engine/core/Failure.h"
#include "engine/listen/FishListener.h"

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace tide {

// The listeners of the process and the one function that gets their reports. Never destroyed, since threads of the host
// may call until the very end; when the process leaves, the lines are cut. Any thread may call, also from inside the
// function. No lock is held while the function runs.
class FishListeners
{
public:
    static FishListeners& instance();

    Failure start(FishOrder order, int& id);

    // After either returns, no call of the listener or the function that was there before runs. Called from inside the
    // function they do not wait, since two that wait for each other would wait for ever.
    bool stop(int id); // false for an unknown id
    void setFunction(TP_FishMsgFun function);

private:
    FishListeners() = default;

    void deliver(int id, const FishReport& report);
    bool enter(int id, TP_FishMsgFun& function);
    void leave(int id);
    std::vector<std::unique_ptr<FishListener>> takeFinished(); // mutex_ is held
    void end();

    std::mutex mutex_; // guards what follows
    std::condition_variable left_;
    TP_FishMsgFun function_ = nullptr;
    std::map<int, TP_FishMsgFun> running_; // listener to the function that its thread is in
    std::map<int, std::unique_ptr<FishListener>> listeners_;
    std::vector<std::unique_ptr<FishListener>> stopped_; // their threads may still be on the way out
    int lastId_ = 0;
    bool isLeaving_ = false;
};

} // namespace tide
