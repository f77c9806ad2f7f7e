#include "engine/transfer/HttpClient.h"

#include "engine/transfer/HttpSettings.h"
#include "engine/transfer/SigpipeGuard.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>

namespace tide {

namespace {

constexpr std::size_t kMaxText = 102400; // as much as hosts make room for
constexpr long kConnectSeconds = 10;
constexpr long kMaxRedirects = 5;
constexpr int kPollMilliseconds = 1000;

struct EasyDeleter
{
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
struct ListDeleter
{
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
struct UrlDeleter
{
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using EasyPtr = std::unique_ptr<CURL, EasyDeleter>;
using ListPtr = std::unique_ptr<curl_slist, ListDeleter>;
using UrlPtr = std::unique_ptr<CURLU, UrlDeleter>;

struct StatusOfCode
{
    CURLcode code;
    TP_TransferStatus status;
};

constexpr StatusOfCode kStatusOfCode[] = {
    {CURLE_URL_MALFORMAT, TP_TRANSFER_BAD_REQUEST},
    {CURLE_UNSUPPORTED_PROTOCOL, TP_TRANSFER_BAD_REQUEST},
    {CURLE_COULDNT_RESOLVE_HOST, TP_TRANSFER_CANNOT_CONNECT},
    {CURLE_COULDNT_CONNECT, TP_TRANSFER_CANNOT_CONNECT},
    {CURLE_SSL_CONNECT_ERROR, TP_TRANSFER_CANNOT_CONNECT},
    {CURLE_PEER_FAILED_VERIFICATION, TP_TRANSFER_NOT_TRUSTED},
    {CURLE_SSL_CACERT_BADFILE, TP_TRANSFER_NOT_TRUSTED},
    {CURLE_OPERATION_TIMEDOUT, TP_TRANSFER_TIMEOUT},
    {CURLE_PARTIAL_FILE, TP_TRANSFER_LINE_CUT},
    {CURLE_GOT_NOTHING, TP_TRANSFER_LINE_CUT},
    {CURLE_RECV_ERROR, TP_TRANSFER_LINE_CUT},
    {CURLE_SEND_ERROR, TP_TRANSFER_LINE_CUT},
    {CURLE_WRITE_ERROR, TP_TRANSFER_FILE_ERROR},
    {CURLE_READ_ERROR, TP_TRANSFER_FILE_ERROR},
    {CURLE_ABORTED_BY_CALLBACK, TP_TRANSFER_FILE_ERROR},
    {CURLE_SEND_FAIL_REWIND, TP_TRANSFER_FILE_ERROR},
    {CURLE_TOO_MANY_REDIRECTS, TP_TRANSFER_REDIRECTED_TOO_OFTEN},
};

TP_TransferStatus statusOfCode(CURLcode code)
{
    const auto* found = std::find_if(std::begin(kStatusOfCode), std::end(kStatusOfCode),
                                     [code](const StatusOfCode& row) { return row.code == code; });
    return found != std::end(kStatusOfCode) ? found->status : TP_TRANSFER_FAILED;
}

TP_TransferStatus statusOfAnswer(int http)
{
    switch (http) {
    case 401:
    case 403:
    case 407:
        return TP_TRANSFER_UNAUTHORIZED;
    case 404:
    case 410:
        return TP_TRANSFER_NOT_FOUND;
    default:
        return http / 100 == 2 ? TP_TRANSFER_OK : http >= 500 ? TP_TRANSFER_SERVER_ERROR : TP_TRANSFER_REFUSED;
    }
}

bool hasControl(const std::string& text)
{
    return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; });
}

std::string lowered(std::string_view text)
{
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return out;
}

std::string_view trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// One request under way: what libcurl's callbacks work on, all on the thread of perform().
struct Exchange
{
    explicit Exchange(const HttpRequest& what)
        : request(what)
    {
    }
    bool isSilent() const { return std::chrono::steady_clock::now() - heardAt > patience; }

