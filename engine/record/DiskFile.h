#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace tide {

// A file that is being written, held by its descriptor: it may be renamed meanwhile and is never looked up again.
// One user at a time.
class DiskFile
{
public:
    // Null where the file cannot be made, is no ordinary file, or is being written by another recording.
    static std::unique_ptr<DiskFile> create(const std::string& path);

    // Closes. A file in which there is nothing is taken away again, if it still has its name.
    ~DiskFile();
    DiskFile(const DiskFile&) = delete;
    DiskFile& operator=(const DiskFile&) = delete;

    // Appends all or fails; after a failure what was appended is unknown.
    bool write(const std::uint8_t* data, std::size_t size);
    bool overwrite(std::int64_t at, const std::uint8_t* data, std::size_t size); // a few bytes of what is there
    bool cutTo(std::int64_t size);
    std::int64_t size() const { return size_; }

    bool isDeleted() const; // its last name is gone: what is written reaches nobody

private:
    DiskFile(int descriptor, std::string path, std::int64_t size);

    const int descriptor_;
    const std::string path_;
    std::int64_t size_;
};

} // namespace tide
