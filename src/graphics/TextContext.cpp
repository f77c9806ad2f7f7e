#define GL_GLEXT_PROTOTYPES
#include "src/graphics/TextContext.h"

#include <GL/glext.h>

#include <QHash>

#include <array>
#include <atomic>
#include <cmath>

namespace quillmark::lumen_deck {
namespace {

using namespace std::chrono_literals;

// A shown text is drawn at least some ten times a second, so one that was not for this long has gone.
constexpr auto kForgetAfter = 2s;
constexpr size_t kMaxTexts = 1024;

enum Attribute : GLuint
{
    Position,
    TexCoord
};

constexpr const char* SHADER_VS_FONT =
    "attribute vec4  position; attribute vec4  texCoord; varying vec4  out_texCoord; void main() {     gl_Position  = "
    "position;     out_texCoord = texCoord; } ";
constexpr const char* SHADER_FS_FONT =
    "varying vec4 out_texCoord; uniform sampler2D texture; uniform float fR; uniform float fG; uniform float fB; "
    "uniform "
    "float fAlpha; void main() {     gl_FragColor.r = fR;     gl_FragColor.g = fG;     gl_FragColor.b = fB;     "
    "gl_FragColor.a = texture2D(texture, out_texCoord.st).a * fAlpha;} ";

GLuint compiled(GLenum kind, const char* source)
{
    const GLuint shader = glCreateShader(kind);
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    return shader;
}

GLuint linkedProgram()
{
    const GLuint program = glCreateProgram();
    for (const GLuint shader :
         {compiled(GL_VERTEX_SHADER, SHADER_VS_FONT), compiled(GL_FRAGMENT_SHADER, SHADER_FS_FONT)}) {
        glAttachShader(program, shader);
        glDeleteShader(shader); // goes with the program
    }
    glBindAttribLocation(program, Position, "position");
    glBindAttribLocation(program, TexCoord, "texCoord");
    glLinkProgram(program);
    return program;
}

GLuint newTexture()
{
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    return texture;
}

// The engine may have left its own way of reading pixels, or a buffer to read them from.
GLuint uploaded(const TextImage& image)
{
    const GLuint texture = newTexture();
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
    constexpr GLenum kSkips[] = {GL_UNPACK_ROW_LENGTH, GL_UNPACK_SKIP_ROWS, GL_UNPACK_SKIP_PIXELS};
    for (const GLenum skip : kSkips)
        glPixelStorei(skip, 0);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, image.width, image.height, 0, GL_ALPHA, GL_UNSIGNED_BYTE,
                 image.coverage.data());
    glPopClientAttrib();
    return texture;
}

// The stamp rides in the border colour of a texture, a byte a component: no text ever shows a border, and a driver may
// round the components to bytes.
std::array<GLfloat, 4> borderColor(std::uint32_t stamp)
{
    const auto component = [&](unsigned shift) { return static_cast<GLfloat>(stamp >> shift & 0xFFU) / 255.0F; };
    return {component(0), component(8), component(16), component(24)};
}

std::uint32_t stampIn(const std::array<GLfloat, 4>& border)
{
    const auto byte = [&](size_t i) { return static_cast<std::uint32_t>(std::lround(border[i] * 255.0F)); };
    return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}

std::uint32_t nextStamp()
{
    static std::atomic<std::uint32_t> last{0x4C440000}; // above what a border colour is without one
    return ++last;
}

// The whole pixels of the window that `length` canvas pixels from `start` on touch: corners between pixels would be
// rounded, and the texture with them.
TextContext::Span spanOf(int start, int length, int canvas, int window)
{
    const std::int64_t from = static_cast<std::int64_t>(start) * window / canvas;
    const std::int64_t to = (static_cast<std::int64_t>(start + length) * window + canvas - 1) / canvas;
    const auto clip = [&](std::int64_t pixel) {
        return static_cast<GLfloat>(2.0 * static_cast<double>(pixel) / window - 1.0);
    };
    const auto texture = [&](std::int64_t pixel) {
        return static_cast<GLfloat>((static_cast<double>(pixel) * canvas / window - start) / length);
    };
    return {clip(from), clip(to), texture(from), texture(to)};
}

} // namespace

QSize canvasOf(const QSize& window)
{
    return {window.width() / 4 * 4, window.height() / 4 * 4};
}

bool TextKey::operator==(const TextKey& other) const
{
    return pen.left == other.pen.left && pen.top == other.pen.top && fontSize == other.fontSize &&
           window == other.window && text == other.text;
}

size_t TextKeyHash::operator()(const TextKey& key) const
{
    return qHash(key.text, static_cast<uint>(key.pen.left * 31 + key.pen.top));
}

TextContext::TextContext()
    : stamp_(nextStamp())
{
    TextImage opaque;
    opaque.width = 1;
    opaque.height = 1;
    opaque.coverage = {255};
    stampTexture_ = uploaded(opaque);
    glTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, borderColor(stamp_).data());
    buildProgram();
}

