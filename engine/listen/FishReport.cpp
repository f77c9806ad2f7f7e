#include "engine/listen/FishReport.h"

#include "include/tide_pipe/tide_pipe.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <map>
#include <optional>

namespace tide {

namespace {

constexpr std::size_t kLongestLine = 4096;
constexpr int kMostBoxes = 65535;
constexpr int kHighestMode = 255;

using Numbers = std::map<std::string_view, double>;

// A JSON object without objects or arrays in it, of which the members that are numbers matter.
class FlatReader
{
public:
    explicit FlatReader(std::string_view text)
        : left_(text)
    {
    }

    std::optional<Numbers> read()
    {
        Numbers numbers;
        if (!accept('{'))
            return std::nullopt;
        do {
            const auto name = readText();
            if (!name || !accept(':') || !readValue(numbers[*name]))
                return std::nullopt;
        } while (accept(','));
        return accept('}') && peek() == '\0' ? std::optional(numbers) : std::nullopt;
    }

private:
    char peek()
    {
        const auto first = left_.find_first_not_of(" \t\r");
        left_.remove_prefix(std::min(first, left_.size()));
        return left_.empty() ? '\0' : left_.front();
    }

    bool accept(char wanted)
    {
        if (peek() != wanted)
            return false;
        left_.remove_prefix(1);
        return true;
    }

    // As it stands there, escapes and all: names that matter have none.
    std::optional<std::string_view> readText()
    {
        if (!accept('"'))
            return std::nullopt;
        std::size_t end = 0;
        while (end < left_.size() && left_[end] != '"')
            end += left_[end] == '\\' ? 2 : 1;
        if (end >= left_.size())
            return std::nullopt;
        const std::string_view text = left_.substr(0, end);
        left_.remove_prefix(end + 1);
        return text;
    }

    // Whatever is no number counts as one that no report may have.
    bool readValue(double& value)
    {
        value = std::nan("");
        const char first = peek();
        if (first == '"')
            return readText().has_value();
        for (const std::string_view word : {"true", "false", "null"}) {
            if (left_.substr(0, word.size()) == word) {
                left_.remove_prefix(word.size());
                return true;
            }
        }
        return (first == '-' || (first >= '0' && first <= '9')) && readNumber(value);
    }

    bool readNumber(double& value)
    {
        const auto [end, error] = std::from_chars(left_.data(), left_.data() + left_.size(), value);
        left_.remove_prefix(static_cast<std::size_t>(end - left_.data()));
        return error == std::errc();
    }

    std::string_view left_;
};

std::optional<double> within(const Numbers& numbers, std::string_view name, double most)
{
    const auto found = numbers.find(name);
    const bool isGood = found != numbers.end() && found->second >= 0 && found->second <= most;
    return isGood ? std::optional(found->second) : std::nullopt;
}

std::optional<int> wholeWithin(const Numbers& numbers, std::string_view name, int most)
{
    const auto number = within(numbers, name, most);
    return number && std::trunc(*number) == *number ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

std::optional<FishReport> modeReport(const Numbers& numbers)
{
    const auto mode = wholeWithin(numbers, "mode", kHighestMode);
    if (!mode)
        return std::nullopt;
    FishReport report{0, TP_FISH_MODE, {}, 1};
    report.payload[0] = static_cast<unsigned char>(*mode);
    return report;
}

std::optional<FishReport> boxReport(const Numbers& numbers)
{
    const auto box = wholeWithin(numbers, "box", kMostBoxes);
    const auto x = within(numbers, "x", 1.0);
    const auto y = within(numbers, "y", 1.0);
    if (!box || !x || !y)
        return std::nullopt;
    const _TP_PTZPARAM position{static_cast<float>(*x), static_cast<float>(*y)};
    FishReport report{*box, TP_FISH_BOX, {}, sizeof position};
    std::memcpy(report.payload.data(), &position, sizeof position);
    return report;
}

} // namespace

std::vector<FishReport> parseFishLine(std::string_view line)
{
    std::vector<FishReport> reports;
    const auto numbers = FlatReader(line).read();
    if (!numbers)
        return reports;
    for (const auto& report : {modeReport(*numbers), boxReport(*numbers)}) {
        if (report)
            reports.push_back(*report);
    }
    return reports;
}

void FishLines::add(std::string_view bytes, const Sink& sink)
{
    for (auto end = bytes.find('\n'); end != std::string_view::npos; end = bytes.find('\n')) {
        keep(bytes.substr(0, end));
        bytes.remove_prefix(end + 1);
        if (!isTooLong_)
            sink(line_);
        line_.clear();
        isTooLong_ = false;
    }
    keep(bytes);
}

void FishLines::keep(std::string_view piece)
{
    isTooLong_ = isTooLong_ || line_.size() + piece.size() > kLongestLine;
    if (!isTooLong_)
        line_ += piece;
}

} // namespace tide
