#include "tests/drawing/DrawingWall.h"
#include "tests/support/Functions.h"

#include <QElapsedTimer>

#include <future>

namespace {

using functions::Function;
using wall::DrawingTest;

// While the main loop runs.
void onAnotherThread(const std::function<void()>& action)
{
    const auto done = std::async(std::launch::async, action);
    while (done.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
        QApplication::processEvents(QEventLoop::AllEvents, 5);
}

class Reentry : public DrawingTest
{
protected:
    using Gestures = std::multimap<LD_EventType, std::function<void()>>;

    void draw(const QByteArray& tool)
    {
        take("Rect", tool);
        drag({100, 50}, {300, 150});
    }
    void drawForCallback(const QByteArray& word)
    {
        ask(LD_SetDrawCallback, R"({"enable":true,"type":")" + word + "\"}");
        click({100, 50});
        drag({100, 50}, {300, 150});
    }
    void choose()
    {
        draw(R"({"maxShapeSupport":1})");
        press({200, 100});
    }
    void doubleClick() { mouse(QEvent::MouseButtonDblClick, {9, 9}, Qt::LeftButton, Qt::LeftButton); }

    Gestures gestures()
    {
        const auto report = [] { engine_double::emitMessage(engine_double::livePlays().back(), 1); };
        return {
            {LD_EVENT_SELECTED, [this] { arrange(R"({"custom":[{"wndIndex":1},{"wndIndex":0}]})"); }},
            {LD_EVENT_DOUBLE_CLICKED, [this] { doubleClick(); }},
            {LD_EVENT_STREAM, [report] { onAnotherThread(report); }},
            {LD_EVENT_MOUSE,
             [this] {
                 click({9, 9});
             }},
            {LD_EVENT_SHAPE_FINISHED, [this] { drawForCallback("Rect"); }},
            {LD_EVENT_DRAWING_ENDED, [this] { draw("{}"); }},
            {LD_EVENT_SHAPE_CHOSEN, [this] { choose(); }},
        };
    }

    // Others that come from code of their own.
    Gestures moreGestures()
    {
        return {
            {LD_EVENT_SHAPE_FINISHED, [this] { drawForCallback("Line"); }},
            {LD_EVENT_SELECTED,
             [this] {
                 open(2, 3);
                 click({9, 9});
             }},
            {LD_EVENT_DRAWING_ENDED,
             [this] {
                 take("Polygon", R"({"maxPointSupport":3})");
                 clicks({{9, 9}, {90, 90}, {9, 90}});
             }},
        };
    }

    // Makes the event come once, and does that in it.
    void doInEvent(const Gestures::value_type& gesture, const std::function<void()>& action)
    {
        static std::function<void()> inEvent;
        bool called = false;
        LD_InstallEventCallback(gesture.first, [](LD_EventType, QWidget*, const QJsonDocument*) {
            if (const auto once = std::exchange(inEvent, nullptr))
                once();
        });
        remakeMain();
        open(2, 0);
        play();
        inEvent = [&] {
            called = true;
            action();
        };
        gesture.second();
        EXPECT_TRUE(called);
    }

private:
    const functions::Nobody nobody_;
};

TEST_F(Reentry, everyFunctionMayBeCalledInEveryEvent)
{
    const journal::Tolerated oneDocumentForAll;
    for (const auto& gesture : gestures()) {
        for (const Function& function : functions::all()) {
            if (gesture.first == LD_EVENT_STREAM && function.onMainThread)
                continue;
            SCOPED_TRACE(testing::Message() << function.name << " in event " << gesture.first);
            QElapsedTimer clock;
            clock.start();
            doInEvent(gesture, [&] { LD_Release(function(&main(), &functions::request())); });
            EXPECT_LT(clock.elapsed(), 2000);
        }
    }
}

// Nothing of a wall is touched afterwards.
TEST_F(Reentry, theHostMayDeleteTheWallInEveryEvent)
{
    for (const Gestures& all : {gestures(), moreGestures()}) {
        for (const auto& gesture : all) {
            SCOPED_TRACE(gesture.first);
            if (gesture.first != LD_EVENT_STREAM)
                doInEvent(gesture, [&] { destroyMain(); });
        }
    }
    remakeMain();
}

TEST_F(Reentry, everyFunctionReturnsOnAForeignThread)
{
    const journal::Tolerated oneDocumentForAll;
    for (const Function& function : functions::all()) {
        if (function.onMainThread)
            continue;
        QElapsedTimer clock;
        clock.start();
        onAnotherThread([&] { LD_Release(function(&main(), &functions::request())); });
        EXPECT_LT(clock.elapsed(), 2000) << function.name;
    }
}

} // namespace
