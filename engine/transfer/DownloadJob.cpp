#include "engine/transfer/DownloadJob.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace tide {

namespace {

constexpr int kTriesWithoutNewBytes = 4;
constexpr std::chrono::milliseconds kPause{250}; // before the second try, longer before each further one
constexpr int kPartialContent = 206;
constexpr int kRangeNotSatisfiable = 416;

std::string field(const HttpHead& head, const char* name)
{
    const auto found = head.fields.find(name);
    return found != head.fields.end() ? found->second : std::string();
}

// Only what names the bytes exactly: a weak tag does not.
std::string validatorOf(const HttpHead& head)
{
    const std::string tag = field(head, "etag");
    return !tag.empty() && tag.front() == '"' ? tag : field(head, "last-modified");
}

struct ContentRange
{
    long long first = -1;
    long long total = 0; // 0 where the server does not know
};

// "bytes 6-10/11"
ContentRange contentRangeOf(const HttpHead& head)
{
    const std::string text = field(head, "content-range");
    const auto slash = text.find('/');
    if (text.compare(0, 6, "bytes ") != 0 || slash == std::string::npos)
        return {};
    return {std::strtoll(text.c_str() + 6, nullptr, 10), std::strtoll(text.c_str() + slash + 1, nullptr, 10)};
}

// Once some of the file has come, a line that breaks is worth another try; before that the host is told at once.
bool isWorthAnotherTry(TP_TransferStatus status)
{
    return status == TP_TRANSFER_LINE_CUT || status == TP_TRANSFER_TIMEOUT || status == TP_TRANSFER_CANNOT_CONNECT;
}

} // namespace

DownloadJob::DownloadJob(DownloadOrder order)
    : TransferJob(TransferKind::Download)
    , order_(std::move(order))
    , body_(order_.body)
{
}

TransferResult DownloadJob::prepare()
{
    if (!isSendable(request()))
        return {TP_TRANSFER_BAD_REQUEST, "not an http or https address"};
    return keep(file_.open(order_.path)) ? TransferResult{} : TransferResult{TP_TRANSFER_FILE_ERROR, fileTrouble_};
}

TransferResult DownloadJob::work(HttpClient& client)
{
    begun_ = std::chrono::steady_clock::now();
    long long most = 0;
    HttpAnswer answer = fetch(client);
    for (int tries = 1; most > 0 || file_.size() > 0; ++tries) {
        if (file_.size() > most)
            tries = 1;
        most = std::max(most, file_.size());
        if (!isWorthAnotherTry(answer.status) || isOutOfTime() || tries == kTriesWithoutNewBytes ||
            !client.wait(kPause * tries))
            break;
        answer = fetch(client);
    }
    return finish(answer);
}

TransferResult DownloadJob::finish(const HttpAnswer& answer)
{
    if (answer.isOk() && keep(file_.commit()))
        return {};
    file_.discard();
    return fileTrouble_.empty() ? TransferResult{answer.status, answer.text}
                                : TransferResult{TP_TRANSFER_FILE_ERROR, fileTrouble_};
}

HttpRequest DownloadJob::request()
{
    HttpRequest request;
    request.url = order_.url;
    request.credential = order_.credential;
    request.limit = timeLeft();
    if (!order_.body.empty()) {
        request.method = HttpMethod::Post;
        request.body = &body_;
        request.headers.push_back("Content-Type: application/xml");
    }
    if (order_.packageType != 0)
        request.headers.push_back("Package-Type: " + std::to_string(order_.packageType));
    return request;
}

// At least a second, since 0 is no limit.
std::chrono::seconds DownloadJob::timeLeft() const
{
    if (order_.limit.count() == 0)
        return order_.limit;
    const auto spent = std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begun_);
    return std::max(order_.limit - spent, std::chrono::seconds(1));
}

bool DownloadJob::isOutOfTime() const
{
    return order_.limit.count() > 0 && timeLeft() <= std::chrono::seconds(1);
}

HttpAnswer DownloadJob::fetch(HttpClient& client)
{
    HttpRequest next = request();
    offset_ = file_.size();
    hasBegun_ = isForeign_ = false;
    body_.rewind();
    if (offset_ > 0)
        next.headers.push_back("Range: bytes=" + std::to_string(offset_) + "-");
    if (offset_ > 0 && !validator_.empty())
        next.headers.push_back("If-Range: " + validator_);
    next.sink = [this](const HttpHead& head, std::string_view bytes) { return take(head, bytes); };
    HttpAnswer answer = client.perform(next);
    judge(answer);
    return answer;
}

// A server may give something else than the rest, or less than it.
void DownloadJob::judge(HttpAnswer& answer)
{
    const bool isEmpty = answer.isOk() && !hasBegun_;
    const bool isWrongSize = answer.isOk() && total_ > 0 && file_.size() != total_;
    if (offset_ > 0 && (answer.head.status == kRangeNotSatisfiable || isEmpty))
        isForeign_ = true;
    if (!isForeign_ && !isWrongSize)
        return;
    answer.status = TP_TRANSFER_LINE_CUT;
    answer.text = "the server does not give the rest of the file";
    if (isForeign_ || file_.size() > total_)
        keep(file_.restart());
}

// The first bytes of an answer: the rest that was asked for, or the whole file anew.
bool DownloadJob::begin(const HttpHead& head)
{
    hasBegun_ = true;
    if (head.status == kPartialContent) {
        const ContentRange range = contentRangeOf(head);
        isForeign_ = offset_ == 0 || range.first != offset_ || (total_ > 0 && range.total != total_);
        return !isForeign_;
    }
    total_ = std::strtoll(field(head, "content-length").c_str(), nullptr, 10);
    validator_ = validatorOf(head);
    return keep(file_.restart());
}

bool DownloadJob::take(const HttpHead& head, std::string_view bytes)
{
    if ((!hasBegun_ && !begin(head)) || !keep(file_.write(bytes)))
        return false;
    setProgress(total_ > 0 ? 100 * file_.size() / total_ : 0);
    return true;
}

bool DownloadJob::keep(bool isDone)
{
    if (!isDone)
        fileTrouble_ = std::strerror(errno);
    return isDone;
}

} // namespace tide
