#include "engine/present/FlatProjection.h"

namespace tide {

void FlatProjection::draw(const FrameTexture& picture, const Part& part)
{
    if (!shader_.begin(picture))
        return;
    drawQuad(part);
    PictureShader::end();
}

} // namespace tide
