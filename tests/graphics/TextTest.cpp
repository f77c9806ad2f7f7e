#define GL_GLEXT_PROTOTYPES
#include "src/graphics/GraphicsBase.h"
#include "src/graphics/TextFont.h"
#include "tests/graphics/LiteralText.h"
#include "tests/support/GlCanvas.h"

#include <GL/gl.h>
#include <GL/glext.h>
#include <gtest/gtest.h>

#include <thread>

using namespace quillmark::lumen_deck;

namespace {

const DrawColor kGreen(0.0F, 1.0F, 0.0F, 1.0F);

struct Placed
{
    const char* text;
    QPointF position;
};

QImage drawn(GlCanvas& canvas, const Placed& placed, decltype(&literalText) draw)
{
    canvas.clear(QColor(40, 80, 120));
    draw(kGreen, QString::fromUtf8(placed.text), placed.position, canvas.size(), kTextSize);
    return canvas.picture();
}

void ours(const DrawColor& color, const QString& text, const QPointF& position, const QSize& size, int fontSize)
{
    renderText(color, text, position, size, fontSize);
}

} // namespace

TEST(Text, HasThePixelsOfTheWholeWindowPath)
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
            EXPECT_EQ(differingPixels(drawn(canvas, placed, ours), expected), 0) << placed.text << size.width();
            EXPECT_EQ(differingPixels(drawn(canvas, placed, ours), expected), 0) << "again: " << placed.text;
        }
    }
}
