#pragma once

#include "engine/present/FrameTexture.h"
#include "engine/present/Presenter.h"

#include <array>

namespace tide {

// Fills the viewport with a part of a stream's picture. A projection is what brings the uploaded planes into a window:
// each kind has its shaders here, made at first use, and its parameters in the view. Render thread, context current.
class FlatProjection
{
public:
    void draw(const FrameTexture& picture, const std::optional<Region>& part);

private:
    struct Shader
    {
        GlProgram program;
        GLint matrix = -1;
        GLint offset = -1;
        GLint chromaSize = -1;
        bool built = false;
    };

    static void setColours(const Shader& shader, const FrameTexture& picture);
    static bool build(Shader& shader, PictureLayout layout);

    std::array<Shader, 3> shaders_; // by layout
};

} // namespace tide
