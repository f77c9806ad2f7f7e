#include "engine/listen/FishListeners.h"

#include "engine/transfer/Transfers.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tide {

namespace {

thread_local bool isInsideFunction = false;

} // namespace

FishListeners& FishListeners::instance()
{
    static FishListeners* const listeners = [] {
        Transfers::instance(); // sets libcurl up
        std::atexit([] { instance().end(); });
        return new FishListeners;
    }();
    return *listeners;
}

// The thread starts under the lock: its first report finds the listener known.
Failure FishListeners::start(FishOrder order, int& id)
{
    if (!FishListener::isUsable(order))
        return Failure::BadArgument;
    std::vector<std::unique_ptr<FishListener>> finished; // joined without the lock
    const std::lock_guard lock(mutex_);
    if (isLeaving_)
        return Failure::WrongState;
    finished = takeFinished();
    const int newId = lastId_ + 1;
    auto listener = std::make_unique<FishListener>(std::move(order),
                                                   [this, newId](const FishReport& report) { deliver(newId, report); });
    if (!listener->start())
        return Failure::OutOfMemory;
    id = lastId_ = newId;
    listeners_[id] = std::move(listener);
    return Failure::None;
}

bool FishListeners::stop(int id)
{
    std::vector<std::unique_ptr<FishListener>> finished; // joined without the lock
    std::unique_lock lock(mutex_);
    auto found = listeners_.extract(id);
    if (!found)
        return false;
    found.mapped()->stop();
    finished = takeFinished();
    stopped_.push_back(std::move(found.mapped()));
    if (!isInsideFunction)
        left_.wait(lock, [&] { return running_.count(id) == 0; });
    return true;
}

void FishListeners::setFunction(TP_FishMsgFun function)
{
    std::unique_lock lock(mutex_);
    const TP_FishMsgFun before = std::exchange(function_, function);
    if (isInsideFunction || before == function)
        return;
    left_.wait(lock, [&] {
        return std::none_of(running_.begin(), running_.end(), [&](const auto& row) { return row.second == before; });
    });
}

void FishListeners::deliver(int id, const FishReport& report)
{
    TP_FishMsgFun function = nullptr;
    if (!enter(id, function))
        return;
    auto payload = report.payload;
    _TP_FISHMESSAGE message{};
    message.box = report.box;
    message.kind = report.kind;
    message.length = report.length;
    message.payload = payload.data();
    isInsideFunction = true;
    function(id, report.kind, &message, sizeof message);
    isInsideFunction = false;
    leave(id);
}

bool FishListeners::enter(int id, TP_FishMsgFun& function)
{
    const std::lock_guard lock(mutex_);
    if (!function_ || listeners_.count(id) == 0)
        return false;
    function = running_[id] = function_;
    return true;
}

void FishListeners::leave(int id)
{
    const std::lock_guard lock(mutex_);
    running_.erase(id);
    left_.notify_all();
}

std::vector<std::unique_ptr<FishListener>> FishListeners::takeFinished()
{
    const auto running = std::stable_partition(stopped_.begin(), stopped_.end(),
                                               [](const auto& listener) { return listener->isFinished(); });
    std::vector<std::unique_ptr<FishListener>> finished(std::make_move_iterator(stopped_.begin()),
                                                        std::make_move_iterator(running));
    stopped_.erase(stopped_.begin(), running);
    return finished;
}

void FishListeners::end()
{
    std::map<int, std::unique_ptr<FishListener>> listeners; // cut off and waited for without the lock
    std::vector<std::unique_ptr<FishListener>> stopped;
    const std::lock_guard lock(mutex_);
    isLeaving_ = true;
    listeners.swap(listeners_);
    stopped.swap(stopped_);
}

} // namespace tide
