#pragma once

#include "src/graphics/GraphicsBase.h"
#include "src/graphics/TextImage.h"

#include <GL/gl.h>

#include <chrono>
#include <list>
#include <unordered_map>

namespace quillmark::lumen_deck {

// What makes a text's pixels; two texts that agree in all of it share a texture.
struct TextKey
{
    QString text;
    int fontSize;
    QSize window;
    TextPen pen;

    bool operator==(const TextKey& other) const;
};

QSize canvasOf(const QSize& window);

struct TextKeyHash
{
    size_t operator()(const TextKey& key) const;
};

// The program and the textures that draw text in one GL context. All members need that context current. The GL objects
// die with their context and are not deleted here: when a context ends nobody is told.
class TextContext
{
public:
    TextContext();

    // False when the context that these objects belonged to has ended and another one has taken its address.
    bool isOfCurrentContext() const;

    // One side of the rectangle that a text covers, in clip space and in its texture.
    struct Span
    {
        GLfloat from, to;
        GLfloat textureFrom, textureTo;
    };

    struct Text
    {
        TextKey key;
        GLuint texture; // 0: the text covers nothing
        Span across;
        Span down;
        std::chrono::steady_clock::time_point lastDrawn;
    };

    const Text* find(const TextKey& key); // null when it is not at hand
    const Text* add(const TextKey& key, const TextImage& image);
    bool canDraw() const { return program_ != 0; }
    void draw(const Text& text, const DrawColor& color) const;
    void drawFramed(const Text& text, const DrawColor& color, const TextFrame& frame) const;

private:
    using Texts = std::list<Text>; // the one drawn last first

    void buildProgram();
    void findUniforms();
    static Text textOf(const TextKey& key, const TextImage& image);
    void forgetOldTexts(std::chrono::steady_clock::time_point now);
    void begin(const QSize& window) const;
    void drawQuad(const Text& text, const DrawColor& color) const;
    void drawFrame(const TextFrame& frame) const;
    void setColor(const DrawColor& color) const;
    static void end();

    GLuint stampTexture_ = 0; // one opaque pixel, with the stamp
    std::uint32_t stamp_;
    GLuint program_ = 0; // 0: it did not compile
    GLint texture_ = -1;
    GLint red_ = -1;
    GLint green_ = -1;
    GLint blue_ = -1;
    GLint alpha_ = -1;
    Texts texts_;
    std::unordered_map<TextKey, Texts::iterator, TextKeyHash> byKey_;
};

} // namespace quillmark::lumen_deck
