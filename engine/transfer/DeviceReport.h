#pragma once

#include <optional>
#include <string>

namespace tide {

// What a device says at a status address: the numbers after the words "status" and "progress", whether it writes them
// as JSON, as XML or as lines of "name=value".
struct DeviceReport
{
    std::optional<long> status;   // 0 in order, everything else a failure
    std::optional<long> progress; // percent

    bool hasFailed() const { return status.value_or(0) != 0; }
    bool isDone() const { return progress.value_or(100) >= 100; } // a device without a progress has nothing left to do
};

DeviceReport parseDeviceReport(const std::string& text);

} // namespace tide
