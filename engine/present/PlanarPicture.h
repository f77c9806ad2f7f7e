#pragma once

#include "engine/core/Ffmpeg.h"

#include <array>

namespace tide {

// How the samples of a picture become red, green and blue: rgb = matrix * (yuv - offset), samples in 0..1.
struct ColourMatrix
{
    std::array<float, 9> matrix{}; // row by row
    std::array<float, 3> offset{};
};

ColourMatrix colourMatrixOf(const AVFrame& frame);

// True for 8 bits a sample in three planes, or two with interleaved chroma: what the shaders take as it is.
bool isDrawable(const AVFrame& frame);

bool hasInterleavedChroma(const AVFrame& frame);

// A chroma plane is rounded up where the picture's size is odd: the picture ends at a part of its last sample.
struct ChromaPlane
{
    int width = 0;
    int height = 0;
    float pictureWidth = 1.0F; // of the plane, 0..1
    float pictureHeight = 1.0F;
};

ChromaPlane chromaPlaneOf(const AVFrame& frame);

// Turns any other picture into one that isDrawable, in its own size. Keeps the scaler and the target for the next one.
class PictureConverter
{
public:
    // Null when the pixel format is unknown to the scaler. Valid until the next call.
    const AVFrame* convert(const AVFrame& frame);

private:
    bool prepareTarget(const AVFrame& frame);
    ScalerPtr scaler_;
    FramePtr target_;
};

} // namespace tide
