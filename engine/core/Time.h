#pragma once

#include <chrono>

namespace tide {

using Clock = std::chrono::steady_clock;
using TimePoint = Clock::time_point;
using Microseconds = std::chrono::microseconds;

} // namespace tide
