#include "src/CustomLayout.h"
#include "src/WindowDirectory.h"
#include "tests/support/Wall.h"

#include <QTest>

#include <future>

using namespace quillmark::lumen_deck;

class LayoutTest : public wall::WallTest
{
protected:
    using Cells = std::vector<CellWidget*>;

    // The windows that were selected since the last question.
    static std::vector<int> selected()
    {
        std::vector<int> indices;
        for (const QJsonObject& document : told(LD_EVENT_SELECTED))
            indices.push_back(document["wndInfo"].toObject()["wndIndex"].toInt());
        return indices;
    }

    Layout layout() { return Layout(&main()); }
    Cells cells()
    {
        Cells all;
        for (int i = 0; i < layout().size(); ++i)
            all.push_back(qobject_cast<CellWidget*>(main().layout()->itemAt(i)->widget()));
        return all;
    }
    wall::Answer set(const QByteArray& request) { return ask(LD_SetLayout, request); }
    void setCount(int count)
    {
        QJsonArray array;
        for (int i = 0; i < count; ++i)
            array.append(QJsonObject{{"left", i % 4 * 0.25}, {"top", i / 4 * 0.25}, {"width", 0.25}, {"height", 0.25}});
        EXPECT_EQ(layout().setLayout(QJsonDocument(array)), nullptr);
    }
    void showAt(int width, int height)
    {
        main().show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&main()));
        main().resize(width, height);
        QCoreApplication::processEvents();
    }
    int placeOf(CellWidget* widget)
    {
        const auto place = WindowDirectory::instance().place(widget->playWindow());
        EXPECT_TRUE(place && place->mainWidget == &main());
        return place ? place->index : -2;
    }
};

TEST_F(LayoutTest, WindowsAreFoundByIndexAndName)
{
    showAt(1000, 1000);
    setCount(300);
    const Cells all = cells();
    EXPECT_EQ(all[299]->pos(), QPoint(750, 18500));
    EXPECT_EQ(layout().getCell(15), all[15]);
    EXPECT_EQ(layout().getCell(16), nullptr);
    EXPECT_EQ(layout().getCell(-1), nullptr);
    EXPECT_EQ(layout().getCell(QVariant()), nullptr);
    EXPECT_EQ(placeOf(all[299]), 299);
    EXPECT_EQ(layout().indexOf(all[16]), 16);
    EXPECT_EQ(layout().indexOf(all[16]->playWindow()), 16);
    EXPECT_EQ(layout().indexOf(static_cast<IPlayWindow*>(nullptr)), -1);

    ASSERT_TRUE(set(R"([{"name":"left"},{"name":"","wndIndex":"nobody"}])").null);
    EXPECT_EQ(layout().getCell("left"), cells()[0]);
    EXPECT_EQ(layout().getCell(""), cells()[1]);
    EXPECT_EQ(layout().getCell("right"), nullptr);
    EXPECT_EQ(layout().getPlayWindow("left"), cells()[0]->playWindow());
}

TEST_F(LayoutTest, EntriesTakeOverTheWindowsThatTheyName)
{
    const Cells old = cells();
    EXPECT_TRUE(set(R"([{"wndIndex":3,"name":"a"},{"wndIndex":0}])").null);
    EXPECT_EQ(cells(), (Cells{old[3], old[0]}));
    EXPECT_TRUE(set(R"({"windows":[{"wndIndex":1},{"wndIndex":"a"},{"wndIndex":"a"}]})").null);
    EXPECT_EQ(cells(), (Cells{old[0], old[3], old[1]})); // the second to name it gets the last that was parked
}

TEST_F(LayoutTest, ParkedWindowsComeBackInTheirOrder)
{
    const Cells old = cells();
    old[2]->playWindow()->setObjectName("kept");
    setCount(1);
    EXPECT_EQ(layout().getAllPlayWindow(),
              (QList<IPlayWindow*>{old[1]->playWindow(), old[2]->playWindow(), old[3]->playWindow()}));
    EXPECT_EQ(placeOf(old[2]), -1);
    EXPECT_TRUE(old[2]->isHidden());
    EXPECT_EQ(old[2]->parent(), nullptr);
    setCount(4);
    EXPECT_EQ(cells(), old);
    EXPECT_EQ(placeOf(old[2]), 2);
    EXPECT_EQ(old[2]->playWindow()->objectName(), "kept");
}

TEST_F(LayoutTest, NewLayoutSelectsItsFirstWindow)
{
    EXPECT_EQ(layout().getSelectedPlayWindow(), cells()[0]->playWindow());
    for (const QVariant& reference : {QVariant(2), QVariant(2), QVariant(4), QVariant(-1), QVariant("nobody")})
        layout().selectPlayWindow(reference);
    EXPECT_EQ(selected(), (std::vector<int>{2}));
    EXPECT_EQ(layout().getSelectedPlayWindow(), cells()[2]->playWindow());
    setCount(4);
    layout().selectPlayWindow(cells()[3]->objectName());
    setCount(1);
    setCount(4);
    EXPECT_EQ(selected(), (std::vector<int>{0, 3, 0}));
    EXPECT_FALSE(cells()[3]->isSelected());

    const int width = main().width();
    setCount(0);
    EXPECT_EQ(layout().getSelectedPlayWindow(), nullptr);
    EXPECT_EQ(layout().getAllPlayWindow().size(), 4);
    EXPECT_EQ(main().width(), width + 1);
}

TEST_F(LayoutTest, ALayoutHasAListOfUpTo1024Cells)
{
    EXPECT_EQ(set("").message(), "error setting layout, layout json document should be an array");
    EXPECT_EQ(set("[" + QByteArray("{},").repeated(1024) + "{}]").message(),
              "error setting layout, more than 1024 cells");
    EXPECT_EQ(layout().size(), 4);
    EXPECT_TRUE(set(R"({"other":1})").null);
    EXPECT_EQ(layout().size(), 0);
}

