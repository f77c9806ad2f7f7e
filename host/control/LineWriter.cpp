#include "host/control/LineWriter.h"

#include <QJsonDocument>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace quillmark::lumen_wall {

namespace {

constexpr size_t kWaitingEvents = 10000;
constexpr int kPatienceMs = 3000; // for a reader that takes nothing while the program ends

} // namespace

LineWriter::LineWriter(int descriptor, std::function<void()> onGone)
    : descriptor_(descriptor)
    , onGone_(std::move(onGone))
    , thread_(&LineWriter::run, this)
{
}

LineWriter::~LineWriter()
{
    {
        const std::lock_guard guard(lock_);
        closing_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void LineWriter::answer(const QJsonObject& line)
{
    const std::lock_guard guard(lock_);
    push(line);
}

void LineWriter::event(const QJsonObject& line)
{
    const std::lock_guard guard(lock_);
    if (lines_.size() >= kWaitingEvents) {
        ++dropped_;
        return;
    }
    if (dropped_ > 0)
        push({{"dropped", std::exchange(dropped_, 0)}});
    push(line);
}

void LineWriter::push(const QJsonObject& line)
{
    lines_.push_back(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
    changed_.notify_one();
}

void LineWriter::run()
{
    std::unique_lock guard(lock_);
    for (;;) {
        changed_.wait(guard, [this] { return closing_ || !lines_.empty(); });
        if (lines_.empty())
            return;
        const QByteArray line = std::move(lines_.front());
        lines_.pop_front();
        guard.unlock();
        const bool written = write(line);
        guard.lock();
        if (!written)
            break;
    }
    guard.unlock();
    onGone_();
}

// In pieces that a pipe with room takes at once, so that a reader who has stopped reading cannot hold the thread.
bool LineWriter::write(const QByteArray& bytes)
{
    for (int from = 0; from < bytes.size();) {
        if (!waitForRoom())
            return false;
        const int piece = std::min(bytes.size() - from, PIPE_BUF);
        const ssize_t count = ::write(descriptor_, bytes.constData() + from, static_cast<size_t>(piece));
        if (count < 0 && errno != EINTR && errno != EAGAIN)
            return false;
        from += static_cast<int>(std::max<ssize_t>(count, 0));
    }
    return true;
}

bool LineWriter::waitForRoom()
{
    constexpr int slice = 100;
    for (int waited = 0; waited < kPatienceMs; waited += closing() ? slice : 0) {
        pollfd watched{descriptor_, POLLOUT, 0};
        if (poll(&watched, 1, slice) > 0)
            return (watched.revents & POLLOUT) != 0;
    }
    return false;
}

bool LineWriter::closing()
{
    const std::lock_guard guard(lock_);
    return closing_;
}

} // namespace quillmark::lumen_wall
