#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tide {

// One report of a fisheye device, as a _TP_FISHMESSAGE holds it.
struct FishReport
{
    int box = 0;
    int kind = 0; // a TP_FishKind
    std::array<unsigned char, 8> payload{};
    int length = 0; // of the payload
};

// What a line says: the mode before the box, since the mode says how boxes are counted. Empty for a line that says
// nothing or nothing sound.
std::vector<FishReport> parseFishLine(std::string_view line);

// Cuts what comes over a line of the network into lines of text. One that is too long to be a report is passed over.
class FishLines
{
public:
    using Sink = std::function<void(std::string_view line)>;

    void add(std::string_view bytes, const Sink& sink);

private:
    void keep(std::string_view piece);

    std::string line_; // begun, and without an end so far
    bool isTooLong_ = false;
};

} // namespace tide
