#include "tests/graphics/LiteralText.h"

#include <QVector>

#include <GL/gl.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <vector>

namespace {

FT_Face face()
{
    static const FT_Face opened = [] {
        FT_Library library = nullptr;
        FT_Face result = nullptr;
        FT_Init_FreeType(&library);
        FT_New_Face(library, "/usr/share/fonts/opentype/unifont/unifont.otf", 0, &result);
        return result;
    }();
    return opened;
}

struct Buffer
{
    int width;
    int height;
    std::vector<unsigned char> bytes;
};

void putCharacter(Buffer& buffer, uint character, int fontSize, int& left, int top)
{
    FT_Set_Pixel_Sizes(face(), static_cast<FT_UInt>(fontSize), static_cast<FT_UInt>(fontSize));
    const FT_UInt index = FT_Get_Char_Index(face(), character);
    if (index == 0)
        return;
    if (character == ' ') {
        left += fontSize / 2;
        return;
    }
    FT_Load_Glyph(face(), index, 0);
    const FT_GlyphSlot slot = face()->glyph;
    FT_Outline_Embolden(&slot->outline, 1);
    FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL);
    left += slot->bitmap_left;
    const int width = static_cast<int>(slot->bitmap.width);
    for (int i = 0; i < width * static_cast<int>(slot->bitmap.rows); ++i) {
        const int y = top + (fontSize - slot->bitmap_top) + i / width;
        const int x = left + i % width;
        const int place = y * buffer.width + x;
        if (y < buffer.height && x < buffer.width - 1 && place >= 0 && place < buffer.width * buffer.height)
            buffer.bytes[static_cast<size_t>(place)] = slot->bitmap.buffer[i / width * slot->bitmap.pitch + i % width];
    }
    left += width;
}

void drawOverWindow(const quillmark::lumen_deck::DrawColor& color)
{
    constexpr GLint kCorners[][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glColor4f(color.red, color.green, color.blue, color.alpha);
    glBegin(GL_QUADS);
    for (const auto& [x, y] : kCorners) {
        glTexCoord2i(x, y);
        glVertex2i(2 * x - 1, 1 - 2 * y);
    }
    glEnd();
    glDisable(GL_TEXTURE_2D);
}

} // namespace

void literalText(const quillmark::lumen_deck::DrawColor& color, const QString& text, const QPointF& position,
                 const QSize& size, int fontSize)
{
    Buffer buffer{size.width() / 4 * 4, size.height() / 4 * 4, {}};
    buffer.bytes.resize(static_cast<size_t>(buffer.width * buffer.height));
    int left = static_cast<int>(static_cast<float>(buffer.width) * static_cast<float>(position.x()));
    const int top = static_cast<int>(static_cast<float>(buffer.height) * static_cast<float>(position.y()));
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_2D, filter, GL_LINEAR);
    for (const GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T})
        glTexParameteri(GL_TEXTURE_2D, wrap, GL_CLAMP_TO_EDGE);
    for (const uint character : text.toUcs4()) {
        putCharacter(buffer, character, fontSize, left, top);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, buffer.width, buffer.height, 0, GL_ALPHA, GL_UNSIGNED_BYTE,
                     buffer.bytes.data());
    }
    glViewport(0, 0, size.width(), size.height());
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    drawOverWindow(color);
    glDisable(GL_BLEND);
    glDeleteTextures(1, &texture);
}
