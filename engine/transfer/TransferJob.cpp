#include "engine/transfer/TransferJob.h"

#include <algorithm>

namespace tide {

TransferResult TransferJob::run()
{
    HttpClient client;
    {
        const std::lock_guard lock(lock_);
        client_ = &client;
        if (isCancelled_)
            client.cancel();
    }
    const TransferResult result = work(client);
    if (result.status == TP_TRANSFER_OK)
        progress_ = 100;
    const std::lock_guard lock(lock_);
    client_ = nullptr;
    result_ = result;
    isFinished_ = true;
    return result;
}

void TransferJob::cancel()
{
    const std::lock_guard lock(lock_);
    isCancelled_ = true;
    if (client_)
        client_->cancel();
}

TransferResult TransferJob::result() const
{
    const std::lock_guard lock(lock_);
    return result_;
}

void TransferJob::setProgress(long long percent)
{
    progress_ = static_cast<int>(std::clamp<long long>(percent, 0, 99));
}

} // namespace tide
