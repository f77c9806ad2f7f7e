#include "tests/file_faults/FailingFiles.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <mutex>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace failing_files {

namespace {

std::string watched;
std::atomic<bool> isArmed{false};
std::mutex mutex; // guards what follows
Fault fault{};
int seen = 0;
int failed = 0;

} // namespace

void watch(const std::string& folder)
{
    watched = folder + "/";
}

void arm(const Fault& next)
{
    const std::lock_guard lock(mutex);
    fault = next;
    seen = failed = 0;
    isArmed = true;
}

int failures()
{
    const std::lock_guard lock(mutex);
    return failed;
}

void disarm()
{
    isArmed = false;
}

namespace {

bool isWatched(const std::string& path)
{
    return path.rfind(watched, 0) == 0;
}

bool isWatched(int file)
{
    char path[4096];
    const ssize_t length = readlink(("/proc/self/fd/" + std::to_string(file)).c_str(), path, sizeof path);
    return length > 0 && isWatched(std::string(path, static_cast<std::size_t>(length)));
}

// Leaves errno, or as much of `size` as is taken.
bool isDue(Call call, std::size_t& size)
{
    const std::lock_guard lock(mutex);
    if (call != fault.call || ++seen < fault.nth || (seen > fault.nth && !fault.lasts))
        return false;
    ++failed;
    const bool isHalved = seen == fault.nth && fault.lasts && size > 1;
    size /= 2;
    errno = fault.code;
    return !isHalved;
}

template <class File> bool fails(Call call, const File& file)
{
    std::size_t nothing = 0;
    return isArmed && isWatched(file) && isDue(call, nothing);
}

bool failsToWrite(int file, std::size_t& size)
{
    return isArmed && isWatched(file) && isDue(Call::Write, size);
}

template <class Function> Function real(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

} // namespace failing_files

using namespace failing_files;

#define EXPORTED __attribute__((visibility("default")))

#define FAILING(result, name, parameters, arguments, exceptions, failure)                                              \
    EXPORTED result name parameters exceptions                                                                         \
    {                                                                                                                  \
        static const auto next = real<result(*) parameters>(#name);                                                    \
        return failure ? -1 : next arguments;                                                                          \
    }

#define FAILING_OPEN(name)                                                                                             \
    EXPORTED int name(const char* path, int flags, ...)                                                                \
    {                                                                                                                  \
        static const auto next = real<int (*)(const char*, int, ...)>(#name);                                          \
        const bool isMade = (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE;                                     \
        va_list rest;                                                                                                  \
        va_start(rest, flags);                                                                                         \
        const mode_t mode = isMade ? va_arg(rest, mode_t) : 0;                                                         \
        va_end(rest);                                                                                                  \
        return fails(Call::Open, path) ? -1 : next(path, flags, mode);                                                 \
    }

// clang-format off
extern "C" {

FAILING_OPEN(open)
FAILING_OPEN(open64)
FAILING(ssize_t, write, (int file, const void* bytes, size_t size), (file, bytes, size), , failsToWrite(file, size))
FAILING(ssize_t, pwrite, (int file, const void* bytes, size_t size, off_t at), (file, bytes, size, at), ,
        failsToWrite(file, size))
FAILING(ssize_t, pwrite64, (int file, const void* bytes, size_t size, off_t at), (file, bytes, size, at), ,
        failsToWrite(file, size))
FAILING(int, rename, (const char* from, const char* to), (from, to), noexcept, fails(Call::Rename, from))
FAILING(int, linkat, (int folder, const char* from, int toFolder, const char* to, int flags),
        (folder, from, toFolder, to, flags), noexcept, fails(Call::Rename, to)) // how a file without a name gets one
FAILING(int, mkdir, (const char* path, mode_t mode), (path, mode), noexcept, fails(Call::MakeFolder, path))
FAILING(int, ftruncate, (int file, off_t size), (file, size), noexcept, fails(Call::Cut, file))
FAILING(int, ftruncate64, (int file, off_t size), (file, size), noexcept, fails(Call::Cut, file))
FAILING(int, fsync, (int file), (file), , fails(Call::Sync, file))
FAILING(int, fdatasync, (int file), (file), , fails(Call::Sync, file))

} // extern "C"
