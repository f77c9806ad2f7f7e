#include "engine/core/Notifier.h"

#include <algorithm>
#include <pthread.h>
#include <system_error>
#include <utility>

namespace tide {

namespace {

constexpr std::size_t kMessageLimit = 65536; // a host that never returns from its handler must not eat the memory
constexpr std::size_t kDataLimit = 256;

} // namespace

Notifier::~Notifier()
{
    {
        std::lock_guard lock(mutex_);
        quit_ = true;
    }
    wake_.notify_one();
    if (thread_.joinable())
        thread_.join();
}

void Notifier::setHandler(TP_MessageHandler handler, void* user)
{
    std::lock_guard lock(mutex_);
    handler_ = handler;
    user_ = user;
}

void Notifier::open(int id)
{
    std::lock_guard lock(mutex_);
    openIds_.insert(id);
}

void Notifier::close(int id)
{
    std::deque<Item> dropped; // destroyed without the lock
    std::lock_guard lock(mutex_);
    openIds_.erase(id);
    followed_.erase(id);
    const auto gone =
        std::stable_partition(queue_.begin(), queue_.end(), [id](const Item& item) { return item.id != id; });
    std::move(gone, queue_.end(), std::back_inserter(dropped));
    queue_.erase(gone, queue_.end());
}

void Notifier::follow(int id, int other)
{
    std::lock_guard lock(mutex_);
    openIds_.insert(id);
    followed_[id] = other;
}

void Notifier::message(int id, TP_Message what)
{
    for (const int to : withFollowers(id)) {
        post(
            to, [this, to, what] { deliverMessage(to, what); }, kMessageLimit);
    }
}

std::vector<int> Notifier::withFollowers(int id)
{
    std::vector<int> ids{id};
    std::lock_guard lock(mutex_);
    for (const auto& [follower, other] : followed_) {
        if (other == id)
            ids.push_back(follower);
    }
    return ids;
}

void Notifier::data(int id, std::function<void()> delivery)
{
    post(id, std::move(delivery), kDataLimit);
}

void Notifier::post(int id, std::function<void()> deliver, std::size_t limit)
{
    {
        std::lock_guard lock(mutex_);
        if (quit_ || openIds_.count(id) == 0 || queue_.size() >= limit)
            return;
        queue_.push_back({id, std::move(deliver)});
        if (!thread_.joinable())
            startThread();
    }
    wake_.notify_one();
}

// Where the system has no thread to give, what waits is delivered once it has.
void Notifier::startThread()
{
    try {
        thread_ = std::thread(&Notifier::run, this);
    } catch (const std::system_error&) {
    }
}

void Notifier::deliverMessage(int id, TP_Message what)
{
    TP_MessageHandler handler = nullptr;
    void* user = nullptr;
    {
        std::lock_guard lock(mutex_);
        handler = handler_;
        user = user_;
    }
    if (handler)
        handler(id, what, user);
}

void Notifier::run()
{
    pthread_setname_np(pthread_self(), "tide-notify");
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return quit_ || !queue_.empty(); });
        if (quit_)
            return;
        const Item item = std::move(queue_.front());
        queue_.pop_front();
        lock.unlock();
        item.deliver();
        lock.lock();
    }
}

} // namespace tide
