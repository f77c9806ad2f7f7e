#include "src/LayoutDetail.h"
#include "tests/drawing/DrawingWall.h"
#include "tests/support/Functions.h"

#include <QElapsedTimer>

#include <atomic>
#include <functional>
#include <map>
#include <thread>

namespace {

using functions::Function;
using wall::DrawingTest;

// While the main loop runs.
void onAnotherThread(const std::function<void()>& action)
{
    std::atomic<bool> done{false};
    std::thread thread([&] {
        action();
        done = true;
    });
    while (!done)
        QApplication::processEvents(QEventLoop::AllEvents, 5);
    thread.join();
}

class Reentry : public DrawingTest
{
protected:
    // What makes each event come.
    std::map<LD_EventType, std::function<void()>> gestures()
    {
        const auto draw = [this](const QByteArray& tool) {
            take("Rect", tool);
            drag({100, 50}, {300, 150});
        };
        return {
            {LD_EVENT_SELECTED, [this] { arrange(R"({"custom":[{"wndIndex":1},{"wndIndex":0}]})"); }},
            {LD_EVENT_DOUBLE_CLICKED,
             [this] {
                 mouse(QEvent::MouseButtonDblClick, {9, 9}, Qt::LeftButton, Qt::LeftButton);
             }},
            {LD_EVENT_STREAM,
             [] { onAnotherThread([] { engine_double::emitMessage(engine_double::livePlays().back(), 1); }); }},
            {LD_EVENT_MOUSE,
             [this] {
                 press({9, 9});
             }},
            {LD_EVENT_SHAPE_FINISHED,
             [this, draw] {
                 ask(LD_SetDrawCallback, R"({"enable":true,"type":"Rect"})");
                 drag({100, 50}, {300, 150});
             }},
            {LD_EVENT_DRAWING_ENDED, [draw] { draw("{}"); }},
            {LD_EVENT_SHAPE_CHOSEN,
             [this, draw] {
                 draw(R"({"maxShapeSupport":1})");
                 press({200, 100});
             }},
        };
    }

private:
    const functions::Nobody nobody_;
};

TEST_F(Reentry, everyFunctionMayBeCalledInEveryEvent)
{
    const journal::Tolerated oneDocumentForAll;
    static std::function<void()> inEvent;
    for (const auto& [type, gesture] : gestures()) {
        LD_InstallEventCallback(type, [](LD_EventType, QWidget*, const QJsonDocument*) {
            if (const auto action = std::exchange(inEvent, nullptr))
                action();
        });
        for (const Function& function : functions::all()) {
            if (type == LD_EVENT_STREAM && function.onMainThread)
                continue;
            SCOPED_TRACE(testing::Message() << function.name << " in event " << type);
            remakeMain();
            open(2, 0);
            play();
            QElapsedTimer clock;
            clock.start();
            bool called = false;
            inEvent = [&, &f = function] {
                called = true;
                LD_Release(f(&main(), &functions::request()));
            };
            gesture();
            EXPECT_TRUE(called);
            EXPECT_LT(clock.elapsed(), 2000);
        }
        LD_InstallEventCallback(type, nullptr);
    }
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
