#pragma once

#include <string>
#include <string_view>

namespace tide {

// A file that is written beside its place, as "<path>.part", and takes the place when it is whole. Whatever else ends
// it, the part is removed; the part of a killed process is taken over by the next one for the same place.
class PartFile
{
public:
    PartFile() = default;
    ~PartFile();
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    // The functions below answer false with errno.
    bool open(const std::string& path); // EBUSY: another download writes there
    bool write(std::string_view bytes);
    bool restart(); // empty again
    bool publish(); // it takes its place
    bool commit();  // the same, once the disk has it: a loss of power finds it whole
    void discard(); // nothing is left of it

    long long size() const { return size_; }

private:
    bool openPart();
    void close();

    std::string path_;
    std::string part_;
    int file_ = -1;
    long long size_ = 0;
};

} // namespace tide
