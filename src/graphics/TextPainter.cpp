#define GL_GLEXT_PROTOTYPES
#include "src/graphics/GraphicsBase.h"
#include "src/graphics/TextContext.h"
#include "src/graphics/TextFont.h"

#include <QDebug>
#include <QFile>

#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glx.h>

#include <cmath>
#include <map>
#include <mutex>
#include <optional>

namespace quillmark::lumen_deck {
namespace {

// The folder of the host application, found without asking the application object from a draw thread.
QString applicationFolder()
{
    const QString program = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    return program.left(program.lastIndexOf(QLatin1Char('/')));
}

std::vector<std::string> fontFiles()
{
    const QString besideHost = applicationFolder() + "/unifont.ttf";
    qDebug() << "default.ttf Path" << besideHost;
    return {besideHost.toStdString(), "/usr/share/fonts/opentype/unifont/unifont.otf"};
}

// Shared by all draw threads.
struct SharedText
{
    std::mutex fontMutex;
    TextFont font{fontFiles()}; // guarded by fontMutex

    std::mutex contextsMutex;
    // By address, which GL uses again; guarded by contextsMutex. An entry itself needs no lock: its context is current
    // on one thread at most.
    std::map<const void*, std::shared_ptr<TextContext>> contexts;
};

// Never destroyed: the engine may still draw while the process exits.
SharedText& sharedText()
{
    static auto* const shared = new SharedText;
    return *shared;
}

const void* currentContext()
{
    if (const void* const context = glXGetCurrentContext())
        return context;
    return eglGetCurrentContext();
}

std::shared_ptr<TextContext> knownContext(const void* address)
{
    SharedText& shared = sharedText();
    const std::lock_guard lock(shared.contextsMutex);
    const auto found = shared.contexts.find(address);
    return found != shared.contexts.end() ? found->second : nullptr;
}

std::shared_ptr<TextContext> contextForText()
{
    const void* const address = currentContext();
    std::shared_ptr<TextContext> context = knownContext(address);
    if (context && context->isOfCurrentContext())
        return context;
    context = std::make_shared<TextContext>();
    SharedText& shared = sharedText();
    const std::lock_guard lock(shared.contextsMutex);
    shared.contexts[address] = context;
    return context;
}

// In single precision, towards zero. Nothing when the text starts further away than any pixel of it could reach.
std::optional<TextPen> penAt(const QPointF& position, const QSize& canvas)
{
    constexpr float kFar = 1e9F;
    const float left = static_cast<float>(canvas.width()) * static_cast<float>(position.x());
    const float top = static_cast<float>(canvas.height()) * static_cast<float>(position.y());
    if (!(std::abs(left) < kFar) || !(std::abs(top) < kFar))
        return std::nullopt;
    return TextPen{static_cast<std::int64_t>(left), static_cast<std::int64_t>(top)};
}

TextImage rasterised(const TextKey& key)
{
    SharedText& shared = sharedText();
    const std::lock_guard lock(shared.fontMutex);
    return rasteriseText(shared.font, key.text, key.fontSize, key.pen, canvasOf(key.window));
}

struct ReadyText
{
    std::shared_ptr<TextContext> context;
    const TextContext::Text* text;
};

// Nothing when there is nothing to draw, or no way to.
std::optional<ReadyText> readyText(const QString& text, const QPointF& position, const QSize& window, int fontSize)
{
    const QSize canvas = canvasOf(window);
    const std::optional<TextPen> pen = penAt(position, canvas);
    if (text.isEmpty() || canvas.isEmpty() || !pen)
        return std::nullopt;
    if (glGetError() != GL_NO_ERROR) {
        qDebug() << "GL error";
        return std::nullopt;
    }
    glActiveTexture(GL_TEXTURE0);
    std::shared_ptr<TextContext> context = contextForText();
    if (!context->canDraw())
        return std::nullopt;
    const TextKey key{text, fontSize, window, *pen};
    const TextContext::Text* shown = context->find(key);
    if (!shown)
        shown = context->add(key, rasterised(key));
    return ReadyText{std::move(context), shown};
}

} // namespace

int renderText(const DrawColor& color, const QString& text, const QPointF& position, const QSize& size, int fontSize)
{
    if (const auto ready = readyText(text, position, size, fontSize))
        ready->context->draw(*ready->text, color);
    return estimatedWidth(text, fontSize);
}

int estimatedWidth(const QString& text, int fontSize)
{
    return static_cast<int>(static_cast<double>(fontSize) * text.size() * 0.6);
}

void renderFramedText(const DrawColor& color, const QString& text, const QPointF& position, const TextFrame& frame,
                      const QSize& size, int fontSize)
{
    if (const auto ready = readyText(text, position, size, fontSize))
        ready->context->drawFramed(*ready->text, color, frame);
    else
        renderRectangle(frame.color, frame.rect, size, false);
}

} // namespace quillmark::lumen_deck
