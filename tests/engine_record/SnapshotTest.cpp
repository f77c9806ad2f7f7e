#include "engine/record/Snapshot.h"
#include "engine/core/PixelColours.h"
#include "tests/engine_record/Clip.h"

#include <cmath>
#include <numeric>

namespace tide {
namespace {

using engine_test::Folder;
using record_test::Clip;

std::vector<std::uint8_t> toRgb(const AVFrame& frame, AVColorSpace space)
{
    std::vector<std::uint8_t> rgb(static_cast<std::size_t>(frame.width * frame.height * 3));
    const ScalerPtr scaler(sws_getContext(frame.width, frame.height, plainFormatOf(frame), frame.width, frame.height,
                                          AV_PIX_FMT_RGB24, SWS_BICUBIC | SWS_ACCURATE_RND, nullptr, nullptr, nullptr));
    sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(space), isFullRange(frame) ? 1 : 0,
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16, 1 << 16);
    std::uint8_t* planes[] = {rgb.data()};
    const int strides[] = {frame.width * 3};
    sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, planes, strides);
    return rgb;
}

double psnr(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b)
{
    const double squares = std::inner_product(a.begin(), a.end(), b.begin(), 0.0, std::plus<>(),
                                              [](int x, int y) { return (x - y) * (x - y); });
    return 10 * std::log10(255.0 * 255.0 * static_cast<double>(a.size()) / std::max(squares, 1.0));
}

TEST(SnapshotTest, anyPictureIsSavedAsItIsShown)
{
    const struct
    {
        std::string arguments;
        AVColorSpace space; // as which a viewer of the video shows it
    } pictures[] = {{"smptehdbars=s=1920x1080 -c:v libx264 -pix_fmt yuv420p -qp 4", AVCOL_SPC_BT709},
                    {"testsrc=s=352x288 -c:v libx264 -pix_fmt yuv420p -qp 4", AVCOL_SPC_SMPTE170M},
                    {"testsrc=s=322x242 -c:v mjpeg -pix_fmt yuvj422p -q:v 2", AVCOL_SPC_SMPTE170M},
                    {"smptebars=s=704x576 -c:v libx264 -pix_fmt yuv444p10 -qp 4", AVCOL_SPC_SMPTE170M}};
    const Folder folder;
    const std::string source = folder / "source.mkv";
    for (const auto& picture : pictures) {
        SCOPED_TRACE(picture.arguments);
        engine_test::makeClip("-f lavfi -i " + picture.arguments + " -frames:v 1 " + source);
        const FramePtr shown = std::move(Clip(source).frames(AVMEDIA_TYPE_VIDEO).at(0));
        for (const auto& [kind, name, least] : {std::tuple(PictureFile::Jpeg, folder / "shot.jpg", 37),
                                                std::tuple(PictureFile::Bmp, folder / "shot.bmp", 44)}) {
            EXPECT_EQ(saveSnapshot(*shown, kind, name), Failure::None);
            const FramePtr saved = std::move(Clip(name).frames(AVMEDIA_TYPE_VIDEO).at(0));
            ASSERT_EQ(std::pair(saved->width, saved->height), std::pair(shown->width, shown->height));
            EXPECT_GT(psnr(toRgb(*saved, AVCOL_SPC_SMPTE170M), toRgb(*shown, picture.space)), least) << name;
        }
        EXPECT_EQ(folder.count(), 3U); // no parts left
    }
}

} // namespace
} // namespace tide
