#include "tests/engine_record/Clip.h"

#include <QDateTime>

namespace {

using engine_test::eventually;
using record_test::Clip;

class CaptureFace : public engine_test::WindowTest
{
protected:
    engine_test::Folder folder_;
};

TEST_F(CaptureFace, aStreamIsRecordedInPartsAndSavedAsAPicture)
{
    const int id = play("test:pattern?size=128x96&rate=25&gop=10&sound=440");
    ASSERT_GT(id, 0);
    const std::string first = folder_ / "first.mp4", second = folder_ / "second.mp4", shot = folder_ / "shot.jpg";
    EXPECT_EQ(TP_SwitchFile(id, first.c_str()) + TP_StopSave(id) + TP_GetRecordFileSize(id), -3);
    EXPECT_EQ(TP_StartSave(id, first.c_str(), 2), 0);
    EXPECT_EQ(TP_StartSave(id, second.c_str(), 2), -1);
    EXPECT_EQ(TP_GetLastError(), static_cast<unsigned>(TP_ERROR_WRONG_STATE));
    EXPECT_TRUE(eventually([&] { return TP_GetRecordFileSize(id) > 20000; }));
    EXPECT_EQ(TP_SwitchFile(id, second.c_str()), 0);
    EXPECT_EQ(TP_JPEGCapture(id, shot.c_str()), 0);
    for (const std::string& path : {folder_ / "none/shot.bmp", folder_ / ".", std::string("/proc/shot.bmp")}) {
        EXPECT_EQ(TP_BMPCapture(id, path.c_str()), -1) << path;
        EXPECT_EQ(TP_GetLastError(), static_cast<unsigned>(TP_ERROR_WRITE_FAILED)) << path;
    }
    EXPECT_TRUE(eventually([&] { return TP_GetRecordFileSize(id) > 20000; }));
    EXPECT_EQ(TP_StopSave(id), 0);
    EXPECT_EQ(TP_StopSave(id), -1);
    for (const std::string& path : {first, second}) {
        const Clip made(path);
        const auto video = made.packets(AVMEDIA_TYPE_VIDEO);
        EXPECT_GE(video.size(), 10u);
        EXPECT_EQ(made.decodable(AVMEDIA_TYPE_VIDEO), static_cast<int>(video.size()));
        EXPECT_GT(made.decodable(AVMEDIA_TYPE_AUDIO), 10);
    }
    EXPECT_EQ(Clip(shot).parameters(AVMEDIA_TYPE_VIDEO)->width, 128);

    EXPECT_EQ(TP_StartSave(id, (folder_ / "third.mp4").c_str(), 2), 0);
    EXPECT_TRUE(eventually([&] { return TP_GetRecordFileSize(id) > 0; }));
    EXPECT_EQ(TP_Stop(id), 0); // completes the file
    EXPECT_GT(Clip(folder_ / "third.mp4").decodable(AVMEDIA_TYPE_VIDEO), 0);
}

TEST_F(CaptureFace, theTimeOnScreenIsLocal)
{
    const auto secondsOf = [this](const std::string& url) {
        _TP_OSDTIME time{};
        const int id = play(url);
        EXPECT_TRUE(eventually([&] { return TP_GetOSDTime(id, &time) == 0; }));
        EXPECT_EQ(TP_GetOSDTime(id, nullptr), -1);
        TP_Stop(id);
        const QDateTime moment({time.year, time.month, time.day}, {time.hour, time.minute, time.second});
        return static_cast<double>(moment.toSecsSinceEpoch());
    };
    EXPECT_NEAR(secondsOf("test:pattern?size=64x64"), static_cast<double>(QDateTime::currentSecsSinceEpoch()), 2);

    const std::string clip = folder_ / "clip.mp4";
    engine_test::makeClip("-f lavfi -i testsrc=s=64x64:d=60 -g 25 -metadata creation_time=2021-03-04T05:06:00Z " +
                          clip);
    EXPECT_NEAR(secondsOf(clip), 1614834360, 3);
}

TEST_F(CaptureFace, aStreamWithoutAPictureSavesNothing)
{
    const std::string path = folder_ / "a";
    const int silent = play("rtsp://127.0.0.1:1/nothing");
    EXPECT_EQ(TP_BMPCapture(silent, path.c_str()), -1);
    EXPECT_EQ(TP_GetLastError(), static_cast<unsigned>(TP_ERROR_NO_PICTURE));
    EXPECT_EQ(TP_JPEGCapture(silent, nullptr) + TP_StartSave(silent, "", 2), -2);
    EXPECT_EQ(TP_StartSave(silent, path.c_str(), 2), 0); // waits for the stream
    TP_Stop(silent);
    EXPECT_EQ(folder_.count(), 0U);
}

} // namespace
