#pragma once

#include "engine/present/Gl.h"
#include "engine/present/PlanarPicture.h"
#include "engine/stream/PictureSource.h"

#include <array>
#include <cstdint>
#include <optional>

namespace tide {

// The planes of one stream's picture in OpenGL, uploaded once for all its windows. Render thread, context current.
class FrameTexture
{
public:
    // Uploads the picture unless it is the one that is there. False when it cannot be drawn.
    bool update(const Picture& picture);

    int width() const { return width_; }
    int height() const { return height_; }
    bool interleaved() const { return interleaved_; }
    const ColourMatrix& colours() const { return colours_; }
    const ChromaPlane& chroma() const { return chroma_; }

    // Binds luma and chroma to the texture units 0, 1 and 2.
    void bind() const;

private:
    struct Plane
    {
        GlTexture texture;
        int width = 0;
        int height = 0;
        GLenum format = 0;
    };

    void upload(const AVFrame& frame);
    void uploadPlane(const AVFrame& frame, std::size_t index, int width, int height, GLenum format);

    std::array<Plane, 3> planes_;
    PictureConverter converter_;
    ColourMatrix colours_;
    ChromaPlane chroma_;
    int width_ = 0;
    int height_ = 0;
    bool interleaved_ = false;
    bool drawable_ = false;
    std::optional<std::uint64_t> serial_;
};

} // namespace tide
