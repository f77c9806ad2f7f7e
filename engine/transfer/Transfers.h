#pragma once

#include "engine/transfer/TransferJob.h"

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace tide {

// The uploads, downloads and upgrades that run beside the host, each on one of a few worker threads. A job is known by
// its id until it is stopped; of those that have finished by themselves only the newest are remembered. Never
// destroyed, since threads of the host may call until the very end; when the process leaves, the jobs are cancelled and
// waited for.
//
// Any thread may call. Nothing here waits for the network: a job that is cancelled ends at once.
class Transfers
{
public:
    static Transfers& instance();

    int start(std::shared_ptr<TransferJob> job); // the id, -1 when there are too many or the process is leaving
    std::shared_ptr<TransferJob> find(int id, TransferKind kind) const;
    bool stop(int id, TransferKind kind); // false for an unknown id; after it nothing of the job runs

private:
    Transfers() = default;

    bool isRunning(const std::shared_ptr<TransferJob>& job) const;
    void forgetOldest();
    void work();
    void end();

    mutable std::mutex lock_;          // guards what follows
    std::condition_variable wake_;     // there is work
    std::condition_variable finished_; // a job has left running_
    std::map<int, std::shared_ptr<TransferJob>> jobs_;
    std::deque<std::shared_ptr<TransferJob>> waiting_;
    std::vector<std::shared_ptr<TransferJob>> running_;
    std::vector<std::thread> workers_;
    std::size_t idleWorkers_ = 0;
    // Above every error code: a host that keeps a failure's code in the place of an id reaches no job with it.
    int lastId_ = 1000;
    bool isLeaving_ = false;
};

} // namespace tide
