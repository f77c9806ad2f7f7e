#include "engine/record/DiskFile.h"

#include <cerrno>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tide {

namespace {

// A pipe without a reader would hold us up, a device would swallow all.
std::optional<std::int64_t> sizeOfOrdinary(int descriptor)
{
    struct stat about
    {
    };
    return fstat(descriptor, &about) == 0 && S_ISREG(about.st_mode) ? std::optional(about.st_size) : std::nullopt;
}

// The lock tells two recordings of one file apart; file systems without locks are taken as they are.
bool claim(int descriptor)
{
    return flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

} // namespace

std::unique_ptr<DiskFile> DiskFile::create(const std::string& path)
{
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0666);
    if (descriptor < 0)
        return nullptr;
    const std::optional<std::int64_t> size = sizeOfOrdinary(descriptor);
    if (!size || !claim(descriptor)) {
        close(descriptor);
        return nullptr;
    }
    std::unique_ptr<DiskFile> file(new DiskFile(descriptor, path, *size));
    return file->cutTo(0) ? std::move(file) : nullptr;
}

DiskFile::DiskFile(int descriptor, std::string path, std::int64_t size)
    : descriptor_(descriptor)
    , path_(std::move(path))
    , size_(size)
{
}

DiskFile::~DiskFile()
{
    struct stat ours
    {
    }, named{};
    const bool isNamed = stat(path_.c_str(), &named) == 0 && fstat(descriptor_, &ours) == 0 &&
                         named.st_ino == ours.st_ino && named.st_dev == ours.st_dev;
    if (size_ == 0 && isNamed)
        unlink(path_.c_str());
    close(descriptor_);
}

bool DiskFile::write(const std::uint8_t* data, std::size_t size)
{
    while (size > 0) {
        const ssize_t written = ::write(descriptor_, data, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        data += written;
        size -= static_cast<std::size_t>(written);
        size_ += written;
    }
    return true;
}

bool DiskFile::overwrite(std::int64_t at, const std::uint8_t* data, std::size_t size)
{
    return pwrite(descriptor_, data, size, at) == static_cast<ssize_t>(size);
}

bool DiskFile::cutTo(std::int64_t size)
{
    if (ftruncate(descriptor_, size) != 0 || lseek(descriptor_, size, SEEK_SET) != size)
        return false;
    size_ = size;
    return true;
}

bool DiskFile::isDeleted() const
{
    struct stat about
    {
    };
    return fstat(descriptor_, &about) == 0 && about.st_nlink == 0;
}

} // namespace tide
