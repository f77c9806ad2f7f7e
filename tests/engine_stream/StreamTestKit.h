#pragma once

#include "engine/core/Log.h"
#include "engine/stream/Stream.h"
#include "tests/support/Engine.h"
#include "tests/support/HttpServer.h"

#include <QCoreApplication>
#include <QProcess>
#include <QUrl>

#include <csignal>

namespace tide {

inline const engine_test::Folder& folder()
{
    static const engine_test::Folder one;
    return one;
}

// A clip in the folder, made once by the ffmpeg tool. `arguments` stand before the file name.
inline std::string clip(const std::string& name, const std::string& arguments)
{
    std::string path = folder() / name;
    if (!std::filesystem::exists(path))
        engine_test::makeClip(arguments + " " + path);
    return path;
}

inline std::string clipBytes(const std::string& name, const std::string& arguments)
{
    clip(name, arguments);
    return folder().read(name);
}

inline std::string h264Clip() // 3 s, 25 pictures a second, B pictures, groups of 20, with sound
{
    return clip("h264.mp4", "-f lavfi -i testsrc2=size=320x240:rate=25:duration=3 -f lavfi -i sine=440:duration=3 "
                            "-c:v libx264 -preset veryfast -bf 2 -g 20 -sc_threshold 0 -pix_fmt yuv420p -c:a aac");
}

inline StreamOptions optionsFor(const std::string& url, const std::string& auth = "", int protocol = 0)
{
    return {url, auth, protocol, 0, "", "", 0, {}, Direction::Forward, 6};
}

// The number that a test pattern has burnt in.
inline int testNumber(const AVFrame& frame)
{
    int number = 0;
    const std::uint8_t* const line = frame.data[0] + frame.height / 24 * frame.linesize[0];
    for (int i = 0; i < 24; ++i)
        number = number * 2 + (line[frame.width * (2 * i + 1) / 48] > 128 ? 1 : 0);
    return number;
}

// A stream with somebody who looks: takes the pictures when they are due and keeps the messages.
class Viewer
{
public:
    using Pictures = std::vector<PicturePtr>;

    explicit Viewer(const std::string& url)
        : Viewer(optionsFor(url))
    {
    }
    explicit Viewer(StreamOptions options, std::shared_ptr<Voice> voice = nullptr)
    {
        quietFfmpeg();
        notifier_.setHandler(&Viewer::onMessage, this);
        notifier_.open(7);
        stream_ = std::make_unique<Stream>(7, std::move(options), StreamLinks{&notifier_, std::move(voice), [] {}});
        stream_->start();
    }
    ~Viewer()
    {
        stream_.reset();
        notifier_.close(7);
    }

    Stream& stream() { return *stream_; }

    Pictures take(std::size_t count, int milliseconds = 20000)
    {
        return look([count](const Pictures& taken) { return taken.size() >= count; }, milliseconds);
    }
    Pictures takeFor(int milliseconds) { return take(SIZE_MAX, milliseconds); }
    PicturePtr next(int milliseconds = 5000) // null when none became due in time
    {
        const Pictures pictures = take(1, milliseconds);
        return pictures.empty() ? nullptr : pictures.front();
    }
    Pictures takeAll() // until the stream has ended
    {
        bool hasEnded = false;
        Pictures pictures = look([&](const Pictures&) { return hasEnded = forget(TP_MESSAGE_ENDED); }, 30000);
        EXPECT_TRUE(hasEnded);
        return pictures;
    }
    bool waitFor(TP_Message what, int milliseconds = 8000) // looks on; the message and those before it are done with
    {
        bool came = false;
        look([&](const Pictures&) { return came = forget(what); }, milliseconds);
        return came;
    }
    std::vector<int> messages()
    {
        std::lock_guard lock(mutex_);
        return messages_;
    }

private:
    template <class Enough> Pictures look(Enough enough, int milliseconds)
    {
        Pictures taken;
        const TimePoint end = Clock::now() + std::chrono::milliseconds(milliseconds);
        while (!enough(taken) && Clock::now() < end) {
            if (PicturePtr picture = stream_->take(Clock::now()))
                taken.push_back(std::move(picture));
            else
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return taken;
    }

    bool forget(TP_Message what)
    {
        std::lock_guard lock(mutex_);
        const auto found = std::find(messages_.begin(), messages_.end(), what);
        if (found == messages_.end())
            return false;
        messages_.erase(messages_.begin(), found + 1);
        return true;
    }

    static void onMessage(int, unsigned message, void* user)
    {
        auto& viewer = *static_cast<Viewer*>(user);
        std::lock_guard lock(viewer.mutex_);
        viewer.messages_.push_back(static_cast<int>(message));
    }

    Notifier notifier_;
    std::mutex mutex_; // guards messages_
    std::vector<int> messages_;
    std::unique_ptr<Stream> stream_;
};

// A camera on loopback: a process of its own.
class Camera
{
public:
    explicit Camera(const QStringList& settings = {}, int port = freePort())
        : port_(port)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("TSAN_OPTIONS", "report_bugs=0"); // the camera is not what is tested
        environment.insert("ASAN_OPTIONS", "detect_leaks=0:verify_asan_link_order=0");
        process_.setProcessEnvironment(environment);
        process_.start(QCoreApplication::applicationDirPath() + "/rtsp_test_server",
                       QStringList{QString::number(port_), "120"} + settings);
        EXPECT_TRUE(process_.waitForReadyRead()) << "the camera does not start";
    }
    ~Camera() { die(); }

    int port() const { return port_; }
    std::string url(const std::string& path = "/live", const std::string& user = "") const
    {
        return "rtsp://" + user + "127.0.0.1:" + std::to_string(port_) + path;
    }
    void freeze(bool frozen) const { kill(static_cast<pid_t>(process_.processId()), frozen ? SIGSTOP : SIGCONT); }
    void die() { process_.kill(), process_.waitForFinished(); }

private:
    static int freePort() { return QUrl(QString::fromStdString(http_test::HttpServer().url("/"))).port(); }

    const int port_;
    QProcess process_;
};

} // namespace tide
