#include "src/player/Player.h"
#include "tests/fisheye/FisheyeWall.h"

#include <QLayout>
#include <QTest>

using engine_double::calls;
using quillmark::lumen_deck::CellWidget;
using quillmark::lumen_deck::Player;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

using ArrangementTest = wall::FisheyeTest;

// clang-format off
#define QUARTERS ";500 0 500 500 #00ff00;0 500 500 500 #0000ff"
#define FIVE "0 0 333 333 #ff0000;333 0 333 333 #00ff00;666 0 333 333 #0000ff;0 333 333 333 #ffff00;333 333 333 333 #8000ff"
#define SIXTH ";666 333 333 333 #00ffff"
#define NINE SIXTH ";0 666 333 333 #ff8000;333 666 333 333 #008080;666 666 333 333 #90613a"
#define AROUND(middle) "v.3375 .3125;v.5 .25;v.6625 .3125;v.2625 .5;" middle ";v.7375 .5;v.3375 .6875;v.5 .75;v.6625 .6875"
#define THREE "v.333333 .666667;v.666667 .666667"

// Cells as left, top, width, height in thousandths and the colour of the frame; O is square and black around.
const char* const kOne = "0 0 1000 1000 #ff0000";
const char* const kFour = "0 0 500 500 #ff0000" QUARTERS ";500 500 500 500 #ffff00";
const char* const kNine = FIVE NINE;

// Windows in order: the dewarp mode, or where a plain view begins. Marks: how the engine draws the boxes at last.
struct Expected
{
    const char* cells;
    const char* windows;
    int marks;
};
const Expected kArrangements[] = {
    {"0 0 1000 1000 #ff0000 O", "0", 0}, {kOne, "768", 0}, {kOne, "v.6 .6", 0}, {kOne, "512", 0},
    {"0 0 500 500 #ff0000" QUARTERS, "v.25 .5;v.75 .5;768", 2},
    {"0 0 500 500 #ff0000 O" QUARTERS ";500 500 500 500 #ffff00", "0;v.5 .333333;" THREE, 2},
    {kFour, "v.5 .333333;768;" THREE, 2}, {kFour, "v.333333 .333333;v.666667 .333333;" THREE, 0},
    {FIVE " O" NINE, AROUND("0"), 1}, {kNine, AROUND("768"), 1},
    {kNine, "v.25 .25;v.5 .25;v.75 .25;v.25 .5;v.6 .6;v.75 .5;v.25 .75;v.5 .75;v.75 .75", 0},
    {kOne, "256", 0}, {kOne, "1024", 0}, {kFour, "1024;v.6 .6;" THREE, 2}, {kNine, AROUND("1024"), 1},
    {"0 0 500 1000 #ff0000;500 0 500 1000 #00ff00", "v.25 .5;v.75 .5", 0},
    {"0 0 1000 666 #ff0000;0 666 1000 333 #00ff00", "v.5 .2;768", 2},
    {FIVE SIXTH ";0 666 1000 333 #ff8000", "v.25 .25;v.5 .25;v.75 .25;v.25 .75;v.5 .75;v.75 .75;768", 2}};
// clang-format on

std::string cellText(const CellWidget& cell)
{
    const QRect at = cell.geometry();
    const QSize picture = cell.findChild<quillmark::lumen_deck::IPlayWindow*>()->size();
    const bool round = cell.backgroundColor() == QColor(Qt::black) && picture.width() == picture.height();
    return QString::asprintf("%d %d %d %d %s%s", at.x(), at.y(), at.width(), at.height(),
                             qUtf8Printable(cell.borderColor().name()), round ? " O" : "")
        .toStdString();
}

// What TP_FEC_Play gets of a window: record, place type and dewarp mode.
std::string viewText(const QString& window, const QString& color)
{
    const bool plain = window[0] == 'v';
    const QStringList at = plain ? window.mid(1).split(' ') : QStringList{"0", "0"};
    return QString::asprintf("mask %d at %f,%f,0.000000,0.000000 color %sff, 2, %s", plain ? 24 : 16, at[0].toDouble(),
                             at[1].toDouble(), qUtf8Printable(color.mid(1)), plain ? "256" : qUtf8Printable(window))
        .toStdString();
}

TEST_F(ArrangementTest, windowsViewsAndBoxesOfEach)
{
    const journal::Tolerated outOfRange;
    main().show();
    for (int type = 0; type < 18; ++type) {
        SCOPED_TRACE(type);
        main().resize(999, 1000);
        ask(LD_SetPlaceType, R"({"type":1})");
        ask(LD_SetPlaceType, R"({"type":3})"); // is none
        playViews(type);
        // The window system may first answer the size before.
        EXPECT_TRUE(
            QTest::qWaitFor([this] { return main().width() == 1000 && main().layout()->geometry().width() == 1000; }));
        const QStringList cells = QString(kArrangements[type].cells).split(';');
        const QStringList windows = QString(kArrangements[type].windows).split(';');
        ASSERT_EQ(main().layout()->count(), windows.size());
        const auto plays = calls("TP_FEC_Play");
        for (int i = 0; i < windows.size(); ++i) {
            const auto* cell = qobject_cast<CellWidget*>(main().layout()->itemAt(i)->widget());
            EXPECT_EQ(cellText(*cell), cells[i].toStdString());
            const auto& play = plays.at(static_cast<std::size_t>(i)).arguments;
            EXPECT_EQ(play[0] + " " + play[1], "10 " + std::to_string(window(i)->winId()));
            EXPECT_EQ(play[2] + ", " + play[3] + ", " + play[4], viewText(windows[i], cell->borderColor().name()));
            EXPECT_EQ(companion(i)->getPlayerId(), 11 + i);
        }
        const auto draws = calls("TP_FEC_SetDrawType");
        EXPECT_EQ(draws.empty() ? "0" : draws.back().arguments.at(1), std::to_string(kArrangements[type].marks));
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
    const std::string lines = asked();
    EXPECT_THAT(calls("TP_Play").at(0).arguments.at(6), "1") << "the correction type";
    EXPECT_THAT(lines, testing::Not(HasSubstr("TP_RigisterDrawFun")));
    EXPECT_THAT(lines, HasSubstr("TP_FECRigisterDrawFun(10, 11, pointer, pointer); Play(10, "));
    EXPECT_THAT(lines, testing::EndsWith("TP_FECRigisterDrawFun(10, 12, pointer, pointer); SetDrawType(10, 2); "
                                         "SetDrawType(10, 2)"))
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
    EXPECT_THAT(asked(), HasSubstr("CapturePIC(0, 10, 12, "));
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
