#include "engine/transfer/Transfers.h"
#include "engine/core/Failure.h"
#include "engine/transfer/DownloadJob.h"
#include "engine/transfer/HttpSettings.h"
#include "engine/transfer/UploadJob.h"
#include "include/tide_pipe/tide_pipe.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

using namespace tide;

namespace {

constexpr std::size_t kTextBuffer = 102400; // what a caller makes room for, its zero included
constexpr int kLimitPatiences = 20;         // how long a call that waits may take in all

std::string textOf(const char* text)
{
    return text ? text : "";
}

// As much as has room, without half a character at the end.
int copyText(char* buffer, std::size_t size, const std::string& text)
{
    if (!buffer || size == 0)
        return fail(Failure::BadArgument);
    std::size_t length = std::min(text.size(), size - 1);
    while (length > 0 && length < text.size() && (static_cast<unsigned char>(text[length]) & 0xc0) == 0x80)
        --length;
    buffer[text.copy(buffer, length)] = '\0';
    return 0;
}

Failure failureOf(TP_TransferStatus status, TransferKind kind)
{
    switch (status) {
    case TP_TRANSFER_BAD_REQUEST:
        return Failure::BadArgument;
    case TP_TRANSFER_UNAUTHORIZED:
        return Failure::Authentication;
    case TP_TRANSFER_TIMEOUT:
        return Failure::Timeout;
    case TP_TRANSFER_FILE_ERROR:
        return kind == TransferKind::Download ? Failure::WriteFailed : Failure::OpenFailed;
    default:
        return Failure::Http;
    }
}

// What a call answers: 0, or the status with a minus.
int answer(const TransferResult& result, TransferKind kind)
{
    setHttpErrorText(result.text);
    if (result.status == TP_TRANSFER_OK)
        return 0;
    fail(failureOf(result.status, kind));
    return -static_cast<int>(result.status);
}

// A job for an order of the host; nothing where its credential cannot be read.
template <class Job, class... Kind, class Order> std::shared_ptr<Job> jobOf(Order order, const char* auth, Kind... kind)
{
    const auto credential = parseCredential(textOf(auth));
    if (!credential)
        return nullptr;
    order.credential = *credential;
    return std::make_shared<Job>(kind..., std::move(order));
}

template <class Job> TransferResult prepare(const std::shared_ptr<Job>& job)
{
    return job ? job->prepare() : TransferResult{TP_TRANSFER_BAD_REQUEST, "the credential cannot be read"};
}

template <class Job> int start(const std::shared_ptr<Job>& job, TransferKind kind)
{
    if (const int refusal = answer(prepare(job), kind); refusal < 0)
        return refusal;
    const int id = Transfers::instance().start(job);
    return id > 0 ? id : answer({TP_TRANSFER_FAILED, "too many transfers"}, kind);
}

template <class Job> TransferResult runHere(const std::shared_ptr<Job>& job)
{
    const TransferResult ready = prepare(job);
    return ready.status == TP_TRANSFER_OK ? job->run() : ready;
}

std::chrono::seconds limitOfCall()
{
    return httpSettings().patience * kLimitPatiences;
}

int stop(int id, TransferKind kind)
{
    return Transfers::instance().stop(id, kind) ? 0 : fail(Failure::NoSuchId);
}

int statusOf(int id, TransferKind kind, int* status, int* progress)
{
    if (!status || !progress)
        return fail(Failure::BadArgument);
    const auto job = Transfers::instance().find(id, kind);
    if (!job)
        return fail(Failure::NoSuchId);
    const TransferResult result = job->result();
    *progress = job->progress();
    *status = result.status;
    answer(result, kind); // so that the error texts of this thread are this job's
    return 0;
}

// The device's words about the last import of the process.
struct ImportText
{
    std::mutex lock;
    std::string text; // guarded by lock
};

ImportText& importText()
{
    static ImportText instance;
    return instance;
}

DownloadOrder downloadOrder(const char* url, const char* path, const char* body)
{
    DownloadOrder order;
    order.url = textOf(url);
    order.path = textOf(path);
    order.body = textOf(body);
    return order;
}

UploadOrder uploadOrder(const char* url, const char* statusUrl, const char* path, const char* contentType)
{
    UploadOrder order;
    order.url = textOf(url);
    order.statusUrl = textOf(statusUrl);
    order.path = textOf(path);
    order.contentType = textOf(contentType);
    return order;
}

} // namespace

