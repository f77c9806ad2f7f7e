#include "engine/transfer/HttpBody.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tide {

TextBody::TextBody(std::string text)
    : text_(std::move(text))
{
}

std::optional<std::size_t> TextBody::read(char* buffer, std::size_t length)
{
    const std::size_t taken = text_.copy(buffer, length, at_);
    at_ += taken;
    return taken;
}

bool TextBody::rewind()
{
    at_ = 0;
    return true;
}

FileBody::~FileBody()
{
    close();
}

void FileBody::close()
{
    if (file_ >= 0)
        ::close(file_);
    file_ = -1;
}

// Without waiting: a pipe would keep the caller until somebody writes to it.
bool FileBody::open(const std::string& path)
{
    file_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat about = {};
    if (file_ < 0 || fstat(file_, &about) != 0)
        return false;
    if (!S_ISREG(about.st_mode)) {
        errno = EINVAL;
        return false;
    }
    size_ = left_ = about.st_size;
    return true;
}

std::optional<std::size_t> FileBody::read(char* buffer, std::size_t length)
{
    const auto wanted = static_cast<std::size_t>(std::min<long long>(left_, static_cast<long long>(length)));
    if (wanted == 0)
        return 0;
    const ssize_t got = ::read(file_, buffer, wanted);
    if (got <= 0) // the file has become shorter since its length was told
        return std::nullopt;
    left_ -= got;
    return static_cast<std::size_t>(got);
}

bool FileBody::rewind()
{
    left_ = size_;
    return lseek(file_, 0, SEEK_SET) == 0;
}

} // namespace tide
