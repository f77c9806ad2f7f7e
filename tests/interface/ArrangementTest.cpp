#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"
#include "tests/support/Wall.h"

#include <QCoreApplication>
#include <QHBoxLayout>

#include <cstdio>
#include <cstdlib>

using namespace quillmark::lumen_deck;

namespace {

class ArrangementTest : public wall::WallTest
{
protected:
    int count() { return LD_WindowCount(&main()); }
    QRect windowAfterResize(QSize size)
    {
        main().show();
        main().resize(size);
        return Layout(&main()).getPlayWindow(0)->geometry();
    }
};

TEST_F(ArrangementTest, TypeOrCustomLayout)
{
    const journal::Tolerated outOfRange;
    main().resize(300, 300);
    main().show();
    arrange(R"({"type":3})");
    EXPECT_EQ(count(), 9);
    EXPECT_EQ(main().layout()->itemAt(7)->geometry(), QRect(100, 200, 100, 100)) << "row by row";
    arrange(R"({"custom":[],"type":1})");
    EXPECT_EQ(count(), 1);
    arrange(R"({"custom":[{"left":0,"top":0,"width":1,"height":1},{}],"type":9})");
    EXPECT_EQ(count(), 2);
    arrange(R"({"custom":{"windows":[]},"type":2})");
    EXPECT_EQ(count(), 0);
    arrange(R"({"custom":7,"type":4})");
    EXPECT_EQ(count(), 16);

    const char* refused = "LD_ArrangeWindow only accept type 1,2,3,4";
    EXPECT_EQ(ask(LD_ArrangeWindow, R"({"type":5})").message(), refused);
    EXPECT_EQ(ask(LD_ArrangeWindow, R"({"type":"2"})").message(), refused);
    EXPECT_EQ(ask(LD_ArrangeWindow, "{}").message(), wall::missing("type"));
    EXPECT_EQ(ask(LD_ArrangeWindow, "[]").message(), "ArrangeWindow json descriptor should be json object");
    EXPECT_EQ(ask(LD_ArrangeWindow, R"({"custom":[{"left":"x"}],"type":1})").code(), 500);
    EXPECT_TRUE(wall::take(LD_Uninitialize(&main())).null) << "changes nothing either";
    EXPECT_EQ(count(), 16);
    const wall::Answer layout = wall::take(LD_QueryLayout(&main()));
    EXPECT_TRUE(!layout.null && layout.object.isEmpty());
}

TEST_F(ArrangementTest, RatioOfAGridIsTheConfiguredOne)
{
    wall::configure(R"({"playWndType":"4"})");
    arrange(R"({"type":1})");
    EXPECT_EQ(windowAfterResize({200, 102}), QRect(50, 1, 100, 100));
    wall::configure(R"({"playWndType":"wide"})");
    arrange(R"({"type":1})");
    EXPECT_EQ(windowAfterResize({300, 102}), QRect(1, 1, 298, 100));
}

TEST_F(ArrangementTest, RatioAndResolutionCountAtTheNextResize)
{
    const journal::Tolerated outOfRange;
    arrange(R"({"type":1})");
    main().resize(202, 402);
    main().show();
    const QRect filled = Layout(&main()).getPlayWindow(0)->geometry();
    EXPECT_TRUE(ask(LD_SetWndResolution, R"({"wndIndex":0,"width":100,"height":50})").null);
    EXPECT_EQ(Layout(&main()).getPlayWindow(0)->geometry(), filled);
    EXPECT_TRUE(ask(LD_SetWndRatioMode, R"({"wndIndex":0,"mode":3})").null);
    EXPECT_EQ(windowAfterResize({202, 402}), QRect(1, 151, 200, 100));
    EXPECT_TRUE(ask(LD_SetWndRatioMode, R"({"wndIndex":0,"mode":7})").null);
    EXPECT_EQ(windowAfterResize({202, 403}), QRect(1, 1, 200, 401));

    EXPECT_TRUE(ask(LD_SetWndRatioMode, R"({"wndIndex":12,"mode":1})").null);
    EXPECT_TRUE(ask(LD_SetWndResolution, R"({"wndIndex":12,"width":1,"height":1})").null);
    EXPECT_EQ(ask(LD_SetWndRatioMode, "[]").message(), "SetWndRatioMode json descriptor should be json object");
    EXPECT_EQ(ask(LD_SetWndResolution, "[]").message(), "SetWndResolution json descriptor should be json object");
    EXPECT_EQ(ask(LD_SetWndResolution).message(), wall::missing("width"));
}

// The engine is started once in a process, so this runs in a process of its own.
[[noreturn]] void startThreeTimes()
{
    engine_double::reset();
    engine_double::answer("TP_InitLib", -1);
    engine_double::lastError(17);
    QWidget one;
    QWidget two;
    const wall::Answer failed = wall::take(LD_Initialize(&one));
    engine_double::reset();
    const wall::Answer started = wall::take(LD_Initialize(&one));
    const wall::Answer second = wall::take(LD_Initialize(&two));
    std::fprintf(stderr, "failed %d, started %d, second %d, windows %d %d, init %zu of %s\n", failed.code(),
                 started.null, second.null, LD_WindowCount(&one), LD_WindowCount(&two),
                 engine_double::calls("TP_InitLib").size(),
                 engine_double::calls("TP_InitLib").front().arguments.front().c_str());
    std::_Exit(0);
}

TEST(Initialize, StartsTheEngineOnceAndBuildsTheWallWithoutIt)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    const std::string folder = QCoreApplication::applicationDirPath().toStdString();
    EXPECT_EXIT(startThreeTimes(), ::testing::ExitedWithCode(0),
                ::testing::HasSubstr("failed 17, started 1, second 1, windows 1 1, init 1 of " + folder));
}

TEST(Initialize, RefusesAForeignLayoutAndNoWindow)
{
    QWidget main;
    auto* foreign = new QHBoxLayout(&main);
    EXPECT_EQ(wall::take(LD_Initialize(&main)).code(), 501);
    EXPECT_EQ(main.layout(), foreign);
    EXPECT_EQ(LD_WindowCount(&main), 0);
    EXPECT_EQ(wall::take(LD_Initialize(nullptr)).code(), 502);
}

} // namespace
