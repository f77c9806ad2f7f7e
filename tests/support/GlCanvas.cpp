#include "tests/support/GlCanvas.h"

#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>

#include <cstdlib>

GlCanvas::GlCanvas(QSize size)
    : size_(size)
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    surface_.setFormat(format);
    surface_.create();
    context_.setFormat(format);
    context_.create();
    makeCurrent();
    clear();
}

GlCanvas::~GlCanvas()
{
    context_.makeCurrent(&surface_);
    frame_.reset();
    context_.doneCurrent();
}

void GlCanvas::makeCurrent()
{
    context_.makeCurrent(&surface_);
    if (!frame_)
        frame_ = std::make_unique<QOpenGLFramebufferObject>(size_);
    frame_->bind();
    context_.functions()->glViewport(0, 0, size_.width(), size_.height());
}

void GlCanvas::clear(const QColor& color)
{
    context_.functions()->glClearColor(static_cast<float>(color.redF()), static_cast<float>(color.greenF()),
                                       static_cast<float>(color.blueF()), 1.0F);
    context_.functions()->glClear(GL_COLOR_BUFFER_BIT);
}

QImage GlCanvas::picture()
{
    QImage bottomUp(size_, QImage::Format_RGBX8888); // what the framebuffer holds as alpha is nobody's business
    context_.functions()->glReadPixels(0, 0, size_.width(), size_.height(), GL_RGBA, GL_UNSIGNED_BYTE, bottomUp.bits());
    return bottomUp.mirrored().convertToFormat(QImage::Format_RGB32);
}

namespace {

template <class Condition> int countPixels(const QImage& picture, Condition condition)
{
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            count += condition(x, y) ? 1 : 0;
    }
    return count;
}

bool differ(QRgb a, QRgb b)
{
    return std::abs(qRed(a) - qRed(b)) > 1 || std::abs(qGreen(a) - qGreen(b)) > 1 || std::abs(qBlue(a) - qBlue(b)) > 1;
}

} // namespace

int differingPixels(const QImage& a, const QImage& b)
{
    if (a.size() != b.size())
        return a.width() * a.height();
    return countPixels(a, [&](int x, int y) { return differ(a.pixel(x, y), b.pixel(x, y)); });
}

int paintedPixels(const QImage& picture)
{
    return countPixels(picture, [&](int x, int y) { return (picture.pixel(x, y) & 0xFFFFFF) != 0; });
}
