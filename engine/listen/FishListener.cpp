#include "engine/listen/FishListener.h"

#include <algorithm>
#include <pthread.h>
#include <system_error>
#include <utility>

namespace tide {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kFirstRest = 500ms;
constexpr std::chrono::milliseconds kLongestRest = 15s;

HttpRequest requestFor(const FishOrder& order)
{
    HttpRequest request;
    request.url = order.url;
    request.credential = order.credential;
    request.isSparse = true;
    return request;
}

const char* contentType(char first)
{
    switch (first) {
    case '{':
    case '[':
        return "Content-Type: application/json";
    case '<':
        return "Content-Type: application/xml";
    default:
        return "Content-Type: text/plain; charset=utf-8";
    }
}

} // namespace

FishListener::FishListener(FishOrder order, Sink sink)
    : order_(std::move(order))
    , sink_(std::move(sink))
{
}

// A process that leaves from inside the callback is on the thread itself.
FishListener::~FishListener()
{
    stop();
    if (thread_.get_id() == std::this_thread::get_id())
        thread_.detach();
    else if (thread_.joinable())
        thread_.join();
}

bool FishListener::isUsable(const FishOrder& order)
{
    return isSendable(requestFor(order));
}

bool FishListener::start()
{
    try {
        thread_ = std::thread([this] { listen(); });
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

void FishListener::stop()
{
    client_.cancel();
}

// A device that refuses the credential is let be: many lock the account after some attempts, and there is no other
// credential to come.
void FishListener::listen()
{
    pthread_setname_np(pthread_self(), "tide-fish");
    auto rest = kFirstRest;
    while (!client_.isCancelled() && listenOnce().status != TP_TRANSFER_UNAUTHORIZED) {
        rest = isHeard_ ? kFirstRest : std::min(rest, kLongestRest);
        client_.wait(rest);
        rest *= 2;
    }
    isFinished_ = true;
}

HttpAnswer FishListener::listenOnce()
{
    isHeard_ = false;
    lines_ = {};
    TextBody body(order_.extData);
    HttpRequest request = requestFor(order_);
    request.sink = [this](const HttpHead&, std::string_view bytes) {
        hear(bytes);
        return true;
    };
    if (!order_.extData.empty()) {
        request.method = HttpMethod::Post;
        request.body = &body;
        request.headers.emplace_back(contentType(order_.extData.front()));
    }
    return client_.perform(request);
}

void FishListener::hear(std::string_view bytes)
{
    isHeard_ = true;
    lines_.add(bytes, [this](std::string_view line) {
        for (const FishReport& report : parseFishLine(line))
            sink_(report);
    });
}

} // namespace tide
