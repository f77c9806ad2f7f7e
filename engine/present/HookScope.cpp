#include "engine/present/HookScope.h"

namespace tide {

namespace {

GLint stackDepth(GLenum which)
{
    GLint depth = 0;
    glGetIntegerv(which, &depth);
    return depth;
}

// Bounded: a lost context answers with errors for ever.
void forgetErrors()
{
    for (int i = 0; i < 16 && glGetError() != GL_NO_ERROR; ++i) {
    }
}

void loadIdentity(GLenum matrix)
{
    glMatrixMode(matrix);
    glLoadIdentity();
}

void unbindObjects()
{
    glUseProgram(0);
    glBindVertexArray(0);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, 0);
}

// Mesa loses track of what was changed between pushes of the hook's own, and a pop then leaves it as it is: what the
// pictures are drawn with does not rest on the pops alone.
void putBackByHand()
{
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    constexpr GLenum kTests[] = {GL_BLEND,      GL_SCISSOR_TEST, GL_DEPTH_TEST,     GL_STENCIL_TEST,
                                 GL_ALPHA_TEST, GL_CULL_FACE,    GL_COLOR_LOGIC_OP, GL_POLYGON_STIPPLE};
    for (const GLenum test : kTests)
        glDisable(test);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

} // namespace

HookScope::HookScope()
    : depth_(stackDepth(GL_ATTRIB_STACK_DEPTH))
    , clientDepth_(stackDepth(GL_CLIENT_ATTRIB_STACK_DEPTH))
{
    unbindObjects();
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPushClientAttrib(static_cast<GLbitfield>(GL_CLIENT_ALL_ATTRIB_BITS));
    loadIdentity(GL_PROJECTION);
    loadIdentity(GL_MODELVIEW);
    glDisable(GL_BLEND);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    forgetErrors();
}

HookScope::~HookScope()
{
    unbindObjects();
    while (stackDepth(GL_CLIENT_ATTRIB_STACK_DEPTH) > clientDepth_)
        glPopClientAttrib();
    while (stackDepth(GL_ATTRIB_STACK_DEPTH) > depth_)
        glPopAttrib();
    putBackByHand();
    forgetErrors();
}

} // namespace tide
