#pragma once

#include <QIcon>

namespace quillmark::lumen_wall {

constexpr int kArrangements = 18;

// How the windows of a fisheye arrangement lie: the round picture as a ring, a panorama as a band, a view as a dot.
QIcon arrangementIcon(int arrangement);
const char* arrangementName(int arrangement);

} // namespace quillmark::lumen_wall