TEST_F(LayoutTest, HiddenWindowsAreShownByANewLayout)
{
    for (int i : {9, 2})
        LD_HideWindow(&main(), i);
    EXPECT_TRUE(LD_IsWindowHidden(&main(), 2));
    setCount(4);
    EXPECT_FALSE(LD_IsWindowHidden(&main(), 2));
}

TEST_F(LayoutTest, OnlyTheLeftButtonSelectsAndIsReported)
{
    showAt(400, 400);
    heard().clear();
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::LeftButton}) {
        QTest::mousePress(cells()[1]->playWindow(), button);
        QTest::mouseDClick(cells()[2]->playWindow(), button);
    }
    const std::vector<wall::Event> twice = heard()[LD_EVENT_DOUBLE_CLICKED];
    EXPECT_EQ(selected(), (std::vector<int>{1}));
    EXPECT_TRUE(twice.size() == 1 && twice[0].object["wndIndex"] == 2);
}

TEST_F(LayoutTest, ADragFollowsThePointer)
{
    const QByteArray request = R"([{"wndIndex":0,"width":0.5,"height":0.5},
        {"wndIndex":1,"left":0.5,"top":0.5,"width":0.25,"height":0.25,"dragable":true}])";
    ASSERT_TRUE(set(request).null);
    ASSERT_TRUE(set(request).null);
    showAt(400, 400);
    CellWidget* second = cells()[1];
    QWidget* video = second->playWindow();
    const auto moveTo = [&](QPoint inMain) {
        const QPoint global = main().mapToGlobal(inMain);
        QMouseEvent move(QEvent::MouseMove, video->mapFromGlobal(global), global, Qt::NoButton, Qt::RightButton, {});
        QCoreApplication::sendEvent(video, &move);
    };
    moveTo({300, 250});
    EXPECT_EQ(second->pos(), QPoint(200, 200));
    QTest::mousePress(video, Qt::RightButton, {}, video->mapFrom(&main(), {210, 210}));
    moveTo({230, 220});
    EXPECT_EQ(second->pos(), QPoint(220, 210));
    moveTo({390, 220}); // over the edge: the step is dropped, and the next one starts from here
    moveTo({380, 220});
    EXPECT_EQ(second->pos(), QPoint(210, 210));
    QTest::mouseRelease(video, Qt::RightButton);
    moveTo({300, 300});
    EXPECT_EQ(second->pos(), QPoint(210, 210));

    QTest::mousePress(video, Qt::LeftButton);
    second->hide();
    second->show();
    moveTo({300, 300});
    EXPECT_EQ(second->pos(), QPoint(210, 210));
}

TEST_F(LayoutTest, FrameTellsTheSelectedCell)
{
    ASSERT_TRUE(set(R"([{"width":0.5,"height":1,"border_color":"#ff0000","background_color":"#000080"},
                        {"left":0.5,"width":0.5,"height":1}])")
                    .null);
    showAt(200, 100);
    const auto colorAt = [&](int index, QPoint point) { return cells()[index]->grab().toImage().pixelColor(point); };
    EXPECT_EQ(colorAt(0, {0, 50}), QColor(255, 0, 0));
    EXPECT_EQ(colorAt(0, {99, 99}), QColor(255, 0, 0));
    EXPECT_EQ(colorAt(1, {0, 50}), QColor(23, 28, 32));
    layout().selectPlayWindow(1);
    EXPECT_EQ(colorAt(0, {50, 0}), QColor(23, 28, 32));
    EXPECT_EQ(colorAt(1, {0, 50}), QColor("#ffcc00"));
    EXPECT_EQ(colorAt(0, {50, 50}), QColor("#000080"));
}

// While the engine draws there, Qt paints nothing into the window; afterwards it is painted again.
TEST_F(LayoutTest, QtLeavesThePictureOfTheEngineAlone)
{
    showAt(400, 400);
    IPlayWindow* window = cells()[1]->playWindow();
    setEngineDraws(window, true);
    EXPECT_EQ(window->paintEngine(), nullptr);
    EXPECT_TRUE(window->testAttribute(Qt::WA_PaintOnScreen));
    QCoreApplication::processEvents();
    int paints = 0;
    QObject::connect(window, &IPlayWindow::sigPaint, [&] { ++paints; });
    setEngineDraws(window, false);
    EXPECT_FALSE(window->testAttribute(Qt::WA_PaintOnScreen));
    QCoreApplication::processEvents();
    EXPECT_EQ(paints, 1);
}

TEST_F(LayoutTest, EngineHearsOfEachNewSize)
{
    arrange(R"({"type":1})");
    showAt(300, 300);
    engine_double::reset();
    main().resize(310, 300);
    const auto calls = engine_double::calls("TP_WndResolutionChange");
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].arguments[0], std::to_string(layout().getPlayWindow(0)->winId()));
    engine_double::answer("TP_WndResolutionChange", 5);
    EXPECT_EQ(LD_WndResolutionChange(layout().getPlayWindow(0)), 5);
}

TEST_F(LayoutTest, DestructionWaitsForAVisit)
{
    const void* window = cells()[0]->playWindow();
    std::atomic<bool> left = false;
    std::promise<void> inside;
    std::thread hook([&] {
        const auto visit = WindowDirectory::instance().visit(window);
        EXPECT_TRUE(visit && visit.view());
        inside.set_value();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        left = true;
    });
    inside.get_future().wait();
    destroyMain();
    EXPECT_TRUE(left);
    hook.join();
    EXPECT_FALSE(WindowDirectory::instance().visit(window));
    EXPECT_FALSE(WindowDirectory::instance().place(window));
}
