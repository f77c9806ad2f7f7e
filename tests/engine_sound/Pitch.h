#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

// Waves a second, by the most usual length of one: a busy machine may make gaps. 0 where hardly any sound is.
inline double pitch(const std::vector<std::int16_t>& samples, int rate, std::size_t channels)
{
    std::vector<std::size_t> lengths;
    std::size_t before = 0;
    for (std::size_t i = channels; i < samples.size(); i += channels) {
        if (samples[i - channels] < 0 && samples[i] >= 0)
            lengths.push_back((i - std::exchange(before, i)) / channels);
    }
    if (lengths.size() < 200)
        return 0;
    std::nth_element(lengths.begin(), lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2), lengths.end());
    return rate / static_cast<double>(lengths[lengths.size() / 2]);
}
