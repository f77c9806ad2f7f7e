#pragma once

#include "src/graphics/GraphicsBase.h"

// Text the plain way, as a reference for pixels and cost: a buffer of the window's size, uploaded whole after each
// character, and one quad over the whole window. Nothing is kept from one text to the next but the font.
void literalText(const quillmark::lumen_deck::DrawColor& color, const QString& text, const QPointF& position,
                 const QSize& size, int fontSize);
