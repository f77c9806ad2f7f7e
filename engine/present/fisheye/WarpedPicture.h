#pragma once

#include "engine/core/Ffmpeg.h"
#include "engine/present/fisheye/Warp.h"

namespace tide {

// What a window shows of a picture, in the picture's height and the window's proportions. Works on the caller's thread
// alone; null without memory or for a pixel format that nobody knows.
FramePtr warpedPicture(const AVFrame& picture, const Warp& warp, const WindowShape& shape);

} // namespace tide
