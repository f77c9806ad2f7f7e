#include "engine/present/FrameTexture.h"

#include <string_view>

namespace tide {

namespace {

bool fitsTexture(const AVFrame& frame)
{
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
    return frame.width > 0 && frame.height > 0 && frame.width <= most && frame.height <= most;
}

bool isSoftwareRenderer()
{
    const auto* text = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    const std::string_view name = text == nullptr ? "" : text;
    for (const char* software : {"llvmpipe", "softpipe", "Software Rasterizer"}) {
        if (name.find(software) != std::string_view::npos)
            return true;
    }
    return false;
}

struct SampleFormat
{
    GLenum format;
    GLint internal;
};

SampleFormat formatOf(int bytes)
{
    switch (bytes) {
    case 1:
        return {GL_LUMINANCE, GL_LUMINANCE8};
    case 2:
        return {GL_LUMINANCE_ALPHA, GL_LUMINANCE8_ALPHA8};
    default:
        return {GL_RGBA, GL_RGBA8};
    }
}

void allocate(int width, int height, const SampleFormat& sample)
{
    glTexImage2D(GL_TEXTURE_2D, 0, sample.internal, width, height, 0, sample.format, GL_UNSIGNED_BYTE, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

} // namespace

bool FrameTexture::update(const Picture& picture, PackBuffer& buffer)
{
    if (serial_ != picture.serial) {
        serial_ = picture.serial;
        drawable_ = picture.frame && fitsTexture(*picture.frame) && load(*picture.frame, buffer);
    }
    return drawable_;
}

bool FrameTexture::load(const AVFrame& frame, PackBuffer& buffer)
{
    static const bool software = isSoftwareRenderer();
    layout_ = layoutFor(frame, software);
    width_ = frame.width;
    height_ = frame.height;
    glActiveTexture(GL_TEXTURE0);
    if (layout_ == PictureLayout::Packed) {
        const AVFrame* packed = packer_.pack(frame, buffer);
        if (packed == nullptr)
            return false;
        upload(*packed, 0, width_, height_, 4);
    } else {
        uploadPlanes(frame);
    }
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    return true;
}

void FrameTexture::uploadPlanes(const AVFrame& frame)
{
    colours_ = colourMatrixOf(frame);
    chroma_ = chromaPlaneOf(frame);
    upload(frame, 0, width_, height_, 1);
    upload(frame, 1, chroma_.width, chroma_.height, layout_ == PictureLayout::TwoPlanes ? 2 : 1);
    if (layout_ == PictureLayout::ThreePlanes)
        upload(frame, 2, chroma_.width, chroma_.height, 1);
}

void FrameTexture::upload(const AVFrame& frame, std::size_t index, int width, int height, int bytes)
{
    Plane& plane = planes_[index];
    const SampleFormat sample = formatOf(bytes);
    glBindTexture(GL_TEXTURE_2D, plane.texture.make());
    if (plane.width != width || plane.height != height || plane.bytes != bytes) {
        allocate(width, height, sample);
        plane.width = width;
        plane.height = height;
        plane.bytes = bytes;
    }
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, frame.linesize[index] / bytes);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, sample.format, GL_UNSIGNED_BYTE, frame.data[index]);
}

void FrameTexture::bind() const
{
    for (std::size_t unit = planes_.size(); unit-- > 0;) {
        glActiveTexture(static_cast<GLenum>(GL_TEXTURE0 + unit));
        glBindTexture(GL_TEXTURE_2D, planes_[unit].texture.get());
    }
}

} // namespace tide
