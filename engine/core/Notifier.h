#pragma once

#include "include/tide_pipe/tide_pipe.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <unordered_set>
#include <vector>

namespace tide {

// The one thread on which the host's message handler and data functions run. No lock of the engine is held meanwhile,
// so a handler may call any function of the engine. Any thread may call; none is made to wait for a handler.
class Notifier
{
public:
    Notifier() = default;
    ~Notifier();
    Notifier(const Notifier&) = delete;
    Notifier& operator=(const Notifier&) = delete;

    void setHandler(TP_MessageHandler handler, void* user);

    // Ids that were not opened, or are closed again, are posted to in vain. After close() nothing of the id is begun;
    // what already runs is not waited for.
    void open(int id);
    void close(int id);

    // `id` is opened and gets what is posted as a message to `other` as well.
    void follow(int id, int other);

    void message(int id, TP_Message what);
    void data(int id, std::function<void()> delivery); // dropped when the host is far behind

private:
    struct Item
    {
        int id;
        std::function<void()> deliver;
    };

    void post(int id, std::function<void()> deliver, std::size_t limit);
    std::vector<int> withFollowers(int id);
    void startThread(); // mutex_ is held
    void deliverMessage(int id, TP_Message what);
    void run();

    std::mutex mutex_; // guards all below
    std::condition_variable wake_;
    std::deque<Item> queue_;
    std::unordered_set<int> openIds_;
    std::map<int, int> followed_; // by follower
    TP_MessageHandler handler_ = nullptr;
    void* user_ = nullptr;
    bool quit_ = false;
    std::thread thread_; // started by the first post
};

} // namespace tide
