#pragma once

#include <QColor>
#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>

#include <cstdlib>
#include <memory>

// A GL context of the compatibility profile with a framebuffer to draw into, as the engine has when it calls a hook.
class GlCanvas
{
public:
    explicit GlCanvas(QSize size)
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
    ~GlCanvas()
    {
        context_.makeCurrent(&surface_);
        frame_.reset();
        context_.doneCurrent();
    }

    bool isValid() const { return context_.isValid(); }
    QSize size() const { return size_; }
    void makeCurrent()
    {
        context_.makeCurrent(&surface_);
        if (!frame_)
            frame_ = std::make_unique<QOpenGLFramebufferObject>(size_);
        frame_->bind();
        context_.functions()->glViewport(0, 0, size_.width(), size_.height());
    }
    void clear(const QColor& color = Qt::black)
    {
        context_.functions()->glClearColor(static_cast<float>(color.redF()), static_cast<float>(color.greenF()),
                                           static_cast<float>(color.blueF()), 1.0F);
        context_.functions()->glClear(GL_COLOR_BUFFER_BIT);
    }
    QImage picture()
    {
        QImage bottomUp(size_, QImage::Format_RGBX8888); // what the framebuffer holds as alpha is nobody's business
        context_.functions()->glReadPixels(0, 0, size_.width(), size_.height(), GL_RGBA, GL_UNSIGNED_BYTE,
                                           bottomUp.bits());
        return bottomUp.mirrored().convertToFormat(QImage::Format_RGB32);
    }

private:
    QSize size_;
    QOffscreenSurface surface_;
    QOpenGLContext context_;
    std::unique_ptr<QOpenGLFramebufferObject> frame_;
};

// How many pixels of two pictures differ by more than one in a component; all of them when the sizes differ.
inline int differingPixels(const QImage& a, const QImage& b)
{
    const auto differ = [](QRgb left, QRgb right) {
        return std::abs(qRed(left) - qRed(right)) > 1 || std::abs(qGreen(left) - qGreen(right)) > 1 ||
               std::abs(qBlue(left) - qBlue(right)) > 1;
    };
    if (a.size() != b.size())
        return a.width() * a.height();
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            count += differ(a.pixel(x, y), b.pixel(x, y)) ? 1 : 0;
    }
    return count;
}

// How many differ so from black.
inline int paintedPixels(const QImage& picture)
{
    QImage black(picture.size(), QImage::Format_RGB32);
    black.fill(Qt::black);
    return differingPixels(picture, black);
}
