#include "tests/e2e/WallProgram.h"

#include <QThread>

namespace {

// The event of a stream, and its codes.
constexpr int kStream = 3, Opened = 1, OpenFailed = 2, Ended = 4;

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

QRect toRect(const QJsonValue& place)
{
    return {place["x"].toInt(), place["y"].toInt(), place["width"].toInt(), place["height"].toInt()};
}

bool near(const QColor& a, const QColor& b)
{
    return std::abs(a.red() - b.red()) < 24 && std::abs(a.green() - b.green()) < 24 &&
           std::abs(a.blue() - b.blue()) < 24;
}

const QJsonValue kNull(QJsonValue::Null);

class Wall : public WallProgram
{
public:
    using WallProgram::WallProgram;

    void start(int cell, const QString& url, const QString& thread = "main")
    {
        EXPECT_EQ(call("LD_Play", QJsonObject{{"wndIndex", cell}, {"url", url}, {"auth", ""}}, thread), kNull);
    }
    void play(int cell, const QString& url)
    {
        start(cell, url);
        EXPECT_TRUE(sawEvent(kStream, cell, Opened)) << "window " << cell;
    }
    void ask(const char* function, int cell) { EXPECT_EQ(call(function, QJsonObject{{"wndIndex", cell}}), kNull); }
    void arrange(int type) { EXPECT_EQ(call("LD_ArrangeWindow", QJsonObject{{"type", type}}), kNull); }
    bool is(const char* question, int cell) { return call(question, QJsonObject{{"index", cell}}).toBool(); }

    QRect place(int cell, const char* what = "picture")
    {
        return toRect(status()["windows"].toArray()[cell].toObject()[what]);
    }
    QImage picture(int cell) { return screenshot().copy(place(cell)); }
    // What stands in the middle of a cell, away from its tag.
    bool shows(int cell, const QColor& color)
    {
        return eventually([&] {
            const QImage seen = picture(cell);
            return near(seen.pixelColor(seen.width() / 2, seen.height() / 2), color);
        });
    }
    bool moves(int cell)
    {
        const QImage before = picture(cell);
        return eventually([&] { return picture(cell) != before; });
    }
};

} // namespace

TEST(Play, EachCellShowsItsClipAndOneALiveCamera)
{
    const QStringList colours{"red", "lime", "blue"};
    const Camera camera(colourClip("yellow"));
    Wall wall({"--grid", "2"});
    for (int cell = 0; cell < 3; ++cell)
        wall.play(cell, colourClip(colours[cell]));
    wall.start(3, camera.address(), "worker");
    EXPECT_TRUE(wall.sawEvent(kStream, 3, Opened));
    for (int cell = 0; cell < 4; ++cell)
        EXPECT_TRUE(wall.shows(cell, cell < 3 ? colours[cell] : "yellow")) << "window " << cell;
    EXPECT_EQ(wall.brokenLines(), 0);
}

TEST(Play, PausedPictureStandsAndStoppedPictureGoes)
{
    Wall wall;
    wall.play(0, movingClip());
    EXPECT_TRUE(wall.moves(0));

    wall.ask("LD_Pause", 0);
    QImage before;
    EXPECT_TRUE(eventually([&] {
        before = wall.picture(0);
        return wall.picture(0) == before;
    })) << "it stands";
    wall.ask("LD_FrameForward", 0);
    EXPECT_TRUE(eventually([&] { return wall.picture(0) != before; })) << "one picture on";
    wall.ask("LD_Resume", 0);
    const QJsonValue status = wall.call("LD_QueryPlayStatus", QJsonObject{{"wndIndex", 0}});
    EXPECT_EQ(status["playInfo"]["pictureSize"]["width"], QJsonValue(352));

    wall.ask("LD_Stop", 0);
    EXPECT_FALSE(wall.is("LD_IsWindowPlaying", 0));
    EXPECT_TRUE(eventually([&] {
        const QImage seen = wall.picture(0);
        return seen.pixelColor(20, seen.height() / 2) == seen.pixelColor(seen.width() - 20, seen.height() / 3);
    })) << "the background is back";
}

TEST(Play, AMissingFileIsTold)
{
    Wall wall({"--grid", "2"});
    wall.start(1, "/no/such/film.mp4");
    EXPECT_TRUE(wall.sawEvent(kStream, 1, OpenFailed));
    EXPECT_TRUE(eventually([&] {
        return wall.status()["windows"].toArray()[1].toObject()["trouble"] == QJsonValue("cannot be opened");
    })) << "the window tells it too";
}

TEST(Play, AClipThatEndsOutsideOfTheLayoutLoopsWhenItIsBack)
{
    Wall wall({"--grid", "2", "--loop"});
    wall.play(3, clip("brief", "color=c=white:s=352x288:r=25", 3));
    wall.play(2, movingClip());
    const QJsonValue size = wall.status()["wall"];
    wall.arrange(1);
    EXPECT_TRUE(wall.sawEvent(kStream, -1, Ended));
    wall.arrange(2);
    EXPECT_EQ(wall.status()["wall"], size);
    EXPECT_TRUE(wall.sawEvent(kStream, 3, Opened));
    EXPECT_FALSE(wall.sawEvent(kStream, 2, Opened, 500)) << "what goes on is left alone";
    EXPECT_TRUE(wall.moves(2));
}

TEST(Mouse, AClickSelectsAndADoubleClickEnlargesAndShrinksAgain)
{
    Wall wall({"--grid", "2"});
    wall.play(3, colourClip("red"));
    const QPoint at = wall.place(3).center();
    const QRect small = wall.place(3, "cell");
    const QRect all = toRect(wall.status()["wall"]);
    const auto click = [&](int times) {
        QProcess::execute("xdotool", {"mousemove", QString::number(at.x()), QString::number(at.y()), "click",
                                      "--repeat", QString::number(times), "--delay", "60", "1"});
    };
    click(1);
    EXPECT_TRUE(eventually([&] { return wall.status()["selected"] == QJsonValue(3); }));
    QThread::sleep(1); // or the click counts as the first of the next two
    click(2);
    EXPECT_TRUE(eventually([&] { return wall.place(3, "cell").width() >= all.width() - 1; }));
    EXPECT_TRUE(wall.is("LD_IsWindowHidden", 0));
    EXPECT_TRUE(wall.shows(3, Qt::red));
    QThread::sleep(1);
    click(2);
    EXPECT_TRUE(eventually([&] { return wall.place(3, "cell") == small; }));
    EXPECT_FALSE(wall.is("LD_IsWindowHidden", 0));
}
