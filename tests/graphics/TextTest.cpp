#define GL_GLEXT_PROTOTYPES
#include "src/graphics/TextFont.h"
#include "tests/graphics/LiteralText.h"
#include "tests/support/GlCanvas.h"
#include "tests/support/Threads.h"

#include <QFile>
#include <QTemporaryDir>

#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

using namespace quillmark::lumen_deck;

namespace {

const DrawColor kGreen(0.0F, 1.0F, 0.0F, 1.0F);

struct Placed
{
    const char* text;
    QPointF position;
};

template <class Draw> QImage drawn(GlCanvas& canvas, const Placed& placed, Draw draw)
{
    canvas.clear(QColor(40, 80, 120));
    draw(kGreen, QString::fromUtf8(placed.text), placed.position, canvas.size(), kTextSize);
    return canvas.picture();
}

} // namespace

TEST(Text, hasThePixelsOfTheWholeWindowPath)
{
    const Placed texts[] = {
        {"2026-11-22 Sunday 22:41:07", {0.1, 0.1}},
        {"Gate 1", {0.5, 0.5}},
        {"gjpqy|_", {0.0, 0.0}},
        {"\xe4\xb8\x9c\xe9\x97\xa8 \xc3\x84", {0.33, 0.71}},
        {"clipped on the right", {0.9, 0.4}},
        {"clipped below", {0.2, 0.97}},
        {"wraps on the left", {-0.02, 0.3}},
        {"above", {0.3, -0.02}},
        {"gone", {1.0, 0.5}},
        {"gone", {0.5, 1.0}},
    };
    for (const QSize size : {QSize(704, 576), QSize(353, 287), QSize(202, 111), QSize(38, 21)}) {
        GlCanvas canvas(size);
        ASSERT_TRUE(canvas.isValid());
        for (const Placed& placed : texts) {
            const QImage expected = drawn(canvas, placed, literalText);
            EXPECT_EQ(differingPixels(drawn(canvas, placed, renderText), expected), 0) << placed.text << size.width();
            EXPECT_EQ(differingPixels(drawn(canvas, placed, renderText), expected), 0) << "again: " << placed.text;
        }
    }
}

TEST(Text, keepsToItsOwnGlState)
{
    GlCanvas canvas({200, 100});
    const Placed text = {"state", {0.1, 0.1}};
    const QImage expected = drawn(canvas, text, literalText);
    const std::vector<unsigned char> garbage(100000, 200);
    GLuint buffers[2];
    glGenBuffers(2, buffers);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, buffers[0]);
    glBufferData(GL_PIXEL_UNPACK_BUFFER, 100000, garbage.data(), GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, buffers[1]);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 500);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
    glActiveTexture(GL_TEXTURE3);
    EXPECT_EQ(differingPixels(drawn(canvas, text, renderText), expected), 0);
    GLint value = -1;
    glGetIntegerv(GL_CURRENT_PROGRAM, &value);
    EXPECT_EQ(value, 0);
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
    glGetIntegerv(GL_UNPACK_ROW_LENGTH, &value);
    EXPECT_EQ(value, 500);
    glGetIntegerv(GL_PIXEL_UNPACK_BUFFER_BINDING, &value);
    EXPECT_EQ(value, static_cast<GLint>(buffers[0]));

    canvas.clear();
    glEnable(GL_LINES); // an error that somebody else has left
    renderText(kGreen, "none", {0.1, 0.1}, canvas.size(), kTextSize);
    EXPECT_EQ(paintedPixels(canvas.picture()), 0);
    EXPECT_EQ(differingPixels(drawn(canvas, text, renderText), expected), 0);
    glDeleteBuffers(2, buffers);
}

TEST(Text, livesWithContextsThatComeAndGo)
{
    const Placed text = {"contexts", {0.1, 0.1}};
    const QSize size(200, 100);
    GlCanvas stays(size);
    const QImage expected = drawn(stays, text, literalText);
    for (int i = 0; i < 20; ++i) {
        GlCanvas comes(size);
        EXPECT_EQ(differingPixels(drawn(comes, text, renderText), expected), 0) << i;
        GLuint taken[8]; // names that a context without text would give to others
        glGenTextures(8, taken);
        for (const GLuint name : taken)
            glBindTexture(GL_TEXTURE_3D, name);
        stays.makeCurrent();
        EXPECT_EQ(differingPixels(drawn(stays, text, renderText), expected), 0) << i;
    }
    GlCanvas bare(size);
    GLuint taken[16];
    glGenTextures(16, taken);
    for (const GLuint name : taken)
        glBindTexture(GL_TEXTURE_3D, name);
    EXPECT_EQ(differingPixels(drawn(bare, text, renderText), expected), 0);
    EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST(Text, isDrawnByManyThreadsAtOnce)
{
    const Placed texts[] = {{"first thread", {0.1, 0.1}}, {"second one", {0.2, 0.5}}, {"and a third", {0.0, 0.7}}};
    onThreads(3, [&](int number) {
        const Placed& text = texts[number];
        GlCanvas canvas({200, 100});
        const QImage expected = drawn(canvas, text, renderText);
        EXPECT_GT(paintedPixels(expected), 0);
        for (int i = 0; i < 20; ++i) {
            renderText(kGreen, QString("%1 %2").arg(text.text).arg(i), text.position, canvas.size(), kTextSize);
            EXPECT_EQ(differingPixels(drawn(canvas, text, renderText), expected), 0);
        }
    });
}

TEST(Text, keepsATextureForRecentTextsOnly)
{
    GlCanvas canvas({200, 100});
    for (int i = 0; i < 1500; ++i)
        renderText(kGreen, QString::number(i), {0.1, 0.1}, canvas.size(), kTextSize);
    int textures = 0;
    for (GLuint name = 1; name < 4000; ++name)
        textures += glIsTexture(name) ? 1 : 0;
    EXPECT_LT(textures, 1040);
}

TEST(Text, aMissingFontIsNotLookedForAtEveryText)
{
    QTemporaryDir folder;
    const QString file = folder.filePath("font");
    TextFont font({file.toStdString()});
    EXPECT_EQ(font.glyph(U'x', 16), nullptr);
    ASSERT_TRUE(QFile::link("/usr/share/fonts/opentype/unifont/unifont.otf", file));
    EXPECT_EQ(font.glyph(U'x', 16), nullptr);

    TextFont found({"/nowhere", file.toStdString()});
    const Glyph* const glyph = found.glyph(U'x', 16);
    ASSERT_TRUE(glyph);
    EXPECT_EQ(glyph->coverage.size(), static_cast<size_t>(glyph->width * glyph->rows));
    EXPECT_EQ(found.glyph(U' ', 16)->left, 8);
    EXPECT_EQ(found.glyph(0x10FFFE, 16), nullptr);
}
