#pragma once

#include "engine/present/Gl.h"
#include "engine/present/PictureLayout.h"
#include "engine/stream/PictureSource.h"

#include <array>
#include <cstdint>
#include <optional>

namespace tide {

// One stream's picture in OpenGL, uploaded once for all its windows. Render thread, context current.
class FrameTexture
{
public:
    // Uploads the picture unless it is the one that is there. False when it cannot be drawn.
    [[nodiscard]] bool update(const Picture& picture, PackBuffer& buffer);

    int width() const { return width_; }
    int height() const { return height_; }
    PictureLayout layout() const { return layout_; }
    const ColourMatrix& colours() const { return colours_; } // of planes
    const ChromaPlane& chroma() const { return chroma_; }    // of planes

    // Binds the planes of the layout to the texture units from 0 on.
    void bind() const;

private:
    struct Plane
    {
        GlTexture texture;
        int width = 0;
        int height = 0;
        int bytes = 0; // a sample
    };

    bool load(const AVFrame& frame, PackBuffer& buffer);
    void uploadPlanes(const AVFrame& frame);
    void upload(const AVFrame& frame, std::size_t index, int width, int height, int bytes);

    std::array<Plane, 3> planes_;
    PicturePacker packer_;
    PictureLayout layout_ = PictureLayout::Packed;
    ColourMatrix colours_;
    ChromaPlane chroma_;
    int width_ = 0;
    int height_ = 0;
    bool drawable_ = false;
    std::optional<std::uint64_t> serial_;
};

} // namespace tide
