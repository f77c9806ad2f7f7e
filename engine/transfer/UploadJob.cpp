#include "engine/transfer/UploadJob.h"

#include "engine/transfer/DeviceReport.h"
#include "engine/transfer/HttpSettings.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace tide {

namespace {

constexpr std::chrono::milliseconds kAskAgainAfter{500};
constexpr int kPatiences = 20; // how long a device may show no progress: it may be on its way through a restart

bool isRefusal(TP_TransferStatus status)
{
    return status == TP_TRANSFER_UNAUTHORIZED || status == TP_TRANSFER_NOT_FOUND || status == TP_TRANSFER_REFUSED ||
           status == TP_TRANSFER_NOT_TRUSTED;
}

} // namespace

UploadJob::UploadJob(TransferKind kind, UploadOrder order)
    : TransferJob(kind)
    , order_(std::move(order))
{
}

TransferResult UploadJob::prepare()
{
    if (!isSendable(request()) || (!order_.statusUrl.empty() && !isSendable(statusRequest())))
        return {TP_TRANSFER_BAD_REQUEST, "not an http or https address"};
    return body_.open(order_.path) ? TransferResult{} : TransferResult{TP_TRANSFER_FILE_ERROR, std::strerror(errno)};
}

HttpRequest UploadJob::request()
{
    const long long share = order_.statusUrl.empty() ? 100 : 50;
    HttpRequest request;
    request.url = order_.url;
    request.credential = order_.credential;
    request.method = order_.method;
    request.limit = order_.limit;
    request.headers.push_back("Content-Type: " +
                              (order_.contentType.empty() ? "application/octet-stream" : order_.contentType));
    if (!order_.upgradeFlag.empty())
        request.headers.push_back("Upgrade-Flag: " + order_.upgradeFlag);
    request.body = &body_;
    request.progress = [this, share](long long sent, long long total) {
        setProgress(total > 0 ? share * sent / total : 0);
    };
    return request;
}

HttpRequest UploadJob::statusRequest() const
{
    HttpRequest request;
    request.url = order_.statusUrl;
    request.credential = order_.credential;
    return request;
}

TransferResult UploadJob::work(HttpClient& client)
{
    const HttpAnswer answer = client.perform(request());
    body_.close();
    if (!answer.isOk())
        return {answer.status, answer.text};
    return order_.statusUrl.empty() ? TransferResult{} : followDevice(client);
}

TransferResult UploadJob::followDevice(HttpClient& client)
{
    const auto patience = httpSettings().patience * kPatiences;
    long seen = -1;
    auto moved = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - moved < patience) {
        const HttpAnswer answer = client.perform(statusRequest());
        if (isRefusal(answer.status))
            return {answer.status, answer.text};
        const DeviceReport report = answer.isOk() ? parseDeviceReport(answer.text) : DeviceReport{0, seen};
        if (report.hasFailed())
            return {TP_TRANSFER_DEVICE_FAILED, answer.text};
        if (report.isDone())
            return {};
        if (*report.progress != seen)
            moved = std::chrono::steady_clock::now();
        seen = *report.progress;
        setProgress(50 + seen / 2);
        if (!client.wait(kAskAgainAfter))
            return {TP_TRANSFER_FAILED, "stopped"};
    }
    return {TP_TRANSFER_TIMEOUT, "the device has made no progress"};
}

} // namespace tide
