#include "tests/support/Wall.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

using namespace wall;

namespace {

using CaptureTest = WallTest;

TEST_F(CaptureTest, namesPicturesByFormatAndKind)
{
    const std::tuple<const char*, const char*, const char*, QString> pictures[] = {
        {"0", "playback_cam1.jpg", "TP_JPEGCapture", dayFolder("PlaybackPics") + "/cam1.jpg"},
        {"0", "cam1.bmp", "TP_JPEGCapture", dayFolder("CaptureFiles") + "/cam1.jpg"},
        {"1", "a.jpg.bmp", "TP_BMPCapture", dayFolder("CaptureFiles") + "/a.bmp"},
        {"1", "a.JPG", "TP_BMPCapture", dayFolder("CaptureFiles") + "/a.JPG.bmp"},
        {"\"x\"", "ü", "TP_JPEGCapture", dayFolder("CaptureFiles") + "/ü.jpg"},
    };
    const std::string id = std::to_string(play());
    ask(LD_Pause);
    for (const auto& [format, fileName, call, path] : pictures) {
        configure(QByteArray(R"({"captureFileFormat":)") + format + "}");
        const QByteArray request = QByteArray(R"({"wndIndex":0,"fileName":")") + fileName + "\"}";
        EXPECT_TRUE(ask(LD_Snapshot, request).null);
        EXPECT_THAT(calls(call).back().arguments, ElementsAre(id, path.toStdString()));
        EXPECT_TRUE(QFileInfo(path).dir().exists());
    }
    engine_double::answer("TP_BMPCapture", -1);
    configure(R"({"captureFileFormat":1})");
    EXPECT_THAT(ask(LD_Snapshot, R"({"wndIndex":0,"fileName":"a"})").message(), HasSubstr("TP_JPEGCapture error, "));
    EXPECT_EQ(ask(LD_Snapshot, R"({"fileName":1})").message(),
              "Snapshot descriptor should contains key 'fileName' of String");
    configure(R"({"captureFileFormat":2})");
    EXPECT_EQ(ask(LD_Snapshot, R"({"fileName":"a"})").message(), "file format magic number is neither 0 nor 1");
}

TEST_F(CaptureTest, onScreenTimeIsLocalAndRollsOver)
{
    play();
    const auto osdTime = [this](const std::vector<double>& record) {
        engine_double::give("TP_GetOSDTime", record);
        return ask(LD_GetOSDTime);
    };
    const QDateTime noon({2024, 7, 1}, {12, 0});
    EXPECT_EQ(osdTime({2024, 7, 1, 12, 0, 0}).object["osdTime"].toDouble(),
              static_cast<double>(noon.toSecsSinceEpoch()));
    EXPECT_EQ(osdTime({2023, 13, 1, 0, 0, 60}).object, osdTime({2024, 1, 1, 0, 1, 0}).object);
    const std::vector<double> outside[] = {{2038, 1, 1, 0, 0, 0},  {1969, 1, 1, 0, 0, 0},  {2024, 14, 1, 0, 0, 0},
                                           {2024, 0, 1, 0, 0, 0},  {2024, 1, 0, 0, 0, 0},  {2024, 1, 32, 0, 0, 0},
                                           {2024, 1, 1, 61, 0, 0}, {2024, 1, 1, 0, 61, 0}, {2024, 1, 1, 0, 0, 61}};
    for (const auto& record : outside)
        EXPECT_EQ(osdTime(record).message(), "the player is not playing can not get osd time");
}

} // namespace
