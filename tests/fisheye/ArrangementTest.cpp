#include "tests/fisheye/FisheyeWall.h"

using namespace wall;
using quillmark::lumen_deck::CellWidget;

namespace {

using ArrangementTest = FisheyeTest;

// Of some: the windows, by their dewarp mode or where a plain view begins, and how the engine draws the boxes at last.
const std::map<int, std::pair<const char*, const char*>> kSome = {
    {3, {"512", "0"}},
    {5, {"0;v.5 .333333;v.333333 .666667;v.666667 .666667", "2"}},
    {9, {"v.3375 .3125;v.5 .25;v.6625 .3125;v.2625 .5;768;v.7375 .5;v.3375 .6875;v.5 .75;v.6625 .6875", "1"}},
    {13, {"1024;v.6 .6;v.333333 .666667;v.666667 .666667", "2"}},
    {16, {"v.5 .2;768", "2"}},
    {17, {"v.25 .25;v.5 .25;v.75 .25;v.25 .75;v.5 .75;v.75 .75;768", "2"}}};

// What TP_FEC_Play gets of a window but its colour: record, place type and dewarp mode.
QString viewText(const std::vector<std::string>& play)
{
    return QString::fromStdString(play[2].substr(0, play[2].find(" color")) + ", " + play[3] + ", " + play[4]);
}

QStringList expectedViews(const QString& windows)
{
    QStringList views;
    for (const QString& window : windows.split(';')) {
        const bool plain = window[0] == 'v';
        const QStringList at = plain ? window.mid(1).split(' ') : QStringList{"0", "0"};
        views.append(QString::asprintf("mask %d at %f,%f,0.000000,0.000000, 2, %s", plain ? 24 : 16, at[0].toDouble(),
                                       at[1].toDouble(), plain ? "256" : qUtf8Printable(window)));
    }
    return views;
}

TEST_F(ArrangementTest, windowsViewsAndBoxesOfEach)
{
    const journal::Tolerated outOfRange;
    for (int type = 0; type < 18; ++type) {
        SCOPED_TRACE(type);
        ask(LD_SetPlaceType, R"({"type":1})");
        ask(LD_SetPlaceType, R"({"type":3})"); // is none
        playViews(type);
        const auto plays = calls("TP_FEC_Play");
        const int count = main().layout()->count();
        ASSERT_EQ(plays.size(), static_cast<std::size_t>(count));
        QStringList windows, colors;
        for (int i = 0; i < count; ++i) {
            const auto* cell = qobject_cast<CellWidget*>(main().layout()->itemAt(i)->widget());
            const auto& play = plays[static_cast<std::size_t>(i)].arguments;
            const QString color = cell->borderColor().name();
            EXPECT_EQ(play[0] + " " + play[1], "10 " + std::to_string(window(i)->winId()));
            EXPECT_THAT(play[2], testing::EndsWith("color " + color.mid(1).toStdString() + "ff"));
            EXPECT_EQ(companion(i)->getPlayerId(), 11 + i);
            EXPECT_FALSE(colors.contains(color));
            colors.append(color);
            windows.append(viewText(play));
        }
        const auto draws = calls("TP_FEC_SetDrawType");
        if (const auto some = kSome.find(type); some != kSome.end()) {
            EXPECT_EQ(windows, expectedViews(some->second.first));
            EXPECT_EQ(draws.empty() ? "0" : draws.back().arguments.at(1), some->second.second);
        }
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
    EXPECT_EQ(ask(LD_QueryPlayStatus, "{}").object,
              json(R"({"playInfo":{"pictureSize":{"width":640,"height":480}}})").object());
    engine_double::answer("TP_GetPictureSize", -2);
    EXPECT_TRUE(ask(LD_QueryPlayStatus, "{}").object.isEmpty());
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
