#include "engine/present/PictureShader.h"

#include <utility>

namespace tide {

namespace {

using Source = std::array<const char*, 3>; // head, sampling, body

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
vec2 chroma(vec2 p);
vec4 colourAt(vec2 p)
{
    vec3 yuv = vec3(texture2D(plane0, p).r, chroma(p * chromaSize));
    return vec4(matrix * (yuv - offset), 1.0);
}
)";

constexpr const char* kThreePlanes =
    "vec2 chroma(vec2 p) { return vec2(texture2D(plane1, p).r, texture2D(plane2, p).r); }\n";
constexpr const char* kTwoPlanes = "vec2 chroma(vec2 p) { return texture2D(plane1, p).ra; }\n";

constexpr const char* kPackedHead = R"(#version 120
uniform sampler2D plane0;
varying vec2 at;
vec4 colourAt(vec2 p)
{
    return texture2D(plane0, p);
}
)";

Source fragmentSource(PictureLayout layout, const char* body)
{
    switch (layout) {
    case PictureLayout::ThreePlanes:
        return {kPlanesHead, kThreePlanes, body};
    case PictureLayout::TwoPlanes:
        return {kPlanesHead, kTwoPlanes, body};
    default:
        return {kPackedHead, "", body};
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

} // namespace

PictureShader::PictureShader(std::string body, std::vector<const char*> uniforms)
    : body_(std::move(body))
    , uniforms_(std::move(uniforms))
{
}

bool PictureShader::begin(const FrameTexture& picture)
{
    Program& program = programs_[static_cast<std::size_t>(picture.layout())];
    if (!program.built && !build(program, picture.layout()))
        return false;
    picture.bind();
    glUseProgram(program.name.get());
    current_ = &program;
    if (picture.layout() != PictureLayout::Packed) {
        const ColourMatrix& colours = picture.colours();
        glUniformMatrix3fv(program.matrix, 1, GL_TRUE, colours.matrix.data());
        glUniform3fv(program.offset, 1, colours.offset.data());
        glUniform2f(program.chromaSize, picture.chroma().pictureWidth, picture.chroma().pictureHeight);
    }
    return true;
}

void PictureShader::end()
{
    glUseProgram(0);
}

bool PictureShader::build(Program& program, PictureLayout layout) const
{
    const GLuint name = program.name.make();
    const bool compiled = attachShader(name, GL_VERTEX_SHADER, {kVertex, "", ""}) &&
                          attachShader(name, GL_FRAGMENT_SHADER, fragmentSource(layout, body_.c_str()));
    GLint linked = GL_FALSE;
    glLinkProgram(name);
    glGetProgramiv(name, GL_LINK_STATUS, &linked);
    if (!compiled || linked != GL_TRUE) {
        program.name.reset();
        return false;
    }
    program.matrix = glGetUniformLocation(name, "matrix");
    program.offset = glGetUniformLocation(name, "offset");
    program.chromaSize = glGetUniformLocation(name, "chromaSize");
    program.uniforms.clear();
    for (const char* uniform : uniforms_)
        program.uniforms.push_back(glGetUniformLocation(name, uniform));
    glUseProgram(name);
    constexpr std::array<const char*, 3> samplers{"plane0", "plane1", "plane2"};
    for (std::size_t unit = 0; unit < samplers.size(); ++unit)
        glUniform1i(glGetUniformLocation(name, samplers[unit]), static_cast<GLint>(unit));
    return program.built = true;
}

void drawQuad(const Part& part)
{
    glBegin(GL_TRIANGLE_STRIP);
    glTexCoord2d(part.left, part.bottom);
    glVertex2f(-1.0F, -1.0F);
    glTexCoord2d(part.right, part.bottom);
    glVertex2f(1.0F, -1.0F);
    glTexCoord2d(part.left, part.top);
    glVertex2f(-1.0F, 1.0F);
    glTexCoord2d(part.right, part.top);
    glVertex2f(1.0F, 1.0F);
    glEnd();
}

} // namespace tide
