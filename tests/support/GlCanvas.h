#pragma once

#include <QColor>
#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>

#include <memory>

class QOpenGLFramebufferObject;

// A GL context of the compatibility profile with a framebuffer to draw into, as the engine has when it calls a hook.
class GlCanvas
{
public:
    explicit GlCanvas(QSize size);
    ~GlCanvas();

    bool isValid() const { return context_.isValid(); }
    QSize size() const { return size_; }
    void makeCurrent();
    void clear(const QColor& color = Qt::black);
    QImage picture(); // top row first

private:
    QSize size_;
    QOffscreenSurface surface_;
    QOpenGLContext context_;
    std::unique_ptr<QOpenGLFramebufferObject> frame_;
};

// How many pixels of two pictures differ by more than one in a component; all of them when the sizes differ.
int differingPixels(const QImage& a, const QImage& b);

// How many pixels are not black.
int paintedPixels(const QImage& picture);
