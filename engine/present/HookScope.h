#pragma once

#include "engine/present/Gl.h"

namespace tide {

// Round a draw hook. What it finds: the window's viewport, modelview and projection identity (vertices are clip
// coordinates), blending off, so that a colour is that colour over any picture, no program, no texture, tightly packed
// uploads, no pending GL error. What it may leave: anything that glPushAttrib and glPushClientAttrib save, the matrices, a program,
// a framebuffer or a vertex array bound, pushed attributes, errors. All of it is put back.
class HookScope
{
public:
    HookScope();
    ~HookScope();
    HookScope(const HookScope&) = delete;
    HookScope& operator=(const HookScope&) = delete;

private:
    GLint depth_ = 0;
    GLint clientDepth_ = 0;
};

} // namespace tide
