#include "engine/stream/TimeText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <ctime>
#include <regex>

namespace tide {

namespace {

constexpr std::size_t kMaxLength = 64;
constexpr double kMaxSeconds = 1e10;

Microseconds fromSeconds(double seconds)
{
    return Microseconds(std::llround(seconds * 1e6));
}

// Not std::stod: the decimal point is a point in every locale. Unmatched groups are 0.
template <typename Number> Number number(const std::ssub_match& match)
{
    const std::string text = match.str();
    Number value{};
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::optional<StreamTime> fromStart(double seconds)
{
    if (seconds > kMaxSeconds)
        return std::nullopt;
    return StreamTime{StreamTime::Kind::FromStart, fromSeconds(seconds)};
}

bool isRealDate(const std::tm& asked, std::tm copy)
{
    timegm(&copy);
    return copy.tm_mday == asked.tm_mday && copy.tm_mon == asked.tm_mon && copy.tm_hour == asked.tm_hour &&
           copy.tm_min == asked.tm_min && copy.tm_sec == asked.tm_sec;
}

// Groups: 1 to 6 year to second, 7 fraction, 8 "Z" or an offset, 9 its sign, 10 and 11 its hours and minutes.
std::optional<StreamTime> fromDate(const std::smatch& parts)
{
    std::tm date{};
    date.tm_year = number<int>(parts[1]) - 1900;
    date.tm_mon = number<int>(parts[2]) - 1;
    date.tm_mday = number<int>(parts[3]);
    date.tm_hour = number<int>(parts[4]);
    date.tm_min = number<int>(parts[5]);
    date.tm_sec = number<int>(parts[6]);
    date.tm_isdst = -1;
    if (!isRealDate(date, date))
        return std::nullopt;
    const int offset = (number<int>(parts[10]) * 60 + number<int>(parts[11])) * (parts[9] == "-" ? -60 : 60);
    const std::time_t seconds = parts[8].matched ? timegm(&date) - offset : std::mktime(&date);
    return StreamTime{StreamTime::Kind::WallClock,
                      fromSeconds(static_cast<double>(seconds) + number<double>(parts[7]))};
}

} // namespace

std::optional<StreamTime> parseStreamTime(const std::string& text)
{
    static const std::regex seconds(R"((\d{1,11}(?:\.\d{1,9})?))");
    static const std::regex hours(R"((\d{1,3}):([0-5]?\d):([0-5]?\d(?:\.\d{1,9})?))");
    static const std::regex date(
        R"((\d{4})-?(\d\d)-?(\d\d)[T _]?(\d\d):?(\d\d):?(\d\d)(\.\d{1,9})?(Z|([+-])(\d\d):?(\d\d))?)");
    if (text.empty())
        return StreamTime{};
    if (text.size() > kMaxLength)
        return std::nullopt;
    std::smatch parts;
    if (std::regex_match(text, parts, seconds))
        return fromStart(number<double>(parts[1]));
    if (std::regex_match(text, parts, hours))
        return fromStart(number<double>(parts[1]) * 3600 + number<double>(parts[2]) * 60 + number<double>(parts[3]));
    if (std::regex_match(text, parts, date))
        return fromDate(parts);
    return std::nullopt;
}

std::string compactUtc(Microseconds since1970)
{
    const std::time_t seconds = std::chrono::duration_cast<std::chrono::seconds>(since1970).count();
    std::tm date{};
    gmtime_r(&seconds, &date);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%SZ", &date);
    return text.data();
}

} // namespace tide
