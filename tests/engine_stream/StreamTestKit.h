#pragma once

#include "engine/stream/Stream.h"

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tide {

// A clip in the test's own folder, made once by the ffmpeg tool. `arguments` stand before the file name.
std::string clip(const std::string& name, const std::string& arguments);
std::string h264Clip(); // 3 s, 25 pictures a second, B pictures, groups of 20, with sound

int testNumber(const AVFrame& frame); // the number that a test pattern has burnt in

// A stream with somebody who looks: takes the pictures when they are due and keeps the messages.
class Viewer
{
public:
    explicit Viewer(StreamOptions options);
    explicit Viewer(const std::string& url);
    ~Viewer();

    Stream& stream() { return *stream_; }
    PicturePtr next(int milliseconds = 5000); // null when none became due in time
    std::vector<PicturePtr> take(std::size_t count);
    std::vector<PicturePtr> takeFor(int milliseconds);
    std::vector<PicturePtr> takeAll(); // until the stream has ended

    bool waitFor(TP_Message what,
                 int milliseconds = 8000); // looking on meanwhile; it and those before it are done with
    std::vector<int> messages();

private:
    using Predicate = std::function<bool(const std::vector<PicturePtr>&)>;

    std::vector<PicturePtr> look(const Predicate& enough, int milliseconds);
    bool forget(TP_Message what); // and what came before it; false when it has not come
    static void onMessage(int playId, unsigned message, void* user);

    Notifier notifier_;
    std::mutex mutex_; // guards messages_ and events_
    std::condition_variable changed_;
    std::vector<int> messages_;
    unsigned events_ = 0;
    std::unique_ptr<Stream> stream_;
};

// A camera on loopback: a process of its own.
class Camera
{
public:
    explicit Camera(std::vector<std::string> settings = {}, int port = 0);
    ~Camera();

    int port() const { return port_; }
    std::string url(const std::string& path = "/live", const std::string& user = "") const;
    void freeze(bool frozen) const;
    void die();

private:
    int port_;
    int process_ = -1;
};

} // namespace tide
