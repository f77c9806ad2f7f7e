#include "engine/present/FrameTexture.h"

namespace tide {

namespace {

bool fitsTexture(const AVFrame& frame)
{
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
    return frame.width > 0 && frame.height > 0 && frame.width <= most && frame.height <= most;
}

void allocate(int width, int height, GLenum format)
{
    const GLint internal = format == GL_LUMINANCE ? GL_LUMINANCE8 : GL_LUMINANCE8_ALPHA8;
    glTexImage2D(GL_TEXTURE_2D, 0, internal, width, height, 0, format, GL_UNSIGNED_BYTE, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

} // namespace

bool FrameTexture::update(const Picture& picture)
{
    if (serial_ == picture.serial)
        return drawable_;
    serial_ = picture.serial;
    const AVFrame* frame = picture.frame.get();
    drawable_ = frame != nullptr && fitsTexture(*frame);
    if (drawable_ && !isDrawable(*frame)) {
        frame = converter_.convert(*frame);
        drawable_ = frame != nullptr;
    }
    if (drawable_)
        upload(*frame);
    return drawable_;
}

void FrameTexture::upload(const AVFrame& frame)
{
    width_ = frame.width;
    height_ = frame.height;
    colours_ = colourMatrixOf(frame);
    chroma_ = chromaPlaneOf(frame);
    interleaved_ = hasInterleavedChroma(frame);
    glActiveTexture(GL_TEXTURE0);
    uploadPlane(frame, 0, width_, height_, GL_LUMINANCE);
    uploadPlane(frame, 1, chroma_.width, chroma_.height, interleaved_ ? GL_LUMINANCE_ALPHA : GL_LUMINANCE);
    if (!interleaved_)
        uploadPlane(frame, 2, chroma_.width, chroma_.height, GL_LUMINANCE);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
}

void FrameTexture::uploadPlane(const AVFrame& frame, std::size_t index, int width, int height, GLenum format)
{
    Plane& plane = planes_[index];
    glBindTexture(GL_TEXTURE_2D, plane.texture.make());
    if (plane.width != width || plane.height != height || plane.format != format) {
        allocate(width, height, format);
        plane.width = width;
        plane.height = height;
        plane.format = format;
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, frame.linesize[index] / (format == GL_LUMINANCE ? 1 : 2));
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, format, GL_UNSIGNED_BYTE, frame.data[index]);
}

void FrameTexture::bind() const
{
    for (std::size_t unit = planes_.size(); unit-- > 0;) {
        glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
        glBindTexture(GL_TEXTURE_2D, planes_[unit].texture.get());
    }
}

} // namespace tide
