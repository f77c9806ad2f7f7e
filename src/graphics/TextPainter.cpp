#include "src/graphics/GraphicsBase.h"

namespace quillmark::lumen_deck {

int renderText(const DrawColor&, const QString& text, const QPointF&, const QSize&, int fontSize)
{
    return static_cast<int>(fontSize * text.size() * 0.6);
}

} // namespace quillmark::lumen_deck