    const HttpRequest& request;
    const std::chrono::seconds patience = httpSettings().patience;
    std::chrono::steady_clock::time_point heardAt = std::chrono::steady_clock::now();
    HttpAnswer answer;
    std::array<char, CURL_ERROR_SIZE> complaint{};
};

std::size_t takeHeader(char* data, std::size_t, std::size_t length, void* user)
{
    HttpHead& head = static_cast<Exchange*>(user)->answer.head;
    const std::string_view line = trimmed({data, length});
    const auto colon = line.find(':');
    if (line.substr(0, 5) == "HTTP/") {
        head = {};
        head.status = std::atoi(std::string(line.substr(std::min(line.size(), line.find(' ')))).c_str());
    } else if (colon != std::string_view::npos) {
        head.fields[lowered(line.substr(0, colon))] = trimmed(line.substr(colon + 1));
    }
    return length;
}

std::size_t takeBytes(char* data, std::size_t, std::size_t length, void* user)
{
    auto& exchange = *static_cast<Exchange*>(user);
    const HttpRequest& request = exchange.request;
    HttpAnswer& answer = exchange.answer;
    exchange.heardAt = std::chrono::steady_clock::now();
    if (request.sink && answer.head.status / 100 == 2)
        return request.sink(answer.head, {data, length}) ? length : 0;
    answer.text.append(data, std::min(length, kMaxText - answer.text.size()));
    return length;
}

std::size_t giveBytes(char* buffer, std::size_t, std::size_t length, void* user)
{
    const auto given = static_cast<Exchange*>(user)->request.body->read(buffer, length);
    return given ? *given : CURL_READFUNC_ABORT;
}

int rewindBody(void* user, curl_off_t offset, int)
{
    const bool isDone = offset == 0 && static_cast<Exchange*>(user)->request.body->rewind();
    return isDone ? CURL_SEEKFUNC_OK : CURL_SEEKFUNC_FAIL;
}

int tellProgress(void* user, curl_off_t total, curl_off_t done, curl_off_t sendTotal, curl_off_t sent)
{
    const HttpRequest& request = static_cast<Exchange*>(user)->request;
    request.progress(request.body ? sent : done, request.body ? sendTotal : total);
    return 0;
}

// The low speed that libcurl knows is a byte a second over some seconds: more than a sparse line has.
int watchSilence(void* user, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    return static_cast<Exchange*>(user)->isSilent() ? 1 : 0;
}

// Cameras and recorders stand in the local network, so no proxy is asked. A secure address leads to secure ones only.
void setAddress(CURL* easy, const HttpRequest& request)
{
    const bool isSecure = lowered(request.url.substr(0, 6)) == "https:";
    curl_easy_setopt(easy, CURLOPT_URL, request.url.c_str());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, isSecure ? "https" : "http,https");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, kMaxRedirects);
    curl_easy_setopt(easy, CURLOPT_POSTREDIR, CURL_REDIR_POST_301 | CURL_REDIR_POST_302);
    curl_easy_setopt(easy, CURLOPT_PROXY, "");
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "tide_pipe/1");
}

void setLimits(CURL* easy, const HttpRequest& request)
{
    const HttpSettings settings = httpSettings();
    const auto patience = static_cast<long>(settings.patience.count());
    curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT, std::min(patience, kConnectSeconds));
    curl_easy_setopt(easy, CURLOPT_TIMEOUT, static_cast<long>(request.limit.count()));
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(easy, CURLOPT_LOW_SPEED_TIME, request.isSparse ? 0L : patience);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L); // a cancelled look-up of a name is not waited for
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, settings.verifiesTls ? 1L : 0L);
    curl_easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, settings.verifiesTls ? 2L : 0L);
    if (!settings.authorities.empty())
        curl_easy_setopt(easy, CURLOPT_CAINFO, settings.authorities.c_str());
}

void setLogin(CURL* easy, const Credential& credential)
{
    if (credential.user.empty() && credential.password.empty())
        return;
    curl_easy_setopt(easy, CURLOPT_HTTPAUTH, CURLAUTH_BASIC | CURLAUTH_DIGEST);
    curl_easy_setopt(easy, CURLOPT_USERNAME, credential.user.c_str());
    curl_easy_setopt(easy, CURLOPT_PASSWORD, credential.password.c_str());
}

void setBody(CURL* easy, Exchange& exchange)
{
    HttpBody* body = exchange.request.body;
    if (!body)
        return;
    const bool isPut = exchange.request.method == HttpMethod::Put;
    curl_easy_setopt(easy, isPut ? CURLOPT_UPLOAD : CURLOPT_POST, 1L);
    curl_easy_setopt(easy, isPut ? CURLOPT_INFILESIZE_LARGE : CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t{body->size()});
    curl_easy_setopt(easy, CURLOPT_READFUNCTION, giveBytes);
    curl_easy_setopt(easy, CURLOPT_READDATA, &exchange);
    curl_easy_setopt(easy, CURLOPT_SEEKFUNCTION, rewindBody);
    curl_easy_setopt(easy, CURLOPT_SEEKDATA, &exchange);
}

void setCallbacks(CURL* easy, Exchange& exchange)
{
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, exchange.complaint.data());
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, takeHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, &exchange);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, takeBytes);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &exchange);
    if (!exchange.request.progress && !exchange.request.isSparse)
        return;
    curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, exchange.request.isSparse ? watchSilence : tellProgress);
    curl_easy_setopt(easy, CURLOPT_XFERINFODATA, &exchange);
}

