#pragma once

#include "engine/core/Credential.h"
#include "engine/transfer/HttpBody.h"
#include "include/tide_pipe/tide_pipe.h"

#include <curl/curl.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tide {

struct HttpHead
{
    int status = 0;
    std::map<std::string, std::string> fields; // names in lower case
};

enum class HttpMethod
{
    Get,
    Post,
    Put
};

struct HttpRequest
{
    std::string url;
    Credential credential;
    HttpMethod method = HttpMethod::Get;
    std::vector<std::string> headers; // "Name: value"
    HttpBody* body = nullptr;         // borrowed
    std::chrono::seconds limit{0};    // for all of it; 0 is none, as long as bytes move
    bool isSparse = false;            // a few bytes from time to time are enough to keep the line

    // Takes the bytes of a successful answer; false ends the exchange as a failure of the file.
    std::function<bool(const HttpHead& head, std::string_view bytes)> sink;
    // Of what is sent, for a request with a body, else of what is received; `total` is 0 while it is not known. Not of
    // a sparse line.
    std::function<void(long long done, long long total)> progress;
};

struct HttpAnswer
{
    TP_TransferStatus status = TP_TRANSFER_FAILED;
    HttpHead head;
    std::string text; // the body, where no sink has taken it; where the server has said nothing, what went wrong

    bool isOk() const { return status == TP_TRANSFER_OK; }
};

// No: another scheme than http and https, no host, control characters.
bool isSendable(const HttpRequest& request);

// Carries out requests, one at a time, on whatever thread calls. Follows redirects, answers basic and digest log-ins
// and checks certificates as HttpSettings says.
class HttpClient
{
public:
    HttpClient();

    HttpAnswer perform(const HttpRequest& request);

    // Sleeps; false when it was cancelled before or meanwhile.
    bool wait(std::chrono::milliseconds time);

    // Any thread: what runs ends at once, and so does all that comes later.
    void cancel();
    bool isCancelled() const { return cancelled_; }

private:
    struct MultiDeleter
    {
        void operator()(CURLM* multi) const;
    };

    CURLcode run(CURL* easy);

    const std::unique_ptr<CURLM, MultiDeleter> multi_;
    std::atomic<bool> cancelled_{false};
};

} // namespace tide