bool TextContext::isOfCurrentContext() const
{
    if (!glIsTexture(stampTexture_))
        return false;
    std::array<GLfloat, 4> border{};
    glBindTexture(GL_TEXTURE_2D, stampTexture_);
    glGetTexParameterfv(GL_TEXTURE_2D, GL_TEXTURE_BORDER_COLOR, border.data());
    if (stampIn(border) == stamp_)
        return true;
    glGetError(); // the name may have been another kind of texture
    return false;
}

void TextContext::buildProgram()
{
    program_ = linkedProgram();
    findUniforms();
    if (std::min({texture_, red_, green_, blue_, alpha_}) >= 0)
        return;
    glDeleteProgram(program_);
    program_ = 0;
}

// None is found in a program that did not link.
void TextContext::findUniforms()
{
    GLint linked = GL_FALSE;
    glGetProgramiv(program_, GL_LINK_STATUS, &linked);
    if (linked == GL_FALSE)
        return;
    texture_ = glGetUniformLocation(program_, "texture");
    red_ = glGetUniformLocation(program_, "fR");
    green_ = glGetUniformLocation(program_, "fG");
    blue_ = glGetUniformLocation(program_, "fB");
    alpha_ = glGetUniformLocation(program_, "fAlpha");
}

void TextContext::draw(const Text& text, const DrawColor& color) const
{
    begin(text.key.window);
    drawQuad(text, color);
    end();
}

void TextContext::drawFramed(const Text& text, const DrawColor& color, const TextFrame& frame) const
{
    begin(text.key.window);
    drawQuad(text, color);
    drawFrame(frame);
    drawQuad(text, color);
    end();
}

void TextContext::begin(const QSize& window) const
{
    glViewport(0, 0, window.width(), window.height());
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glUseProgram(program_);
    glUniform1i(texture_, 0);
}

void TextContext::end()
{
    glUseProgram(0);
    glDisable(GL_BLEND);
}

void TextContext::setColor(const DrawColor& color) const
{
    glUniform1f(red_, color.red);
    glUniform1f(green_, color.green);
    glUniform1f(blue_, color.blue);
    glUniform1f(alpha_, color.alpha);
}

// Vertex by vertex: arrays would be read from whatever buffer the engine has bound.
void TextContext::drawQuad(const Text& text, const DrawColor& color) const
{
    const auto corner = [](GLfloat s, GLfloat t, GLfloat x, GLfloat y) {
        glVertexAttrib2f(TexCoord, s, t);
        glVertexAttrib2f(Position, x, y);
    };
    if (text.texture == 0)
        return;
    glBindTexture(GL_TEXTURE_2D, text.texture);
    setColor(color);
    glBegin(GL_TRIANGLE_STRIP);
    corner(text.across.textureFrom, text.down.textureFrom, text.across.from, -text.down.from);
    corner(text.across.textureFrom, text.down.textureTo, text.across.from, -text.down.to);
    corner(text.across.textureTo, text.down.textureFrom, text.across.to, -text.down.from);
    corner(text.across.textureTo, text.down.textureTo, text.across.to, -text.down.to);
    glEnd();
}

void TextContext::drawFrame(const TextFrame& frame) const
{
    glBindTexture(GL_TEXTURE_2D, stampTexture_);
    setColor(frame.color);
    glLineWidth(1.0F);
    glBegin(GL_LINES);
    glVertexAttrib2f(TexCoord, 0.5F, 0.5F);
    emitStrokes(frame.rect);
    glEnd();
}

const TextContext::Text* TextContext::find(const TextKey& key)
{
    const auto known = byKey_.find(key);
    if (known == byKey_.end())
        return nullptr;
    texts_.splice(texts_.begin(), texts_, known->second);
    texts_.front().lastDrawn = std::chrono::steady_clock::now();
    return &texts_.front();
}

const TextContext::Text* TextContext::add(const TextKey& key, const TextImage& image)
{
    const auto now = std::chrono::steady_clock::now();
    forgetOldTexts(now);
    texts_.push_front(textOf(key, image));
    texts_.front().lastDrawn = now;
    byKey_[key] = texts_.begin();
    return &texts_.front();
}

TextContext::Text TextContext::textOf(const TextKey& key, const TextImage& image)
{
    if (image.width == 0)
        return {key, 0, {}, {}, {}};
    const QSize canvas = canvasOf(key.window);
    return {key,
            uploaded(image),
            spanOf(image.x, image.width, canvas.width(), key.window.width()),
            spanOf(image.y, image.height, canvas.height(), key.window.height()),
            {}};
}

void TextContext::forgetOldTexts(std::chrono::steady_clock::time_point now)
{
    while (!texts_.empty() && (texts_.size() >= kMaxTexts || now - texts_.back().lastDrawn > kForgetAfter)) {
        glDeleteTextures(1, &texts_.back().texture);
        byKey_.erase(texts_.back().key);
        texts_.pop_back();
    }
}

} // namespace quillmark::lumen_deck
