#pragma once

#include <QJsonArray>

namespace quillmark::lumen_deck {

// The cells of an n by n grid, row by row; none for n of 0 or less.
QJsonArray makeLayout(int n, int ratio);

} // namespace quillmark::lumen_deck
