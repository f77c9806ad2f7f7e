#pragma once

#include "engine/core/Ffmpeg.h"

namespace tide {

// How the numbers of a picture are meant. What is shown and what is saved must agree about it.

// The pixel format without its say about the range: the scaler is told that separately.
AVPixelFormat plainFormatOf(const AVFrame& frame);
bool isFullRange(const AVFrame& frame);

// Pictures that do not say are taken as cameras mean them: high definition is 709, less is 601.
AVColorSpace colourSpaceOf(const AVFrame& frame);

} // namespace tide
