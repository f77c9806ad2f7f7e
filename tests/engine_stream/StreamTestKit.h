#pragma once

#include "engine/stream/Stream.h"

#include <QProcess>

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
std::string bytesOf(const std::string& path);
std::string fileOf(const std::string& name, const std::string& bytes); // in the test's own folder; answers its path

StreamOptions optionsFor(const std::string& url, const std::string& auth = "", int protocol = 0);

int testNumber(const AVFrame& frame); // the number that a test pattern has burnt in

// A stream with somebody who looks: takes the pictures when they are due and keeps the messages.
class Viewer
{
public:
    explicit Viewer(StreamOptions options, std::shared_ptr<Voice> voice = nullptr);
    explicit Viewer(const std::string& url)
        : Viewer(optionsFor(url))
    {
    }
    ~Viewer();

    Stream& stream() { return *stream_; }
    PicturePtr next(int milliseconds = 5000); // null when none became due in time
    std::vector<PicturePtr> take(std::size_t count);
    std::vector<PicturePtr> takeFor(int milliseconds);
    std::vector<PicturePtr> takeAll(); // until the stream has ended

    // Looks on meanwhile. The message and those before it are done with.
    bool waitFor(TP_Message what, int milliseconds = 8000);
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
    explicit Camera(const QStringList& settings = {}, int port = 0);
    ~Camera() { die(); }

    int port() const { return port_; }
    std::string url(const std::string& path = "/live", const std::string& user = "") const;
    void freeze(bool frozen) const;
    void die();

private:
    int port_;
    QProcess process_;
};

} // namespace tide
