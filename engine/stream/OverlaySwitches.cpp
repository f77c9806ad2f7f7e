#include "engine/stream/OverlaySwitches.h"

namespace tide {

namespace {

constexpr std::size_t kLimit = 256;

} // namespace

bool OverlaySwitches::set(int selector, int part, int value)
{
    std::lock_guard lock(mutex_);
    const std::pair key(selector, part);
    if (values_.size() >= kLimit && values_.count(key) == 0)
        return false;
    values_[key] = value;
    return true;
}

int OverlaySwitches::get(int selector, int part) const
{
    std::lock_guard lock(mutex_);
    const auto found = values_.find({selector, part});
    return found == values_.end() ? 0 : found->second;
}

} // namespace tide
