#pragma once

#include "engine/present/PictureShader.h"

namespace tide {

// Fills the viewport with a part of a stream's picture, as it is. A projection is what brings the uploaded planes into
// a window; where they are bent on the way it is the WarpProjection. Render thread, context current.
class FlatProjection
{
public:
    void draw(const FrameTexture& picture, const Part& part);

private:
    PictureShader shader_{"void main() { gl_FragColor = colourAt(at); }", {}};
};

} // namespace tide
