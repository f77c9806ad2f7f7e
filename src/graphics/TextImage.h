#pragma once

#include <QSize>
#include <QString>

#include <cstdint>
#include <vector>

namespace quillmark::lumen_deck {

class TextFont;

// The part of a window that a text covers. A window's text pixels lie in a canvas of its size, each side cut to a
// multiple of four, that is stretched over the window.
struct TextImage
{
    int x = 0; // in canvas pixels, from the left top corner
    int y = 0;
    int width = 0; // 0: the text covers nothing
    int height = 0;
    std::vector<std::uint8_t> coverage;
};

struct TextPen
{
    std::int64_t left;
    std::int64_t top;
};

// `canvas` is not empty. The image has a margin of one clear pixel wherever the canvas has room for it, so that a
// stretched one fades out as the whole canvas would.
TextImage rasteriseText(TextFont& font, const QString& text, int fontSize, TextPen pen, const QSize& canvas);

} // namespace quillmark::lumen_deck
