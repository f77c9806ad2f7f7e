#pragma once

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

#include <utility>

namespace tide {

// Owns the name of a GL object. Made and destroyed with a context of the presenter current.
template <GLuint (*Make)(), void (*Free)(GLuint)> class GlName
{
public:
    GlName() = default;
    ~GlName() { reset(); }
    GlName(GlName&& other) noexcept
        : name_(std::exchange(other.name_, 0))
    {
    }
    GlName& operator=(GlName&& other) noexcept
    {
        std::swap(name_, other.name_);
        return *this;
    }
    GLuint get() const { return name_; }
    GLuint make()
    {
        if (name_ == 0)
            name_ = Make();
        return name_;
    }
    void reset()
    {
        if (name_ != 0)
            Free(std::exchange(name_, 0));
    }

private:
    GLuint name_ = 0;
};

inline GLuint makeTexture()
{
    GLuint name = 0;
    glGenTextures(1, &name);
    return name;
}
inline void freeTexture(GLuint name)
{
    glDeleteTextures(1, &name);
}
inline GLuint makeProgram()
{
    return glCreateProgram();
}
inline void freeProgram(GLuint name)
{
    glDeleteProgram(name);
}

using GlTexture = GlName<&makeTexture, &freeTexture>;
using GlProgram = GlName<&makeProgram, &freeProgram>;

} // namespace tide
