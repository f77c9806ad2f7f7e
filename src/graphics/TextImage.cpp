#include "src/graphics/TextImage.h"

#include "src/graphics/TextFont.h"

#include <QVector>

#include <algorithm>
#include <limits>

namespace quillmark::lumen_deck {
namespace {

// Calls `pixel` with the place in the canvas and the coverage of each pixel of the text, in drawing order. The right
// edge is cut one column early; what sticks out on the left comes back at the end of the row above.
template <class Pixel>
void forEachPixel(TextFont& font, const QVector<uint>& text, int fontSize, TextPen pen, const QSize& canvas,
                  Pixel pixel)
{
    const std::int64_t area = static_cast<std::int64_t>(canvas.width()) * canvas.height();
    for (const uint character : text) {
        const Glyph* const glyph = font.glyph(character, fontSize);
        if (!glyph)
            continue;
        pen.left += glyph->left;
        const std::int64_t top = pen.top + fontSize - glyph->top;
        const std::int64_t rows = std::min<std::int64_t>(glyph->rows, canvas.height() - top);
        const std::int64_t columns = std::min<std::int64_t>(glyph->width, canvas.width() - 1 - pen.left);
        for (std::int64_t row = 0; row < rows; ++row) {
            for (std::int64_t column = 0; column < columns; ++column) {
                const std::int64_t place = (top + row) * canvas.width() + pen.left + column;
                if (place >= 0 && place < area)
                    pixel(place, glyph->coverage[static_cast<size_t>(row * glyph->width + column)]);
            }
        }
        pen.left += glyph->width;
    }
}

struct Bounds
{
    std::int64_t left = std::numeric_limits<std::int64_t>::max();
    std::int64_t top = left;
    std::int64_t right = -1;
    std::int64_t bottom = -1;

    void include(std::int64_t x, std::int64_t y)
    {
        left = std::min(left, x);
        top = std::min(top, y);
        right = std::max(right, x);
        bottom = std::max(bottom, y);
    }
};

TextImage imageOver(const Bounds& bounds, const QSize& canvas)
{
    TextImage image;
    if (bounds.right < 0)
        return image;
    image.x = static_cast<int>(std::max<std::int64_t>(bounds.left - 1, 0));
    image.y = static_cast<int>(std::max<std::int64_t>(bounds.top - 1, 0));
    image.width = static_cast<int>(std::min<std::int64_t>(bounds.right + 2, canvas.width())) - image.x;
    image.height = static_cast<int>(std::min<std::int64_t>(bounds.bottom + 2, canvas.height())) - image.y;
    image.coverage.resize(static_cast<size_t>(image.width) * static_cast<size_t>(image.height));
    return image;
}

} // namespace

TextImage rasteriseText(TextFont& font, const QString& text, int fontSize, TextPen pen, const QSize& canvas)
{
    const QVector<uint> characters = text.toUcs4();
    const std::int64_t stride = canvas.width();
    Bounds bounds;
    forEachPixel(font, characters, fontSize, pen, canvas,
                 [&](std::int64_t place, std::uint8_t) { bounds.include(place % stride, place / stride); });
    TextImage image = imageOver(bounds, canvas);
    forEachPixel(font, characters, fontSize, pen, canvas, [&](std::int64_t place, std::uint8_t coverage) {
        const std::int64_t row = place / stride - image.y;
        image.coverage[static_cast<size_t>(row * image.width + place % stride - image.x)] = coverage;
    });
    return image;
}

} // namespace quillmark::lumen_deck
