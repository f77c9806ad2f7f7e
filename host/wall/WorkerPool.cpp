#include "host/wall/WorkerPool.h"

#include <utility>

namespace quillmark::lumen_wall {

WorkerPool::WorkerPool(size_t limit)
    : limit_(limit)
{
}

WorkerPool::~WorkerPool()
{
    {
        const std::lock_guard guard(lock_);
        ending_ = true;
    }
    changed_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

void WorkerPool::run(std::function<void()> job)
{
    const std::lock_guard guard(lock_);
    jobs_.push_back(std::move(job));
    if (jobs_.size() > idle_ && threads_.size() < limit_)
        threads_.emplace_back(&WorkerPool::work, this);
    else
        changed_.notify_one();
}

bool WorkerPool::waitForDone(std::chrono::milliseconds limit)
{
    std::unique_lock guard(lock_);
    return done_.wait_for(guard, limit, [this] { return jobs_.empty() && idle_ == threads_.size(); });
}

void WorkerPool::work()
{
    std::unique_lock guard(lock_);
    for (;;) {
        ++idle_;
        if (jobs_.empty())
            done_.notify_all();
        changed_.wait(guard, [this] { return ending_ || !jobs_.empty(); });
        --idle_;
        if (jobs_.empty())
            return;
        const std::function<void()> job = std::move(jobs_.front());
        jobs_.pop_front();
        guard.unlock();
        job();
        guard.lock();
    }
}

} // namespace quillmark::lumen_wall