int TP_StartAsynUpload(const char* uploadUrl, const char* statusUrl, const char* auth, const char* path,
                       const char* pReserve, int iReserve)
{
    UploadOrder order = uploadOrder(uploadUrl, statusUrl, path, pReserve);
    order.method = iReserve == TP_UPLOAD_PUT ? HttpMethod::Put : HttpMethod::Post;
    return start(jobOf<UploadJob>(order, auth, TransferKind::Upload), TransferKind::Upload);
}

int TP_StopAsynUpload(int uploadId)
{
    return stop(uploadId, TransferKind::Upload);
}

int TP_GetUploadErrorInfo(int uploadId, char* buffer)
{
    const auto job = Transfers::instance().find(uploadId, TransferKind::Upload);
    const int copied = copyText(buffer, kTextBuffer, job ? job->result().text : "");
    return job ? copied : fail(Failure::NoSuchId);
}

int TP_GetIpcImportErrorInfo(char* buffer)
{
    const std::lock_guard lock(importText().lock);
    return copyText(buffer, kTextBuffer, importText().text);
}

int TP_GetHTTPErrorInfo(char* buffer, int size)
{
    return copyText(buffer, size > 0 ? static_cast<std::size_t>(size) : 0, httpErrorText());
}

int TP_ImportDeviceConfig(const char* uploadUrl, const char* auth, const char* path)
{
    UploadOrder order = uploadOrder(uploadUrl, nullptr, path, nullptr);
    order.limit = limitOfCall();
    const TransferResult result = runHere(jobOf<UploadJob>(order, auth, TransferKind::Upload));
    {
        const std::lock_guard lock(importText().lock);
        importText().text = result.text;
    }
    return answer(result, TransferKind::Upload);
}

int TP_ExportDeviceConfig(const char* downloadUrl, const char* auth, const char* path)
{
    DownloadOrder order = downloadOrder(downloadUrl, path, nullptr);
    order.limit = limitOfCall();
    return answer(runHere(jobOf<DownloadJob>(order, auth)), TransferKind::Download);
}

int TP_Upload(const char* uploadUrl, const char* auth, const char* path, const char* contentType, int iReserve)
{
    UploadOrder order = uploadOrder(uploadUrl, nullptr, path, contentType);
    order.method = iReserve == TP_UPLOAD_PUT ? HttpMethod::Put : HttpMethod::Post;
    order.limit = limitOfCall();
    return answer(runHere(jobOf<UploadJob>(order, auth, TransferKind::Upload)), TransferKind::Upload);
}

int TP_StartDownload(const char* downloadUrl, const char* auth, const char* path, const char* downloadXml)
{
    return start(jobOf<DownloadJob>(downloadOrder(downloadUrl, path, downloadXml), auth), TransferKind::Download);
}

int TP_StartDownloadEx(const char* downloadUrl, const char* auth, const char* path, int packageType,
                       const char* downloadXml)
{
    DownloadOrder order = downloadOrder(downloadUrl, path, downloadXml);
    order.packageType = packageType;
    return start(jobOf<DownloadJob>(order, auth), TransferKind::Download);
}

int TP_StopDownload(int downloadId)
{
    return stop(downloadId, TransferKind::Download);
}

int TP_GetDownloadStatus(int downloadId, int* status, int* progress)
{
    return statusOf(downloadId, TransferKind::Download, status, progress);
}

int TP_StartUpgrade(const char* upgradeUrl, const char* statusUrl, const char* auth, const char* path,
                    const char* upgradeFlag, const char* pReserve)
{
    UploadOrder order = uploadOrder(upgradeUrl, statusUrl, path, pReserve);
    order.upgradeFlag = textOf(upgradeFlag);
    return start(jobOf<UploadJob>(order, auth, TransferKind::Upgrade), TransferKind::Upgrade);
}

int TP_StopUpgrade(int upgradeId)
{
    return stop(upgradeId, TransferKind::Upgrade);
}

int TP_UpgradeStatus(int upgradeId, int* status, int* progress)
{
    return statusOf(upgradeId, TransferKind::Upgrade, status, progress);
}
