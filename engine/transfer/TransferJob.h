#pragma once

#include "engine/transfer/HttpClient.h"

#include <atomic>
#include <mutex>
#include <string>

namespace tide {

enum class TransferKind
{
    Upload,
    Download,
    Upgrade
};

struct TransferResult
{
    TP_TransferStatus status = TP_TRANSFER_OK;
    std::string text = {}; // why not, in the server's words where it has any
};

// One upload, download or upgrade: run once, on one thread, and looked at from any.
class TransferJob
{
public:
    explicit TransferJob(TransferKind kind)
        : kind_(kind)
    {
    }
    virtual ~TransferJob() = default;

    TransferResult run();
    void cancel(); // any thread: what runs ends at once

    TransferKind kind() const { return kind_; }
    TransferResult result() const;             // in order while it runs
    int progress() const { return progress_; } // percent; 100 is told only of a job that is done
    bool isFinished() const { return isFinished_; }

protected:
    virtual TransferResult work(HttpClient& client) = 0;

    void setProgress(long long percent);

private:
    const TransferKind kind_;
    std::atomic<int> progress_{0};
    std::atomic<bool> isFinished_{false};
    mutable std::mutex lock_;      // guards what follows
    HttpClient* client_ = nullptr; // while it runs
    bool isCancelled_ = false;
    TransferResult result_;
};

} // namespace tide
