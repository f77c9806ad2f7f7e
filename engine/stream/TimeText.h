#pragma once

#include "engine/core/Time.h"

#include <optional>
#include <string>

namespace tide {

// A start or stop time as a host writes it.
struct StreamTime
{
    enum class Kind
    {
        None,
        FromStart,
        WallClock
    };
    Kind kind = Kind::None;
    Microseconds value{}; // from the start of the source, or since 1970 in UTC
};

// Understands, besides empty text:
//   seconds                "90", "90.5"
//   hours                  "00:01:30", "00:01:30.5"
//   date and time          "2026-05-01T10:00:00Z", "2026-05-01 10:00:00.250", "20260501T100000Z", "20260501100000"
// A date without "Z" or an offset such as "+02:00" is local time.
std::optional<StreamTime> parseStreamTime(const std::string& text);

// "20260501T100000Z", as recorders on the network take it.
std::string compactUtc(Microseconds since1970);

} // namespace tide
