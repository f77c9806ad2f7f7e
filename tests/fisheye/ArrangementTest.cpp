#include "src/player/Player.h"
#include "tests/fisheye/FisheyeWall.h"

#include <QLayout>

using engine_double::calls;
using quillmark::lumen_deck::CellWidget;
using quillmark::lumen_deck::Player;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using ArrangementTest = wall::FisheyeTest;

// Cells as left, top, width, height in thousandths and the colour of the frame; a circle is square and black around.
const char* const kCells[] = {
    "0 0 1000 1000 #ff0000 O",
    "0 0 1000 1000 #ff0000",
    "0 0 500 500 #ff0000;500 0 500 500 #00ff00;0 500 500 500 #0000ff",
    "0 0 500 500 #ff0000 O;500 0 500 500 #00ff00;0 500 500 500 #0000ff;500 500 500 500 #ffff00",
    "0 0 500 500 #ff0000;500 0 500 500 #00ff00;0 500 500 500 #0000ff;500 500 500 500 #ffff00",
    "0 0 333 333 #ff0000;333 0 333 333 #00ff00;666 0 333 333 #0000ff;0 333 333 333 #ffff00;333 333 333 333 #8000ff O;"
    "666 333 333 333 #00ffff;0 666 333 333 #ff8000;333 666 333 333 #008080;666 666 333 333 #90613a",
    "0 0 333 333 #ff0000;333 0 333 333 #00ff00;666 0 333 333 #0000ff;0 333 333 333 #ffff00;333 333 333 333 #8000ff;"
    "666 333 333 333 #00ffff;0 666 333 333 #ff8000;333 666 333 333 #008080;666 666 333 333 #90613a",
    "0 0 500 1000 #ff0000;500 0 500 1000 #00ff00",
    "0 0 1000 666 #ff0000;0 666 1000 333 #00ff00",
    "0 0 333 333 #ff0000;333 0 333 333 #00ff00;666 0 333 333 #0000ff;0 333 333 333 #ffff00;333 333 333 333 #8000ff;"
    "666 333 333 333 #00ffff;0 666 1000 333 #ff8000",
};

// Windows in order: the dewarp mode, and where a plain view begins. The last column is what happens to the boxes.
struct Expected
{
    int cells;
    const char* windows;
    int marks;
};
const Expected kArrangements[] = {
    {1, "0", 0},
    {2, "768", 0},
    {2, "256 .6 .6", 0},
    {2, "512", 0},
    {3, "256 .25 .5;256 .75 .5;768", 2},
    {4, "0;256 .5 .333333;256 .333333 .666667;256 .666667 .666667", 2},
    {5, "256 .5 .333333;768;256 .333333 .666667;256 .666667 .666667", 2},
    {5, "256 .333333 .333333;256 .666667 .333333;256 .333333 .666667;256 .666667 .666667", 0},
    {6,
     "256 .3375 .3125;256 .5 .25;256 .6625 .3125;256 .2625 .5;0;256 .7375 .5;256 .3375 .6875;256 .5 .75;"
     "256 .6625 .6875",
     1},
    {7,
     "256 .3375 .3125;256 .5 .25;256 .6625 .3125;256 .2625 .5;768;256 .7375 .5;256 .3375 .6875;256 .5 .75;"
     "256 .6625 .6875",
     1},
    {7, "256 .25 .25;256 .5 .25;256 .75 .25;256 .25 .5;256 .6 .6;256 .75 .5;256 .25 .75;256 .5 .75;256 .75 .75", 0},
    {2, "256", 0}, // shows the circle by the mode of a view, and begins nowhere
    {2, "1024", 0},
    {5, "1024;256 .6 .6;256 .333333 .666667;256 .666667 .666667", 2},
    {7,
     "256 .3375 .3125;256 .5 .25;256 .6625 .3125;256 .2625 .5;1024;256 .7375 .5;256 .3375 .6875;256 .5 .75;"
     "256 .6625 .6875",
     1},
    {8, "256 .25 .5;256 .75 .5", 0},
    {9, "256 .5 .2;768", 2},
    {10, "256 .25 .25;256 .5 .25;256 .75 .25;256 .25 .75;256 .5 .75;256 .75 .75;768", 2},
};

