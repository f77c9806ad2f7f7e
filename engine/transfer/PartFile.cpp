#include "engine/transfer/PartFile.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tide {

namespace {

bool isFolder(const std::string& path)
{
    struct stat about = {};
    return path.empty() || path.back() == '/' || (stat(path.c_str(), &about) == 0 && S_ISDIR(about.st_mode));
}

// The one who had the lock before may have given the file its name or removed it meanwhile.
bool isStillAt(int file, const std::string& path)
{
    struct stat open = {};
    struct stat named = {};
    return fstat(file, &open) == 0 && lstat(path.c_str(), &named) == 0 && open.st_ino == named.st_ino &&
           open.st_dev == named.st_dev;
}

} // namespace

PartFile::~PartFile()
{
    discard();
}

bool PartFile::open(const std::string& path)
{
    if (isFolder(path)) {
        errno = EISDIR;
        return false;
    }
    path_ = path;
    part_ = path + ".part";
    return openPart();
}

bool PartFile::openPart()
{
    do {
        close();
        file_ = ::open(part_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666);
        if (file_ < 0)
            return false;
        if (flock(file_, LOCK_EX | LOCK_NB) != 0) {
            close();
            errno = EBUSY;
            return false;
        }
    } while (!isStillAt(file_, part_));
    return restart();
}

bool PartFile::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(file_, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        size_ += written;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool PartFile::restart()
{
    size_ = 0;
    return ftruncate(file_, 0) == 0 && lseek(file_, 0, SEEK_SET) == 0;
}

bool PartFile::commit()
{
    return fsync(file_) == 0 && publish();
}

bool PartFile::publish()
{
    if (std::rename(part_.c_str(), path_.c_str()) != 0)
        return false;
    close();
    return true;
}

void PartFile::discard()
{
    if (file_ >= 0)
        unlink(part_.c_str());
    close();
}

void PartFile::close()
{
    if (file_ >= 0)
        ::close(file_);
    file_ = -1;
}

} // namespace tide
