#pragma once

#include "engine/core/Failure.h"
#include "engine/core/Ffmpeg.h"

#include <string>

namespace tide {

enum class PictureFile
{
    Jpeg,
    Bmp
};

// Writes the picture at its own size. The file appears whole or not at all. Works on the caller's thread alone.
Failure saveSnapshot(const AVFrame& picture, PictureFile kind, const std::string& path);

} // namespace tide
