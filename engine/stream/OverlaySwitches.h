#pragma once

#include <map>
#include <mutex>
#include <utility>

namespace tide {

// The overlay switches of one stream, as the host has set them. Any thread may call.
class OverlaySwitches
{
public:
    bool set(int selector, int part, int value); // false when there are more than any host has use for
    int get(int selector, int part) const;       // 0 unless set

private:
    mutable std::mutex mutex_;
    std::map<std::pair<int, int>, int> values_; // guarded by mutex_
};

} // namespace tide
