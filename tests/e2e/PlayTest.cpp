#include "tests/e2e/WallProgram.h"

#include <QColor>
#include <QThread>

#include <gmock/gmock.h>

namespace {

enum StreamCode
{
    Opened = 1,
    OpenFailed = 2,
    Ended = 4,
    Lost = 5,
    Restored = 6
};
constexpr int kSelected = 0, kStream = 3;

QString colourClip(const QString& colour)
{
    return clip(colour, "color=c=" + colour + ":s=352x288:r=25", 60);
}

QString movingClip()
{
    return clip("moving", "testsrc2=s=352x288:r=25", 30);
}

// lumen-camera on a clip, as a live source.
class Camera
{
public:
    explicit Camera(const QString& film)
        : reel_(film + ".h264")
    {
        EXPECT_EQ(QProcess::execute("ffmpeg", {"-v", "error", "-y", "-i", film, "-c", "copy", "-bsf:v",
                                               "h264_mp4toannexb,h264_metadata=aud=insert", "-f", "h264", reel_}),
                  0);
        process_.start(programPath("lumen-camera"), {reel_, "25"});
        EXPECT_TRUE(process_.waitForReadyRead());
        address_ = process_.readLine().trimmed();
    }
    ~Camera()
    {
        process_.kill();
        process_.waitForFinished();
    }
    QString address() const { return address_; }

private:
    QString reel_, address_;
    QProcess process_;
};

QJsonObject cellPlace(WallProgram& wall, int cell, const char* what = "picture")
{
    return wall.status().value("windows").toArray()[cell].toObject().value(what).toObject();
}

QRect toRect(const QJsonObject& place)
{
    return {place.value("x").toInt(), place.value("y").toInt(), place.value("width").toInt(),
            place.value("height").toInt()};
}

QImage picture(WallProgram& wall, int cell)
{
    return wall.screenshot().copy(toRect(cellPlace(wall, cell)));
}

// What stands in the middle of a cell, away from its tag.
QColor middle(WallProgram& wall, int cell)
{
    const QImage seen = picture(wall, cell);
    return seen.pixelColor(seen.width() / 2, seen.height() / 2);
}

bool near(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) < 24 && std::abs(a.green() - b.green()) < 24 &&
           std::abs(a.blue() - b.blue()) < 24;
}

QJsonObject playArgs(int cell, const QString& url)
{
    return {{"wndIndex", cell}, {"url", url}, {"auth", ""}};
}

const QJsonValue kNull(QJsonValue::Null);

} // namespace

TEST(Play, EachCellShowsItsClipAndOneALiveCamera)
{
    const QStringList colours{"red", "lime", "blue"};
    const Camera camera(colourClip("yellow"));
    WallProgram wall({"--grid", "2"});
    for (int cell = 0; cell < 3; ++cell)
        ASSERT_EQ(wall.call("LD_Play", playArgs(cell, colourClip(colours[cell]))), kNull);
    ASSERT_EQ(wall.call("LD_Play", playArgs(3, camera.address()), "worker"), kNull);
    for (int cell = 0; cell < 4; ++cell)
        EXPECT_TRUE(wall.sawEvent(kStream, cell, Opened)) << "window " << cell;
    for (int cell = 0; cell < 4; ++cell) {
        const QColor expected(cell < 3 ? colours[cell] : "yellow");
        EXPECT_TRUE(eventually([&] { return near(middle(wall, cell), expected); }))
            << "window " << cell << " shows " << middle(wall, cell).name().toStdString();
    }
    EXPECT_EQ(wall.brokenLines(), 0);
}

TEST(Play, PausedPictureStandsAndStoppedPictureGoes)
{
    WallProgram wall;
    ASSERT_EQ(wall.call("LD_Play", playArgs(0, movingClip())), kNull);
    ASSERT_TRUE(wall.sawEvent(kStream, 0, Opened));
    const QImage first = picture(wall, 0);
    EXPECT_TRUE(eventually([&] { return picture(wall, 0) != first; })) << "it moves";

    ASSERT_EQ(wall.call("LD_Pause", QJsonObject{{"wndIndex", 0}}), kNull);
    QImage before;
    EXPECT_TRUE(eventually([&] {
        before = picture(wall, 0);
        return picture(wall, 0) == before;
    })) << "it stands";
    ASSERT_EQ(wall.call("LD_FrameForward", QJsonObject{{"wndIndex", 0}}), kNull);
    EXPECT_TRUE(eventually([&] { return picture(wall, 0) != before; })) << "one picture on";
    ASSERT_EQ(wall.call("LD_Resume", QJsonObject{{"wndIndex", 0}}), kNull);
    EXPECT_EQ(wall.call("LD_QueryPlayStatus", QJsonObject{{"wndIndex", 0}})
                  .toObject()["playInfo"]
                  .toObject()["pictureSize"]
                  .toObject()["width"],
              QJsonValue(352));

    ASSERT_EQ(wall.call("LD_Stop", QJsonObject{{"wndIndex", 0}}), kNull);
    EXPECT_EQ(wall.call("LD_IsWindowPlaying", QJsonObject{{"index", 0}}), QJsonValue(false));
    EXPECT_TRUE(eventually([&] {
        const QImage seen = picture(wall, 0);
        return seen.pixelColor(20, seen.height() / 2) == seen.pixelColor(seen.width() - 20, seen.height() / 3);
    })) << "the background is back";
}

