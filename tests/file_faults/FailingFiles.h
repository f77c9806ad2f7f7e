#pragma once

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <filesystem>
#include <mutex>
#include <string>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// What the process asks of the file system, made to fail. The calls are defined in the program itself, so those of Qt and
// of all other libraries come by too. Any thread may call them.
namespace failing_files {

struct Fault
{
    std::string_view call; // "open", "write", "rename", "make folder", "cut" or "sync"
    int nth;               // counted from 1 since it was armed; 0: none fails
    int code;
    bool lasts; // all further ones fail too, and of what the nth should write half is taken: a disk that is full
};

inline std::string watched; // set before the first fault: calls on files outside neither fail nor count
inline std::atomic<bool> isArmed{false};
inline std::mutex mutex; // guards what follows
inline Fault fault{};
inline int seen = 0;

inline void arm(const Fault& next)
{
    const std::lock_guard lock(mutex);
    fault = next;
    seen = 0;
    isArmed = next.nth > 0;
}

inline int failures() // of the fault that was armed last
{
    const std::lock_guard lock(mutex);
    const int since = std::max(seen - fault.nth + 1, 0);
    return fault.lasts ? since : std::min(since, 1);
}

inline std::string pathOf(const char* path)
{
    return path;
}

inline std::string pathOf(int file)
{
    std::error_code none;
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), none);
}

// Leaves errno, or in `size` as much of it as is taken.
template <class File> bool fails(std::string_view call, File file, std::size_t* size = nullptr)
{
    if (!isArmed || pathOf(file).rfind(watched, 0) != 0)
        return false;
    const std::lock_guard lock(mutex);
    if (call != fault.call || ++seen < fault.nth || (seen > fault.nth && !fault.lasts))
        return false;
    errno = fault.code;
    if (!size || *size < 2 || seen > fault.nth || !fault.lasts)
        return true;
    *size /= 2;
    return false;
}

} // namespace failing_files

#define EXPORTED extern "C" __attribute__((visibility("default")))

#define FAILING(result, name, parameters, arguments, exceptions, ...)                                                  \
    EXPORTED result name parameters exceptions                                                                         \
    {                                                                                                                  \
        static const auto next = reinterpret_cast<result(*) parameters>(dlsym(RTLD_NEXT, #name));                      \
        return failing_files::fails(__VA_ARGS__) ? -1 : next arguments;                                                \
    }
#define SAME(name, of) EXPORTED decltype(of) name __attribute__((alias(#of)));

EXPORTED int open(const char* path, int flags, ...)
{
    static const auto next = reinterpret_cast<decltype(&open)>(dlsym(RTLD_NEXT, "open"));
    const bool isMade = (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE;
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = isMade ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return failing_files::fails("open", path) ? -1 : next(path, flags, mode);
}

// clang-format off
FAILING(ssize_t, write, (int file, const void* bytes, size_t size), (file, bytes, size), , "write", file, &size)
FAILING(ssize_t, pwrite, (int file, const void* bytes, size_t size, off_t at), (file, bytes, size, at), ,
        "write", file, &size)
FAILING(int, rename, (const char* from, const char* to), (from, to), noexcept, "rename", from)
FAILING(int, linkat, (int folder, const char* from, int toFolder, const char* to, int flags),
        (folder, from, toFolder, to, flags), noexcept, "rename", to) // how a file without a name gets one
FAILING(int, mkdir, (const char* path, mode_t mode), (path, mode), noexcept, "make folder", path)
FAILING(int, ftruncate, (int file, off_t size), (file, size), noexcept, "cut", file)
FAILING(int, fsync, (int file), (file), , "sync", file)
SAME(open64, open)
SAME(pwrite64, pwrite)
SAME(ftruncate64, ftruncate)
SAME(fdatasync, fsync)
