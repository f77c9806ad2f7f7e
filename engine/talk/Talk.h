#pragma once

#include "engine/core/Credential.h"
#include "engine/core/Failure.h"
#include "engine/sound/Mixer.h"
#include "engine/talk/TalkCoder.h"
#include "engine/transfer/HttpClient.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace tide {

struct TalkOptions
{
    std::string openUrl; // empty where a device needs no opening
    std::string closeUrl;
    std::string dataUrl;
    Credential credential;
    TalkFormat format;
};

// A two-way link with one device. The microphone goes out in the endless body of a PUT to the data address, from a
// thread of its own; sound comes back in the endless answer to a GET of it, on another. A line that breaks is tried
// again until the talk is stopped.
class Talk
{
public:
    Talk(TalkOptions options, Mixer& mixer);
    ~Talk(); // waits until the device has been told, or does not answer
    Talk(const Talk&) = delete;
    Talk& operator=(const Talk&) = delete;

    // Waits for the device's answer, with time-outs. After a failure `text` has the server's words.
    Failure open(std::string& text);

    // Returns at once; what is left to do is done by the talk's thread. Any thread may call.
    void stop();
    bool isFinished() const;

private:
    class Outgoing;

    HttpRequest request(const std::string& url, HttpMethod method) const;
    Failure tell(const std::string& url, std::string& text);
    bool startThreads();
    Failure awaitLine(std::string& text);

    // Threads.
    void sendUntilStopped();
    void receiveUntilStopped();
    void finish();
    void hear(const AVFrame& frame);
    void report(std::optional<HttpAnswer> answer);

    const TalkOptions options_;
    Mixer& mixer_;
    const std::shared_ptr<Voice> voice_;
    HttpClient asking_, sending_, receiving_;
    std::unique_ptr<TalkEncoder> encoder_; // sending thread
    std::unique_ptr<TalkDecoder> decoder_; // receiving thread
    TimePoint nextDue_;                    // receiving thread

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    bool isStopped_ = false;           // mutex_
    bool isLineUp_ = false;            // mutex_; sound may come back
    bool isFinished_ = false;          // mutex_
    std::optional<HttpAnswer> broken_; // mutex_; how the line has failed first
    std::thread sender_, receiver_;
};

} // namespace tide