QString cellText(const CellWidget& cell)
{
    const QRect place = cell.geometry();
    const QSize picture = cell.findChild<quillmark::lumen_deck::IPlayWindow*>()->size();
    const bool round =
        cell.backgroundColor().value<QColor>() == QColor(Qt::black) && picture.width() == picture.height();
    return QString("%1 %2 %3 %4 %5%6")
        .arg(place.x())
        .arg(place.y())
        .arg(place.width())
        .arg(place.height())
        .arg(cell.borderColor().name(), round ? " O" : "");
}

// What TP_FEC_Play gets: the position of a plain view, and the colour of the frame.
std::string viewText(const QString& window, const QString& color)
{
    const QStringList parts = window.split(' ');
    const bool plain = parts.size() == 3;
    const QString position =
        plain ? QString("%1,%2").arg(parts[1].toDouble(), 0, 'f', 6).arg(parts[2].toDouble(), 0, 'f', 6)
              : QString("0.000000,0.000000");
    return QString("mask %1 at %2,0.000000,0.000000 color %3ff | 2 | %4")
        .arg(plain ? 24 : 16)
        .arg(position, color.mid(1), parts[0])
        .toStdString();
}

TEST_F(ArrangementTest, windowsViewsAndBoxesOfEach)
{
    main().show();
    for (int type = 0; type < 18; ++type) {
        SCOPED_TRACE(type);
        main().resize(999, 1000);
        ask(LD_SetPlaceType, R"({"type":1})");
        ask(LD_SetPlaceType, R"({"type":3})"); // is none
        playViews(type);
        QApplication::processEvents();
        const Expected& expected = kArrangements[type];
        const QStringList cells = QString(kCells[expected.cells - 1]).split(';');
        const QStringList windows = QString(expected.windows).split(';');
        ASSERT_EQ(main().layout()->count(), windows.size());
        std::vector<std::string> views;
        const auto plays = calls("TP_FEC_Play");
        for (int i = 0; i < windows.size(); ++i) {
            const auto* cell = qobject_cast<CellWidget*>(main().layout()->itemAt(i)->widget());
            EXPECT_EQ(cellText(*cell), cells[i]);
            const auto& arguments = plays.at(plays.size() - static_cast<std::size_t>(windows.size() - i)).arguments;
            EXPECT_EQ(arguments[0], "10");
            EXPECT_EQ(arguments[1], std::to_string(window(i)->winId()));
            EXPECT_EQ(arguments[2] + " | " + arguments[3] + " | " + arguments[4],
                      viewText(windows[i], cell->borderColor().name()));
            EXPECT_EQ(companion(i)->getPlayerId(), 11 + i);
        }
        const auto draws = calls("TP_FEC_SetDrawType");
        EXPECT_EQ(draws.empty() ? "0" : draws.back().arguments.at(1), std::to_string(expected.marks));
        LD_Release(LD_StopRealPlayAll(&main()));
        engine_double::reset();
    }
}

TEST_F(ArrangementTest, startsTheHiddenStreamAndThenItsViews)
{
    ask(LD_SetCorrectionType, R"({"type":1})");
    EXPECT_EQ(ask(LD_Stop, "{}").message(), "play param error") << "no stream yet";
    ask(LD_ArrangeFECWindow, R"({"type":16})");
    numberViews();
    forget();
    ASSERT_TRUE(ask(LD_Play, R"({"url":"u","auth":""})").null);
    const std::vector<std::string> lines = asked();
    EXPECT_THAT(calls("TP_Play").at(0).arguments.at(6), "1") << "the correction type";
    EXPECT_THAT(lines, testing::Not(testing::Contains(HasSubstr("TP_RigisterDrawFun"))));
    const std::vector<std::string> views(lines.end() - 6, lines.end());
    EXPECT_THAT(views, ElementsAre(HasSubstr("TP_FEC_Play(10, "), "TP_FECRigisterDrawFun(10, 11, pointer, pointer)",
                                   HasSubstr("TP_FEC_Play(10, "), "TP_FECRigisterDrawFun(10, 12, pointer, pointer)",
                                   "TP_FEC_SetDrawType(10, 2)", "TP_FEC_SetDrawType(10, 2)"))
        << "trigger type, then the boxes of the panorama";
}