ListPtr headerList(const HttpRequest& request)
{
    ListPtr list;
    const auto append = [&list](const std::string& line) {
        if (curl_slist* longer = curl_slist_append(list.get(), line.c_str())) {
            static_cast<void>(list.release());
            list.reset(longer);
        }
    };
    for (const std::string& line : request.headers)
        append(line);
    if (!request.credential.header.empty())
        append(request.credential.header);
    return list;
}

HttpAnswer failed(TP_TransferStatus status, const char* text)
{
    HttpAnswer answer;
    answer.status = status;
    answer.text = text;
    return answer;
}

// A refusal stands even where the line broke after it. Where the server has no words, the number of its status or
// libcurl's complaint takes their place.
void conclude(Exchange& exchange, CURLcode code)
{
    HttpAnswer& answer = exchange.answer;
    const bool isRefused = answer.head.status >= 400 && !answer.text.empty();
    if (code == CURLE_ABORTED_BY_CALLBACK && exchange.request.isSparse)
        code = CURLE_OPERATION_TIMEDOUT;
    answer.status = code == CURLE_OK || isRefused ? statusOfAnswer(answer.head.status) : statusOfCode(code);
    if (answer.isOk() || isRefused)
        return;
    if (code == CURLE_OK)
        answer.text = "HTTP status " + std::to_string(answer.head.status);
    else
        answer.text = exchange.complaint[0] != '\0' ? exchange.complaint.data() : curl_easy_strerror(code);
}

} // namespace

bool isSendable(const HttpRequest& request)
{
    if (hasControl(request.url) || std::any_of(request.headers.begin(), request.headers.end(), hasControl))
        return false;
    const UrlPtr url(curl_url());
    if (!url || curl_url_set(url.get(), CURLUPART_URL, request.url.c_str(), 0) != CURLUE_OK)
        return false;
    char* scheme = nullptr;
    if (curl_url_get(url.get(), CURLUPART_SCHEME, &scheme, 0) != CURLUE_OK)
        return false;
    const std::string name(scheme);
    curl_free(scheme);
    return name == "http" || name == "https";
}

void HttpClient::MultiDeleter::operator()(CURLM* multi) const
{
    const SigpipeGuard guard; // it takes leave of the servers
    curl_multi_cleanup(multi);
}

HttpClient::HttpClient()
    : multi_(curl_multi_init())
{
}

HttpAnswer HttpClient::perform(const HttpRequest& request)
{
    const SigpipeGuard guard;
    Exchange exchange(request);
    const EasyPtr easy(curl_easy_init());
    if (!easy || !multi_)
        return exchange.answer;
    if (!isSendable(request))
        return failed(TP_TRANSFER_BAD_REQUEST, "not an http or https address");
    const ListPtr headers = headerList(request);
    curl_easy_setopt(easy.get(), CURLOPT_HTTPHEADER, headers.get());
    setAddress(easy.get(), request);
    setLimits(easy.get(), request);
    setLogin(easy.get(), request.credential);
    setBody(easy.get(), exchange);
    setCallbacks(easy.get(), exchange);
    conclude(exchange, run(easy.get()));
    return cancelled_ ? failed(TP_TRANSFER_FAILED, "stopped") : exchange.answer;
}

CURLcode HttpClient::run(CURL* easy)
{
    if (curl_multi_add_handle(multi_.get(), easy) != CURLM_OK)
        return CURLE_FAILED_INIT;
    int running = 1;
    while (running > 0 && !cancelled_) {
        if (curl_multi_perform(multi_.get(), &running) != CURLM_OK)
            break;
        if (running > 0)
            curl_multi_poll(multi_.get(), nullptr, 0, kPollMilliseconds, nullptr);
    }
    int left = 0;
    const CURLMsg* message = curl_multi_info_read(multi_.get(), &left);
    const CURLcode code = message && message->msg == CURLMSG_DONE ? message->data.result : CURLE_ABORTED_BY_CALLBACK;
    curl_multi_remove_handle(multi_.get(), easy);
    return cancelled_ ? CURLE_ABORTED_BY_CALLBACK : code;
}

bool HttpClient::wait(std::chrono::milliseconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    for (auto now = std::chrono::steady_clock::now(); now < end && !cancelled_;
         now = std::chrono::steady_clock::now()) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - now) + std::chrono::milliseconds(1);
        curl_multi_poll(multi_.get(), nullptr, 0, static_cast<int>(left.count()), nullptr);
    }
    return !cancelled_;
}

void HttpClient::cancel()
{
    cancelled_ = true;
    curl_multi_wakeup(multi_.get());
}

} // namespace tide
