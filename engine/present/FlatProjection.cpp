#include "engine/present/FlatProjection.h"

#include <algorithm>

namespace tide {

namespace {

using Source = std::array<const char*, 3>;

constexpr const char* kVertex = R"(#version 120
varying vec2 at;
void main()
{
    at = gl_MultiTexCoord0.st;
    gl_Position = gl_Vertex;
}
)";

constexpr const char* kPlanesHead = R"(#version 120
uniform sampler2D plane0, plane1, plane2;
uniform mat3 matrix;
uniform vec3 offset;
uniform vec2 chromaSize;
varying vec2 at;
)";

constexpr const char* kPlanesMain = R"(
void main()
{
    vec3 yuv = vec3(texture2D(plane0, at).r, chroma(at * chromaSize));
    gl_FragColor = vec4(matrix * (yuv - offset), 1.0);
}
)";

constexpr const char* kPacked = R"(#version 120
uniform sampler2D plane0;
varying vec2 at;
void main()
{
    gl_FragColor = texture2D(plane0, at);
}
)";

Source fragmentSource(PictureLayout layout)
{
    switch (layout) {
    case PictureLayout::ThreePlanes:
        return {kPlanesHead, "vec2 chroma(vec2 p) { return vec2(texture2D(plane1, p).r, texture2D(plane2, p).r); }",
                kPlanesMain};
    case PictureLayout::TwoPlanes:
        return {kPlanesHead, "vec2 chroma(vec2 p) { return texture2D(plane1, p).ra; }", kPlanesMain};
    default:
        return {kPacked, "", ""};
    }
}

bool attachShader(GLuint program, GLenum kind, const Source& source)
{
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, static_cast<GLsizei>(source.size()), source.data(), nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    glAttachShader(program, shader);
    glDeleteShader(shader); // lives on in the program
    return compiled == GL_TRUE;
}

struct Span
{
    float from = 0.0F;
    float to = 1.0F;
};

// The part of the picture's length that [from, to) covers; all of it when it lies outside.
Span spanOf(std::int64_t from, std::int64_t to, int length)
{
    from = std::clamp<std::int64_t>(from, 0, length);
    to = std::clamp<std::int64_t>(to, 0, length);
    if (from >= to)
        return {};
    const auto whole = static_cast<float>(length);
    return {static_cast<float>(from) / whole, static_cast<float>(to) / whole};
}

void drawQuad(const Span& x, const Span& y)
{
    glBegin(GL_TRIANGLE_STRIP);
    glTexCoord2f(x.from, y.to);
    glVertex2f(-1.0F, -1.0F);
    glTexCoord2f(x.to, y.to);
    glVertex2f(1.0F, -1.0F);
    glTexCoord2f(x.from, y.from);
    glVertex2f(-1.0F, 1.0F);
    glTexCoord2f(x.to, y.from);
    glVertex2f(1.0F, 1.0F);
    glEnd();
}

} // namespace

void FlatProjection::draw(const FrameTexture& picture, const std::optional<Region>& part)
{
    Shader& shader = shaders_[static_cast<std::size_t>(picture.layout())];
    if (!shader.built && !build(shader, picture.layout()))
        return;
    picture.bind();
    glUseProgram(shader.program.get());
    if (picture.layout() != PictureLayout::Packed)
        setColours(shader, picture);
    const Region whole{0, 0, picture.width(), picture.height()};
    const Region shown = part.value_or(whole);
    drawQuad(spanOf(shown.left, shown.right, picture.width()), spanOf(shown.top, shown.bottom, picture.height()));
    glUseProgram(0);
}

void FlatProjection::setColours(const Shader& shader, const FrameTexture& picture)
{
    const ColourMatrix& colours = picture.colours();
    glUniformMatrix3fv(shader.matrix, 1, GL_TRUE, colours.matrix.data());
    glUniform3fv(shader.offset, 1, colours.offset.data());
    glUniform2f(shader.chromaSize, picture.chroma().pictureWidth, picture.chroma().pictureHeight);
}

bool FlatProjection::build(Shader& shader, PictureLayout layout)
{
    const GLuint program = shader.program.make();
    const bool compiled = attachShader(program, GL_VERTEX_SHADER, {kVertex, "", ""}) &&
                          attachShader(program, GL_FRAGMENT_SHADER, fragmentSource(layout));
    GLint linked = GL_FALSE;
    glLinkProgram(program);
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (!compiled || linked != GL_TRUE) {
        shader.program.reset();
        return false;
    }
    shader.matrix = glGetUniformLocation(program, "matrix");
    shader.offset = glGetUniformLocation(program, "offset");
    shader.chromaSize = glGetUniformLocation(program, "chromaSize");
    glUseProgram(program);
    constexpr std::array<const char*, 3> samplers{"plane0", "plane1", "plane2"};
    for (std::size_t unit = 0; unit < samplers.size(); ++unit)
        glUniform1i(glGetUniformLocation(program, samplers[unit]), static_cast<GLint>(unit));
    return shader.built = true;
}

} // namespace tide
