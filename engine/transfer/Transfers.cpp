#include "engine/transfer/Transfers.h"

#include <curl/curl.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tide {

namespace {

constexpr std::size_t kMaxWorkers = 16;
constexpr std::size_t kMaxWaiting = 256; // each keeps a file open
constexpr std::size_t kMaxRemembered = 256;

} // namespace

// libcurl first: what it and TLS undo at the end of the process has to come after the end of the jobs.
Transfers& Transfers::instance()
{
    static Transfers* const transfers = [] {
        curl_global_init(CURL_GLOBAL_DEFAULT);
        std::atexit([] { instance().end(); });
        return new Transfers;
    }();
    return *transfers;
}

int Transfers::start(std::shared_ptr<TransferJob> job)
{
    const std::lock_guard lock(lock_);
    if (isLeaving_ || waiting_.size() == kMaxWaiting)
        return -1;
    jobs_[++lastId_] = job;
    waiting_.push_back(std::move(job));
    forgetOldest();
    if (idleWorkers_ < waiting_.size() && workers_.size() < kMaxWorkers)
        workers_.emplace_back([this] { work(); });
    wake_.notify_one();
    return lastId_;
}

std::shared_ptr<TransferJob> Transfers::find(int id, TransferKind kind) const
{
    const std::lock_guard lock(lock_);
    const auto found = jobs_.find(id);
    return found != jobs_.end() && found->second->kind() == kind ? found->second : nullptr;
}

bool Transfers::isRunning(const std::shared_ptr<TransferJob>& job) const
{
    return std::find(running_.begin(), running_.end(), job) != running_.end();
}

bool Transfers::stop(int id, TransferKind kind)
{
    const std::shared_ptr<TransferJob> job = find(id, kind);
    if (!job)
        return false;
    job->cancel();
    std::unique_lock lock(lock_);
    waiting_.erase(std::remove(waiting_.begin(), waiting_.end(), job), waiting_.end());
    finished_.wait(lock, [&] { return !isRunning(job); });
    return jobs_.erase(id) == 1;
}

void Transfers::forgetOldest()
{
    auto job = jobs_.begin();
    for (std::size_t tooMany = jobs_.size() - std::min(jobs_.size(), kMaxRemembered); tooMany > 0; --tooMany)
        job = job->second->isFinished() ? jobs_.erase(job) : std::next(job);
}

void Transfers::work()
{
    std::unique_lock lock(lock_);
    while (!isLeaving_) {
        if (waiting_.empty()) {
            ++idleWorkers_;
            wake_.wait(lock);
            --idleWorkers_;
            continue;
        }
        const std::shared_ptr<TransferJob> job = std::move(waiting_.front());
        waiting_.pop_front();
        running_.push_back(job);
        lock.unlock();
        job->run();
        lock.lock();
        running_.erase(std::find(running_.begin(), running_.end(), job));
        finished_.notify_all();
    }
}

void Transfers::end()
{
    std::vector<std::thread> workers;
    {
        const std::lock_guard lock(lock_);
        isLeaving_ = true;
        for (const auto& job : running_)
            job->cancel();
        workers.swap(workers_);
    }
    wake_.notify_all();
    for (std::thread& worker : workers)
        worker.join();
    const std::lock_guard lock(lock_);
    waiting_.clear(); // and with them the parts of their files
    jobs_.clear();
}

} // namespace tide
