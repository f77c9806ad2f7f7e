#include "host/control/LineReader.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <unistd.h>
#include <utility>

namespace quillmark::lumen_wall {

LineSplitter::LineSplitter(int limit, OnLine onLine, OnTooLong onTooLong)
    : limit_(limit)
    , onLine_(std::move(onLine))
    , onTooLong_(std::move(onTooLong))
{
}

void LineSplitter::feed(const char* bytes, int count)
{
    while (const void* lineFeed = std::memchr(bytes, '\n', static_cast<size_t>(count))) {
        const int length = static_cast<int>(static_cast<const char*>(lineFeed) - bytes);
        append(bytes, length);
        finishLine();
        bytes += length + 1;
        count -= length + 1;
    }
    append(bytes, count);
}

void LineSplitter::end()
{
    finishLine();
}

void LineSplitter::append(const char* bytes, int count)
{
    tooLong_ = tooLong_ || pending_.size() + count > limit_;
    if (tooLong_)
        pending_.clear();
    else
        pending_.append(bytes, count);
}

void LineSplitter::finishLine()
{
    const QByteArray line = std::exchange(pending_, {}).trimmed();
    if (std::exchange(tooLong_, false))
        onTooLong_();
    else if (!line.isEmpty())
        onLine_(line);
}

LineReader::LineReader(int descriptor, LineSplitter splitter, std::function<void()> onEnd)
    : descriptor_(descriptor)
    , stop_{-1, -1}
    , splitter_(std::move(splitter))
    , onEnd_(std::move(onEnd))
{
    if (pipe(stop_) == 0)
        thread_ = std::thread(&LineReader::run, this);
}

LineReader::~LineReader()
{
    close(stop_[1]);
    if (thread_.joinable())
        thread_.join();
    close(stop_[0]);
}

void LineReader::run()
{
    char buffer[65536];
    while (waitForInput()) {
        const ssize_t count = read(descriptor_, buffer, sizeof(buffer));
        if (count < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        if (count <= 0) {
            splitter_.end();
            onEnd_();
            return;
        }
        splitter_.feed(buffer, static_cast<int>(count));
    }
}

bool LineReader::waitForInput() const
{
    pollfd watched[] = {{descriptor_, POLLIN, 0}, {stop_[0], POLLIN, 0}};
    while (poll(watched, 2, -1) < 0 && errno == EINTR) {
    }
    return watched[1].revents == 0;
}

} // namespace quillmark::lumen_wall
