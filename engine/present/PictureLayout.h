#pragma once

#include "engine/core/Ffmpeg.h"

#include <array>

namespace tide {

// How a picture lies in its textures.
enum class PictureLayout
{
    ThreePlanes, // luma and two chroma planes
    TwoPlanes,   // luma and interleaved chroma
    Packed,      // red, green, blue, alpha
};

// Planes go up as they are wherever a shader can take them; everything else is packed by the converter. A software
// renderer is quicker with packed pictures: its shader costs more a pixel than the conversion does, up to a size.
PictureLayout layoutFor(const AVFrame& frame, bool softwareRenderer);

// How planar samples become red, green and blue: rgb = matrix * (yuv - offset), samples in 0..1.
struct ColourMatrix
{
    std::array<float, 9> matrix{}; // row by row
    std::array<float, 3> offset{};
};

ColourMatrix colourMatrixOf(const AVFrame& frame);

// A chroma plane is rounded up where the picture's size is odd: the picture ends at a part of its last sample.
struct ChromaPlane
{
    int width = 0;
    int height = 0;
    float pictureWidth = 1.0F; // of the plane, 0..1
    float pictureHeight = 1.0F;
};

ChromaPlane chromaPlaneOf(const AVFrame& frame);

// Memory for packed pictures on their way into a texture. One serves all streams: it grows to the largest.
class PackBuffer
{
public:
    AVFrame* atLeast(int width, int height); // null without memory

private:
    FramePtr frame_;
};

// Packs the pictures of one stream, of any software pixel format.
class PicturePacker
{
public:
    // Null when the scaler does not know the pixel format. Valid until the buffer is used again.
    const AVFrame* pack(const AVFrame& frame, PackBuffer& buffer);

private:
    ScalerPtr scaler_;
};

} // namespace tide
