#include "engine/stream/TestPicture.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace tide {

namespace {

struct Yuv
{
    std::uint8_t y, u, v;
};

constexpr std::array<Yuv, 8> kBars{{{180, 128, 128},
                                    {162, 44, 142},
                                    {131, 156, 44},
                                    {112, 72, 58},
                                    {84, 184, 198},
                                    {65, 100, 212},
                                    {35, 212, 114},
                                    {16, 128, 128}}};
constexpr Yuv kBlack{16, 128, 128};
constexpr Yuv kWhite{235, 128, 128};
constexpr int kCells = 24;
constexpr int kRows = 12;

FramePtr newFrame(int width, int height)
{
    FramePtr frame(av_frame_alloc());
    if (!frame)
        return nullptr;
    frame->format = AV_PIX_FMT_YUV420P;
    frame->width = width;
    frame->height = height;
    return av_frame_get_buffer(frame.get(), 0) < 0 ? nullptr : std::move(frame);
}

void fillPlane(AVFrame& frame, int plane, int left, int top, int width, int height, std::uint8_t value)
{
    const int shift = plane == 0 ? 0 : 1;
    for (int row = top >> shift; row < (top + height) >> shift; ++row)
        std::memset(frame.data[plane] + row * frame.linesize[plane] + (left >> shift), value,
                    static_cast<std::size_t>(((left + width) >> shift) - (left >> shift)));
}

void fill(AVFrame& frame, int left, int top, int width, int height, Yuv colour)
{
    const int right = std::clamp(left + width, 0, frame.width);
    const int bottom = std::clamp(top + height, 0, frame.height);
    if (left < 0 || top < 0 || right <= left || bottom <= top)
        return;
    fillPlane(frame, 0, left, top, right - left, bottom - top, colour.y);
    fillPlane(frame, 1, left, top, right - left, bottom - top, colour.u);
    fillPlane(frame, 2, left, top, right - left, bottom - top, colour.v);
}

// A glyph is seven bars: top, upper left, upper right, middle, lower left, lower right, bottom; one bit each from the
// top.
constexpr std::array<unsigned, 10> kDigits{0b1110111, 0b0010010, 0b1011101, 0b1011011, 0b0111010,
                                           0b1101011, 0b1101111, 0b1010010, 0b1111111, 0b1111011};

void drawDigit(AVFrame& frame, int left, int top, int unit, unsigned bars)
{
    struct Bar
    {
        int x, y, width, height;
    };
    static constexpr std::array<Bar, 7> kBarsOfDigit{
        {{0, 0, 4, 1}, {0, 0, 1, 4}, {3, 0, 1, 4}, {0, 3, 4, 1}, {0, 3, 1, 4}, {3, 3, 1, 4}, {0, 6, 4, 1}}};
    for (std::size_t i = 0; i < kBarsOfDigit.size(); ++i) {
        const Bar& bar = kBarsOfDigit[i];
        if (bars & (1U << (6 - i)))
            fill(frame, left + bar.x * unit, top + bar.y * unit, bar.width * unit, bar.height * unit, kWhite);
    }
}

} // namespace

TestPicture::TestPicture(int width, int height, int rate)
    : width_(width)
    , height_(height)
    , rate_(rate)
    , background_(newFrame(width, height))
{
    if (background_)
        drawBars();
}

FramePtr TestPicture::draw(std::int64_t number) const
{
    FramePtr frame(background_ ? av_frame_clone(background_.get()) : nullptr);
    if (!frame || av_frame_make_writable(frame.get()) < 0)
        return nullptr;
    drawCells(*frame, number);
    const std::int64_t seconds = number / rate_;
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d:%02d", static_cast<int>(seconds / 3600 % 100),
                  static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60));
    drawText(*frame, text.data(), 4);
    std::snprintf(text.data(), text.size(), "%08lld", static_cast<long long>(number % 100000000));
    drawText(*frame, text.data(), 8);
    return frame;
}

void TestPicture::drawBars()
{
    const int count = static_cast<int>(kBars.size());
    for (int i = 0; i < count; ++i) {
        const int left = width_ * i / count & ~1;
        fill(*background_, left, 0, width_ - left, height_, kBars[static_cast<std::size_t>(i)]);
    }
}

void TestPicture::drawCells(AVFrame& frame, std::int64_t number) const
{
    for (int i = 0; i < kCells; ++i) {
        const int left = width_ * i / kCells;
        const bool set = (number >> (kCells - 1 - i)) & 1;
        fill(frame, left, 0, width_ * (i + 1) / kCells - left, height_ / kRows, set ? kWhite : kBlack);
    }
}

// Eight glyphs of four units with a gap of one between them, on a black ground, in the middle of the row.
void TestPicture::drawText(AVFrame& frame, const char* text, int row) const
{
    const int length = static_cast<int>(std::strlen(text));
    const int unit = std::max(width_ / 64, 1);
    const int top = height_ * row / kRows;
    int left = (width_ - length * 5 * unit) / 2;
    fill(frame, std::max(left - unit, 0), std::max(top - unit, 0), (length * 5 + 1) * unit, 9 * unit, kBlack);
    for (int i = 0; i < length; ++i, left += 5 * unit) {
        if (text[i] == ':') {
            fill(frame, left + unit, top + 2 * unit, unit, unit, kWhite);
            fill(frame, left + unit, top + 4 * unit, unit, unit, kWhite);
        } else {
            drawDigit(frame, left, top, unit, kDigits[static_cast<std::size_t>(text[i] - '0')]);
        }
    }
}

} // namespace tide
