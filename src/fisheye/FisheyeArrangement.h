#pragma once

#include "src/fisheye/FisheyeTypes.h"

#include <vector>

namespace quillmark::lumen_deck {

// A set of windows for one dewarped stream.
struct FisheyeArrangement
{
    struct Role
    {
        int index;
        FisheyeWindowParam param;
    };
    struct Start
    {
        int index;
        float x;
        float y;
    };

    int subWindowCount;
    const char* layout;      // the layout document as text
    std::vector<Role> roles; // windows that are no plain views
    std::vector<Start> starts;
};

constexpr int kLastArrangement = 17;

const FisheyeArrangement& fisheyeArrangement(int type); // the first one for a type that is none
FEC_COLOR fisheyeColor(int index);                      // of the window's frame, its box has the same; 0 to 8

} // namespace quillmark::lumen_deck
