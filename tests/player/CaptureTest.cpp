#include "tests/support/Wall.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <ctime>

using engine_double::calls;
using testing::HasSubstr;
using wall::Answer;

namespace {

class CaptureTest : public wall::WallTest
{
protected:
    static std::string folder(const char* kind)
    {
        return (QString::fromLocal8Bit(qgetenv("PWD")) + "/Web/" + kind + "/" +
                QDate::currentDate().toString("yyyy-MM-dd"))
            .toStdString();
    }

    Answer osdTime(std::vector<double> record)
    {
        engine_double::give("TP_GetOSDTime", std::move(record));
        return ask(LD_GetOSDTime, R"({"wndIndex":0})");
    }
};

TEST_F(CaptureTest, namesPicturesByFormatAndKind)
{
    struct
    {
        const char* format;
        const char* fileName;
        const char* call;
        std::string path;
    } const pictures[] = {
        {"0", "playback_cam1.jpg", "TP_JPEGCapture", folder("PlaybackPics") + "/cam1.jpg"},
        {"0", "cam1.bmp", "TP_JPEGCapture", folder("CaptureFiles") + "/cam1.jpg"},
        {"1", "a.jpg.bmp", "TP_BMPCapture", folder("CaptureFiles") + "/a.bmp"},
        {"1", "a.JPG", "TP_BMPCapture", folder("CaptureFiles") + "/a.JPG.bmp"},
        {"\"x\"", "ü", "TP_JPEGCapture", folder("CaptureFiles") + "/ü.jpg"},
    };
    const std::string id = std::to_string(play());
    ask(LD_Pause, R"({"wndIndex":0})");
    for (const auto& picture : pictures) {
        wall::configure(QByteArray(R"({"captureFileFormat":)") + picture.format + "}");
        const QByteArray request = QByteArray(R"({"wndIndex":0,"fileName":")") + picture.fileName + "\"}";
        EXPECT_TRUE(ask(LD_Snapshot, request).null);
        EXPECT_EQ(calls(picture.call).back().arguments, (std::vector<std::string>{id, picture.path}));
        EXPECT_TRUE(QFileInfo(QString::fromStdString(picture.path)).dir().exists());
        engine_double::answer(picture.call, -1);
        EXPECT_THAT(ask(LD_Snapshot, request).message(), HasSubstr("call TP_JPEGCapture error, "));
        engine_double::answer(picture.call, 0);
    }
}

TEST_F(CaptureTest, refusals)
{
    EXPECT_EQ(ask(LD_Snapshot, "[]").message(), "Snapshot descriptor should be json object");
    EXPECT_EQ(ask(LD_Snapshot, R"({"fileName":1})").message(),
              "Snapshot descriptor should contains key 'fileName' of String");
    EXPECT_EQ(ask(LD_Snapshot, R"({"fileName":"a"})").message(), "play_window reference can not be found");
    EXPECT_EQ(ask(LD_Snapshot, R"({"wndIndex":0,"fileName":"a"})").message(),
              "the player is not playing can not capture");
    wall::configure(R"({"captureFileFormat":2})");
    EXPECT_EQ(ask(LD_Snapshot, R"({"fileName":"a"})").message(), "file format magic number is neither 0 nor 1");
    EXPECT_EQ(ask(LD_GetOSDTime, "[]").message(), "getOSDTime json descriptor should be a json object");
    EXPECT_EQ(osdTime({2024, 1, 1, 0, 0, 0}).message(), "the player is not playing can not get osd time");
}

TEST_F(CaptureTest, onScreenTimeIsLocalAndRollsOver)
{
    play();
    std::tm local{};
    local.tm_year = 124;
    local.tm_mon = 6;
    local.tm_mday = 1;
    local.tm_hour = 12;
    local.tm_isdst = -1;
    EXPECT_EQ(osdTime({2024, 7, 1, 12, 0, 0}).object["osdTime"].toDouble(), static_cast<double>(std::mktime(&local)));
    EXPECT_EQ(osdTime({2023, 13, 1, 0, 0, 60}).object, osdTime({2024, 1, 1, 0, 1, 0}).object);
    const std::vector<double> outside[] = {{2038, 1, 1, 0, 0, 0},  {1969, 1, 1, 0, 0, 0},  {2024, 14, 1, 0, 0, 0},
                                           {2024, 0, 1, 0, 0, 0},  {2024, 1, 0, 0, 0, 0},  {2024, 1, 32, 0, 0, 0},
                                           {2024, 1, 1, 61, 0, 0}, {2024, 1, 1, 0, 61, 0}, {2024, 1, 1, 0, 0, 61}};
    for (const auto& record : outside)
        EXPECT_EQ(osdTime(record).message(), "the player is not playing can not get osd time");
    engine_double::answer("TP_GetOSDTime", -1);
    EXPECT_THAT(osdTime({}).message(), HasSubstr("call TP_GetOSDTime error, "));
}

} // namespace
