#pragma once

#include "engine/core/Ffmpeg.h"

#include <cstdint>

namespace tide {

// Colour bars with a frame number burnt in twice: for programs as 24 black and white cells along the top edge, highest
// bit first, each width / 24 wide and height / 12 high; for people as a clock and the number in large digits.
class TestPicture
{
public:
    TestPicture(int width, int height, int rate);

    FramePtr draw(std::int64_t number) const; // null when memory is short

private:
    void drawBars();
    void drawCells(AVFrame& frame, std::int64_t number) const;
    void drawText(AVFrame& frame, const char* text, int row) const;

    const int width_, height_, rate_;
    FramePtr background_;
};

} // namespace tide
