#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace quillmark::lumen_wall {

// Runs jobs side by side: a job waits for another only when all threads are busy. Threads come as they are needed.
class WorkerPool
{
public:
    explicit WorkerPool(size_t limit);
    ~WorkerPool(); // jobs must be able to end: they are waited for
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    void run(std::function<void()> job);
    bool waitForDone(std::chrono::milliseconds limit); // false: some still run

private:
    void work();

    const size_t limit_;
    std::mutex lock_; // guards what follows
    std::condition_variable changed_;
    std::condition_variable done_;
    std::deque<std::function<void()>> jobs_;
    size_t idle_ = 0;
    bool ending_ = false;
    std::vector<std::thread> threads_;
};

} // namespace quillmark::lumen_wall
