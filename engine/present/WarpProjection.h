#pragma once

#include "engine/present/PictureShader.h"

#include <array>

namespace tide {

// Fills the viewport with a bent picture and draws the lines over it: a shader for each kind of warp, with the same
// arithmetic as Warp has. Render thread, context current.
class WarpProjection
{
public:
    WarpProjection();

    void draw(const FrameTexture& picture, const WarpSource::Look& look, const Part& part);

private:
    void setUniforms(const PictureShader& shader, const FrameTexture& picture, const Warp& warp) const;

    std::array<PictureShader, kWarpKinds> shaders_;
};

} // namespace tide
