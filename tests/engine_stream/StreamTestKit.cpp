#include "tests/engine_stream/StreamTestKit.h"

#include "engine/core/Log.h"

#include <QCoreApplication>

#include <algorithm>
#include <arpa/inet.h>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tide {

namespace {

int freePort()
{
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof(address);
    bind(socket, reinterpret_cast<sockaddr*>(&address), length);
    getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length);
    close(socket);
    return ntohs(address.sin_port);
}

std::string pathOf(const std::string& name)
{
    return qEnvironmentVariable("PWD").toStdString() + "/" + name;
}

} // namespace

std::string clip(const std::string& name, const std::string& arguments)
{
    const std::string path = pathOf(name);
    const std::string command = "ffmpeg -nostdin -v error -y " + arguments + " " + path;
    EXPECT_TRUE(std::filesystem::exists(path) || std::system(command.c_str()) == 0) << arguments;
    return path;
}

std::string bytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string fileOf(const std::string& name, const std::string& bytes)
{
    std::ofstream(pathOf(name), std::ios::binary) << bytes;
    return pathOf(name);
}

StreamOptions optionsFor(const std::string& url, const std::string& auth, int protocol)
{
    StreamOptions options;
    options.url = url;
    options.auth = auth;
    options.protocol = protocol;
    return options;
}

std::string h264Clip()
{
    return clip("h264.mp4", "-f lavfi -i testsrc2=size=320x240:rate=25:duration=3 -f lavfi -i sine=440:duration=3 "
                            "-c:v libx264 -preset veryfast -bf 2 -g 20 -sc_threshold 0 -pix_fmt yuv420p -c:a aac");
}

int testNumber(const AVFrame& frame)
{
    int number = 0;
    for (int i = 0; i < 24; ++i) {
        const int x = frame.width * (2 * i + 1) / 48;
        const int y = frame.height / 24;
        number = number * 2 + (frame.data[0][y * frame.linesize[0] + x] > 128 ? 1 : 0);
    }
    return number;
}

Viewer::Viewer(StreamOptions options, std::shared_ptr<Voice> voice)
{
    quietFfmpeg();
    notifier_.setHandler(&Viewer::onMessage, this);
    notifier_.open(7);
    const auto wake = [this] {
        std::lock_guard lock(mutex_);
        ++events_;
        changed_.notify_all();
    };
    stream_ = std::make_unique<Stream>(7, std::move(options), StreamLinks{&notifier_, std::move(voice), wake});
    stream_->start();
}

Viewer::~Viewer()
{
    stream_.reset();
    notifier_.close(7);
}

PicturePtr Viewer::next(int milliseconds)
{
    const auto pictures = look([](const auto& taken) { return !taken.empty(); }, milliseconds);
    return pictures.empty() ? nullptr : pictures.front();
}

std::vector<PicturePtr> Viewer::take(std::size_t count)
{
    return look([count](const auto& taken) { return taken.size() >= count; }, 20000);
}

std::vector<PicturePtr> Viewer::takeFor(int milliseconds)
{
    return look([](const auto&) { return false; }, milliseconds);
}

std::vector<PicturePtr> Viewer::takeAll()
{
    bool ended = false;
    auto pictures = look([&](const auto&) { return ended = forget(TP_MESSAGE_ENDED); }, 30000);
    EXPECT_TRUE(ended);
    return pictures;
}

bool Viewer::waitFor(TP_Message what, int milliseconds)
{
    bool came = false;
    look([&](const auto&) { return came = forget(what); }, milliseconds);
    return came;
}

std::vector<PicturePtr> Viewer::look(const Predicate& enough, int milliseconds)
{
    std::vector<PicturePtr> taken;
    const TimePoint end = Clock::now() + std::chrono::milliseconds(milliseconds);
    while (!enough(taken) && Clock::now() < end) {
        std::unique_lock lock(mutex_);
        const unsigned seen = events_;
        lock.unlock();
        if (PicturePtr picture = stream_->take(Clock::now())) {
            taken.push_back(std::move(picture));
            continue;
        }
        const TimePoint due = std::min(stream_->nextDue(), end);
        lock.lock();
        changed_.wait_until(lock, due, [&] { return events_ != seen; });
    }
    return taken;
}

bool Viewer::forget(TP_Message what)
{
    std::lock_guard lock(mutex_);
    const auto found = std::find(messages_.begin(), messages_.end(), what);
    if (found == messages_.end())
        return false;
    messages_.erase(messages_.begin(), found + 1);
    return true;
}

std::vector<int> Viewer::messages()
{
    std::lock_guard lock(mutex_);
    return messages_;
}

void Viewer::onMessage(int, unsigned message, void* user)
{
    auto& viewer = *static_cast<Viewer*>(user);
    std::lock_guard lock(viewer.mutex_);
    viewer.messages_.push_back(static_cast<int>(message));
    ++viewer.events_;
    viewer.changed_.notify_all();
}

Camera::Camera(const QStringList& settings, int port)
    : port_(port != 0 ? port : freePort())
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TSAN_OPTIONS", "report_bugs=0"); // the camera is not what is tested
    environment.insert("ASAN_OPTIONS", "detect_leaks=0");
    process_.setProcessEnvironment(environment);
    process_.start(QCoreApplication::applicationDirPath() + "/rtsp_test_server",
                   QStringList{QString::number(port_), "120"} + settings);
    EXPECT_TRUE(process_.waitForReadyRead()) << "the camera does not start";
}

std::string Camera::url(const std::string& path, const std::string& user) const
{
    return "rtsp://" + user + "127.0.0.1:" + std::to_string(port_) + path;
}

void Camera::freeze(bool frozen) const
{
    kill(static_cast<pid_t>(process_.processId()), frozen ? SIGSTOP : SIGCONT);
}

void Camera::die()
{
    process_.kill();
    process_.waitForFinished();
}

} // namespace tide