TEST_F(ArrangementTest, viewsLiveLikeOtherStreams)
{
    playViews(15);
    engine_double::emitMessage(10, 5);
    engine_double::emitMessage(12, 6);
    ASSERT_EQ(events().size(), 2U);
    EXPECT_EQ(events()[0].object["wndIndex"], -1) << "the hidden window has no index";
    EXPECT_EQ(events()[0].mainWindow, &main());
    EXPECT_EQ(events()[1].object["wndIndex"], 1);
    EXPECT_TRUE(engine_double::drawFrame(12, nullptr));
    EXPECT_TRUE(LD_IsWindowPlaying(&main(), 1));
    ask(LD_Snapshot, R"({"wndIndex":1,"fileName":"f"})");
    EXPECT_THAT(asked(), ElementsAre(HasSubstr("TP_FEC_CapturePIC(0, 10, 12, ")));
    engine_double::give("TP_GetPictureSize", {640, 480});
    EXPECT_FALSE(ask(LD_QueryPlayStatus, R"({})").object.isEmpty());
    EXPECT_EQ(ask(LD_Play, R"({"url":"u","auth":""})").message(), "play param error") << "plays already";
    engine_double::answer("TP_Stop", -1);
    EXPECT_EQ(ask(LD_Stop, "{}").message(), "play param error");
    EXPECT_TRUE(LD_IsWindowPlaying(&main(), 1));
    engine_double::answer("TP_Stop", 0);
    ASSERT_TRUE(ask(LD_Stop, "{}").null);
    EXPECT_FALSE(LD_IsWindowPlaying(&main(), 0) || LD_IsWindowPlaying(&main(), 1));
    EXPECT_THAT(engine_double::livePlays(), IsEmpty());
}

TEST_F(ArrangementTest, aRefusedViewLeavesAnIdlePlayerAndThePlaySucceeds)
{
    play(); // a plain stream in window 0, which the view takes over
    engine_double::answer("TP_FEC_Play", -1);
    ask(LD_SetCorrectionType, R"({"type":1})");
    EXPECT_TRUE(ask(LD_Play, R"({"url":"u","auth":""})").null);
    EXPECT_EQ(window(0)->findChildren<Player*>().size(), 1);
    EXPECT_FALSE(LD_IsWindowPlaying(&main(), 0));
    EXPECT_EQ(engine_double::livePlays().size(), 1U) << "the real stream";
    EXPECT_EQ(companion(0)->getPlayerId(), -1);
    EXPECT_TRUE(ask(LD_FishEyeGetPreset, "{}").object.isEmpty());
    engine_double::answer("TP_Play", -1);
    ask(LD_Stop, "{}");
    EXPECT_EQ(ask(LD_Play, R"({"url":"u","auth":""})").message(), "play param error");
}

TEST_F(ArrangementTest, anotherArrangementEndsTheViewsWhereverTheyAre)
{
    playViews(7);
    arrange(R"({"type":1})"); // parks three of them
    ask(LD_ArrangeFECWindow, R"({"type":2})");
    EXPECT_THAT(engine_double::livePlays(), ElementsAre(10));
    LD_Release(LD_StopRealPlayAll(&main()));
    EXPECT_THAT(engine_double::livePlays(), IsEmpty()) << "the hidden stream goes with the settings";
    EXPECT_EQ(ask(LD_SetFishWndProperty, R"({"wndIndex":0,"type":0,"id":1})").message(), "")
        << "device expansion again";
}

} // namespace
