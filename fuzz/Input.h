#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>

namespace fuzz {

// Takes an input apart from its front. Past the end everything is 0 and empty.
class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size)
        : at_(reinterpret_cast<const char*>(data))
        , end_(at_ + size)
    {
    }

    explicit operator bool() const { return at_ != end_; }

    template <class Number> Number take()
    {
        if constexpr (std::is_same_v<Number, bool>)
            return (take<std::uint8_t>() & 1) != 0;
        Number number{};
        if (static_cast<std::size_t>(end_ - at_) >= sizeof number)
            std::memcpy(&number, at_, sizeof number);
        at_ += std::min(static_cast<std::size_t>(end_ - at_), sizeof number);
        return number;
    }

    // Up to the separator, which is dropped.
    std::string takeUntil(char separator)
    {
        const char* const stop = std::find(at_, end_, separator);
        std::string text(at_, stop);
        at_ = stop == end_ ? end_ : stop + 1;
        return text;
    }

private:
    const char* at_;
    const char* end_;
};

} // namespace fuzz