TEST(Play, TheEndAndAMissingFileAreTold)
{
    WallProgram wall({"--grid", "2"});
    ASSERT_EQ(wall.call("LD_Play", playArgs(0, clip("short", "color=c=white:s=352x288:r=25", 1))), kNull);
    EXPECT_TRUE(wall.sawEvent(kStream, 0, Ended));
    wall.call("LD_Play", playArgs(1, "/no/such/film.mp4"));
    EXPECT_TRUE(wall.sawEvent(kStream, 1, OpenFailed));
    EXPECT_TRUE(eventually([&] {
        return wall.status()["windows"].toArray()[1].toObject()["trouble"] == QJsonValue("cannot be opened");
    })) << "the window tells it too";
}

TEST(Play, AClipThatEndsOutsideOfTheLayoutLoopsWhenItIsBack)
{
    WallProgram wall({"--grid", "2", "--loop"});
    ASSERT_EQ(wall.call("LD_Play", playArgs(3, clip("brief", "color=c=white:s=352x288:r=25", 3))), kNull);
    ASSERT_EQ(wall.call("LD_Play", playArgs(2, movingClip())), kNull);
    ASSERT_TRUE(wall.sawEvent(kStream, 3, Opened));
    ASSERT_TRUE(wall.sawEvent(kStream, 2, Opened));
    wall.call("LD_ArrangeWindow", QJsonObject{{"type", 1}});
    EXPECT_TRUE(wall.sawEvent(kStream, -1, Ended));
    wall.call("LD_ArrangeWindow", QJsonObject{{"type", 2}});
    EXPECT_TRUE(wall.sawEvent(kStream, 3, Opened));
    EXPECT_FALSE(wall.sawEvent(kStream, 2, Opened, 500)) << "what goes on is left alone";
    const QImage before = picture(wall, 2);
    EXPECT_TRUE(eventually([&] { return picture(wall, 2) != before; }));
}

TEST(Play, ACameraThatGoesIsToldAndTheOtherWindowsGoOn)
{
    auto camera = std::make_unique<Camera>(colourClip("yellow"));
    WallProgram wall({"--grid", "2"});
    ASSERT_EQ(wall.call("LD_Play", playArgs(0, camera->address())), kNull);
    ASSERT_EQ(wall.call("LD_Play", playArgs(1, movingClip())), kNull);
    ASSERT_TRUE(wall.sawEvent(kStream, 0, Opened));
    ASSERT_TRUE(wall.sawEvent(kStream, 1, Opened));
    camera.reset();
    EXPECT_TRUE(wall.sawEvent(kStream, 0, Lost, 30000));
    const QImage before = picture(wall, 1);
    EXPECT_TRUE(eventually([&] { return picture(wall, 1) != before; }));
}

TEST(Mouse, AClickSelectsAndADoubleClickEnlargesAndShrinksAgain)
{
    WallProgram wall({"--grid", "2"});
    ASSERT_EQ(wall.call("LD_Play", playArgs(3, colourClip("red"))), kNull);
    ASSERT_TRUE(wall.sawEvent(kStream, 3, Opened));
    const QPoint at = toRect(cellPlace(wall, 3)).center();
    const QRect small = toRect(cellPlace(wall, 3, "cell"));
    const QRect all = toRect(wall.status()["wall"].toObject());
    const auto click = [&](int times) {
        QProcess::execute("xdotool", {"mousemove", QString::number(at.x()), QString::number(at.y()), "click",
                                      "--repeat", QString::number(times), "--delay", "60", "1"});
    };
    click(1);
    EXPECT_TRUE(eventually([&] { return wall.status()["selected"] == QJsonValue(3); }));
    QThread::sleep(1); // or the click counts as the first of the next two
    click(2);
    EXPECT_TRUE(eventually([&] { return toRect(cellPlace(wall, 3, "cell")).width() >= all.width() - 1; }));
    EXPECT_EQ(wall.call("LD_IsWindowHidden", QJsonObject{{"index", 0}}), QJsonValue(true));
    EXPECT_TRUE(eventually([&] { return near(middle(wall, 3), Qt::red); }));
    QThread::sleep(1);
    click(2);
    EXPECT_TRUE(eventually([&] { return toRect(cellPlace(wall, 3, "cell")) == small; }));
    EXPECT_EQ(wall.call("LD_IsWindowHidden", QJsonObject{{"index", 0}}), QJsonValue(false));
}

TEST(Layout, TheWallKeepsItsSizeAndTheStreamsTheirWindows)
{
    WallProgram wall({"--grid", "2"});
    ASSERT_EQ(wall.call("LD_Play", playArgs(1, colourClip("lime"))), kNull);
    ASSERT_TRUE(wall.sawEvent(kStream, 1, Opened));
    const QJsonValue size = wall.status()["wall"];
    for (int type : {3, 1, 4, 2}) {
        for (const char* thread : {"main", "worker"}) {
            ASSERT_EQ(wall.call("LD_ArrangeWindow", QJsonObject{{"type", type}}, thread), kNull);
            EXPECT_EQ(wall.status()["wall"], size);
            EXPECT_EQ(wall.call("LD_WindowCount"), QJsonValue(type * type));
        }
    }
    ASSERT_EQ(wall.call("LD_SetWndRatioMode", QJsonObject{{"wndIndex", 1}, {"mode", 4}}), kNull);
    EXPECT_EQ(wall.status()["wall"], size);
    const QRect square = toRect(cellPlace(wall, 1));
    EXPECT_EQ(square.width(), square.height());
    EXPECT_TRUE(eventually([&] { return near(middle(wall, 1), Qt::green); }));
}
