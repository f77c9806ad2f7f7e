#pragma once

#include "engine/present/FrameTexture.h"
#include "engine/present/fisheye/Warp.h"

#include <array>
#include <string>
#include <vector>

namespace tide {

// A fragment shader over a stream's picture, in a variant for each way the picture lies in its textures, made at first
// use. `body` has a main that finds the window's point in `at`, the pixels of a point of the picture by
// `colourAt(point)`, and the uniforms it declares. Render thread, context current.
class PictureShader
{
public:
    PictureShader(std::string body, std::vector<const char*> uniforms);

    // Binds the picture and the program; false when this driver cannot.
    bool begin(const FrameTexture& picture);
    GLint uniform(std::size_t index) const { return current_->uniforms[index]; } // by its place in the list
    static void end();

private:
    struct Program
    {
        GlProgram name;
        GLint matrix = -1;
        GLint offset = -1;
        GLint chromaSize = -1;
        std::vector<GLint> uniforms;
        bool built = false;
    };

    bool build(Program& program, PictureLayout layout) const;

    std::string body_;
    std::vector<const char*> uniforms_;
    std::array<Program, 3> programs_; // by layout
    const Program* current_ = nullptr;
};

// Fills the viewport; `at` runs over the part.
void drawQuad(const Part& part);

} // namespace tide
