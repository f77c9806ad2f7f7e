#include "engine/talk/Talk.h"

#include "engine/talk/Microphone.h"

#include <pthread.h>

#include <algorithm>
#include <cstring>
#include <system_error>
#include <utility>

namespace tide {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds kOpenLimit = 15s;
constexpr std::chrono::seconds kCloseLimit = 5s;
constexpr Clock::duration kLineLimit = 2s; // some devices answer with the first sound only
constexpr std::chrono::milliseconds kRest = 1s;
constexpr Clock::duration kCushion = 120ms; // between arrival and loudspeaker
constexpr Clock::duration kMostWaiting = 600ms;

Failure failureOf(const HttpAnswer& answer)
{
    switch (answer.status) {
    case TP_TRANSFER_OK:
        return Failure::None;
    case TP_TRANSFER_BAD_REQUEST:
        return Failure::BadArgument;
    case TP_TRANSFER_UNAUTHORIZED:
        return Failure::Authentication;
    case TP_TRANSFER_TIMEOUT:
        return Failure::Timeout;
    default:
        return Failure::Http;
    }
}

} // namespace

// What the microphone says, coded, as it says it.
class Talk::Outgoing : public HttpBody
{
public:
    explicit Outgoing(TalkEncoder& encoder)
        : encoder_(encoder)
        , microphone_(encoder.format())
    {
    }

    long long size() const override { return -1; } // has no end
    bool rewind() override { return true; }        // what was said is over

    std::optional<std::size_t> read(char* buffer, std::size_t length) override
    {
        while (waiting_.empty())
            waiting_ = encoder_.encode(microphone_.read());
        const std::size_t taken = waiting_.copy(buffer, length);
        waiting_.erase(0, taken);
        return taken;
    }

private:
    TalkEncoder& encoder_;
    Microphone microphone_;
    std::string waiting_;
};

Talk::Talk(TalkOptions options, Mixer& mixer)
    : options_(std::move(options))
    , mixer_(mixer)
    , voice_(mixer.makeVoice(Sharing::Beside))
    , encoder_(makeTalkEncoder(options_.format))
    , decoder_(TalkDecoder::make(options_.format))
{
}

Talk::~Talk()
{
    stop();
    if (sender_.joinable())
        sender_.join();
}

Failure Talk::open(std::string& text)
{
    if (!encoder_ || !decoder_)
        return Failure::SoundFailed;
    if (!isSendable(request(options_.dataUrl, HttpMethod::Get)))
        return Failure::BadArgument;
    const Failure opened = tell(options_.openUrl, text);
    if (opened != Failure::None)
        return opened;
    return startThreads() ? awaitLine(text) : Failure::Internal;
}

HttpRequest Talk::request(const std::string& url, HttpMethod method) const
{
    HttpRequest request;
    request.url = url;
    request.credential = options_.credential;
    request.method = method;
    return request;
}

Failure Talk::tell(const std::string& url, std::string& text)
{
    if (url.empty())
        return Failure::None;
    TextBody nothing("");
    HttpRequest telling = request(url, HttpMethod::Put);
    telling.body = &nothing;
    telling.limit = kOpenLimit;
    const HttpAnswer answer = asking_.perform(telling);
    text = answer.isOk() ? "" : answer.text;
    return failureOf(answer);
}

bool Talk::startThreads()
{
    try {
        receiver_ = std::thread([this] { receiveUntilStopped(); });
        sender_ = std::thread([this] {
            sendUntilStopped();
            finish();
        });
        return true;
    } catch (const std::system_error&) {
        stop();
        if (receiver_.joinable())
            receiver_.join();
        return false;
    }
}

// A refusal of the line comes at once and is the answer of the call; a device that is silent so far may speak later.
Failure Talk::awaitLine(std::string& text)
{
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, kLineLimit, [this] { return isLineUp_ || broken_; });
    if (!broken_)
        return Failure::None;
    text = broken_->text;
    const Failure failure = failureOf(*broken_);
    return failure == Failure::None ? Failure::Http : failure;
}

void Talk::stop()
{
    {
        const std::lock_guard lock(mutex_);
        isStopped_ = true;
    }
    sending_.cancel();
    receiving_.cancel();
}

bool Talk::isFinished() const
{
    const std::lock_guard lock(mutex_);
    return isFinished_;
}

void Talk::sendUntilStopped()
{
    pthread_setname_np(pthread_self(), "tide-talk-out");
    while (!sending_.isCancelled()) {
        Outgoing microphone(*encoder_);
        HttpRequest sending = request(options_.dataUrl, HttpMethod::Put);
        sending.headers = {"Content-Type: application/octet-stream", "Expect:"};
        sending.body = &microphone;
        report(sending_.perform(sending));
        sending_.wait(kRest);
    }
}

void Talk::receiveUntilStopped()
{
    pthread_setname_np(pthread_self(), "tide-talk-in");
    mixer_.open(voice_);
    HttpRequest receiving = request(options_.dataUrl, HttpMethod::Get);
    receiving.sink = [this](const HttpHead&, std::string_view bytes) {
        report(std::nullopt);
        decoder_->decode(bytes, [this](const AVFrame& frame) { hear(frame); });
        return true;
    };
    while (!receiving_.isCancelled()) {
        report(receiving_.perform(receiving));
        receiving_.wait(kRest);
    }
    mixer_.close(voice_);
}

void Talk::report(std::optional<HttpAnswer> answer)
{
    const std::lock_guard lock(mutex_);
    if (!answer)
        isLineUp_ = true;
    else if (!isLineUp_ && !broken_)
        broken_ = std::move(answer);
    changed_.notify_all();
}

// The device's clock is not ours: what has piled up is left out, and after a gap the cushion is made anew.
void Talk::hear(const AVFrame& frame)
{
    const TimePoint now = Clock::now();
    if (nextDue_ - now > kMostWaiting || frame.sample_rate <= 0)
        return;
    if (nextDue_ < now)
        nextDue_ = now + kCushion;
    voice_->push(frame, nextDue_);
    nextDue_ += soundLength(frame.nb_samples, frame.sample_rate);
}

// Last of all the device is told.
void Talk::finish()
{
    receiver_.join();
    TextBody nothing("");
    HttpRequest closing = request(options_.closeUrl, HttpMethod::Put);
    closing.body = &nothing;
    closing.limit = kCloseLimit;
    if (!options_.closeUrl.empty())
        asking_.perform(closing);
    const std::lock_guard lock(mutex_);
    isFinished_ = true;
}

} // namespace tide
