#include "engine/transfer/DeviceReport.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace tide {

namespace {

// The number that follows `word` with nothing but marks between them.
std::optional<long> numberAfter(const std::string& text, const std::string& word)
{
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
        const auto number = text.find_first_not_of("\"' \t\r\n:=>", at + word.size());
        if (number == std::string::npos || number == at + word.size())
            continue;
        const char* begin = text.c_str() + number;
        char* end = nullptr;
        const long value = std::strtol(begin, &end, 10);
        if (end != begin)
            return value;
    }
    return std::nullopt;
}

} // namespace

DeviceReport parseDeviceReport(const std::string& text)
{
    std::string lowered(text);
    std::transform(lowered.begin(), lowered.end(), lowered.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return {numberAfter(lowered, "status"), numberAfter(lowered, "progress")};
}

} // namespace tide
