#include "src/LayoutDetail.h"
#include "tests/support/Functions.h"
#include "tests/support/Wall.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QMouseEvent>

#include <atomic>
#include <chrono>
#include <functional>
#include <random>
#include <thread>

#include <unistd.h>

using namespace std::chrono_literals;
using namespace wall;
using quillmark::lumen_deck::IPlayWindow;

namespace {

using Dice = std::minstd_rand;

int roll(Dice& dice, int sides)
{
    return static_cast<int>(dice() % static_cast<unsigned>(sides));
}

// Any window of sixteen and any of three talks, with all keys that the functions want.
QJsonDocument anyRequest(Dice& dice)
{
    const double far = 0.5 + 0.1 * roll(dice, 5);
    const QJsonArray corners = {QJsonArray{0.1, 0.1}, QJsonArray{far, 0.1}, QJsonArray{far, far}, QJsonArray{0.1, far}};
    QJsonObject shape{
        {"id", roll(dice, 3)}, {"text", "wall"}, {"enable", true}, {"points", corners}, {"timeFormat", "24hour"}};
    const QJsonArray areas{shape};
    shape["points"] = QJsonArray{corners[0], corners[2]};
    const QJsonArray lines{shape};
    const QString words[] = {"Rect", "Polygon", "Line", "all"};
    QJsonObject request = functions::request().object();
    request["wndIndex"] = roll(dice, 16);
    request["url"] = roll(dice, 2) ? "h/channels/1" : "h/tracks/1";
    request["volume"] = roll(dice, 100);
    request["https"] = roll(dice, 2) == 1;
    request["mode"] = roll(dice, 5);
    request["enable"] = roll(dice, 4) != 0;
    request["rectInfo"] = request["polygonInfo"] = areas;
    request["lineInfo"] = lines;
    request["overlayInfo"] = QJsonObject{{"date", shape}, {"text", lines}};
    request["type"] = words[roll(dice, 4)];
    request["id"] = QJsonArray{roll(dice, 3)};
    request["uuid"] = QString::number(roll(dice, 3));
    request["openUrl"] = request["closeUrl"] = request["dataUrl"] = "";
    request["localConfig"] = QJsonObject{{"ivsMode", roll(dice, 2)}, {"host", roll(dice, 9)}};
    return QJsonDocument(request);
}

// clang-format off
constexpr WithWidget windowFunctions[] = {
    LD_Play, LD_Play, LD_Play, LD_ReversePlay, LD_Stop, LD_Pause, LD_Resume, LD_Fast, LD_Slow, LD_FrameForward,
    LD_SetHttps, LD_OpenSound, LD_SetVolume, LD_StartSave, LD_StopSave, LD_Snapshot, LD_GetOSDTime,
    LD_SetReconnectInfo, LD_QueryPlayStatus, LD_SetWndRatioMode, LD_EnableEZoom, LD_SetRectInfo, LD_SetPolygonInfo,
    LD_SetLineInfo, LD_SetTextOverlay, LD_SetDrawStatus, LD_SetDrawCallback, LD_SelectShape, LD_ClearShapeByType};
// clang-format on

void callWindowFunction(QWidget* mainWindow, Dice& dice)
{
    const QJsonDocument request = anyRequest(dice);
    take(windowFunctions[roll(dice, std::size(windowFunctions))](mainWindow, &request));
}

void callService(Dice& dice)
{
    constexpr WithDocument services[] = {LD_StartVoiceTalk, LD_StopVoiceTalk, LD_GetLocalConfig, LD_SetLocalConfig};
    const QJsonDocument request = anyRequest(dice);
    take(services[roll(dice, std::size(services))](&request));
    if (roll(dice, 4) == 0)
        take(LD_CloseSound());
}

// A host with a wall that stays and walls that come and go.
class Storm
{
public:
    Storm()
    {
        theStorm = this;
        take(LD_Initialize(lasting_.get()));
        lasting_->show();
        install(&Storm::onEvent);
    }

    ~Storm()
    {
        install(nullptr);
        theStorm = nullptr;
    }

    void rage(std::chrono::milliseconds length)
    {
        std::vector<std::thread> threads;
        for (unsigned i = 0; i < 3; ++i)
            threads.push_back(worker([dice = Dice(i + 1), this]() mutable {
                roll(dice, 2) ? callService(dice) : callWindowFunction(lasting_.get(), dice);
            }));
        threads.push_back(worker([this] { draw(); }));
        threads.push_back(worker([this, dice = Dice(9)]() mutable { notify(dice); }));
        QElapsedTimer clock;
        clock.start();
        Dice dice(7);
        while (clock.elapsed() < length.count()) {
            actOnMainThread(dice);
            QApplication::processEvents();
        }
        over_ = true;
        while (running_ > 0)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 5);
        for (std::thread& thread : threads)
            thread.join();
    }

    std::atomic<int> frames = 0, events = 0, stopsFromEvents = 0;

private:
    static void install(LD_EventCallback callback)
    {
        for (const auto type : {LD_EVENT_SELECTED, LD_EVENT_DOUBLE_CLICKED, LD_EVENT_STREAM})
            LD_InstallEventCallback(type, callback);
    }

    std::thread worker(std::function<void()> step)
    {
        ++running_;
        return std::thread([this, step = std::move(step)] {
            while (!over_)
                step();
            --running_;
        });
    }

    // A thread of the engine: frames of all streams.
    void draw()
    {
        for (const int id : engine_double::livePlays())
            frames += engine_double::drawFrame(id, nullptr) ? 1 : 0;
        std::this_thread::sleep_for(100us);
    }

    // A thread of the engine: messages of streams that live, and of some that may have gone.
    void notify(Dice& dice)
    {
        for (const int id : engine_double::livePlays())
            engine_double::emitMessage(id + roll(dice, 2), static_cast<unsigned>(roll(dice, 30)));
        std::this_thread::sleep_for(100us);
    }

    // A host that now and then stops the stream that it hears of, on whatever thread it does.
    static void onEvent(LD_EventType type, QWidget* mainWindow, const QJsonDocument* document)
    {
        Storm& storm = *theStorm;
        const int count = ++storm.events;
        if (type != LD_EVENT_STREAM || mainWindow != storm.lasting_.get() || count % 16 != 0)
            return;
        const QJsonDocument args(QJsonObject{{"wndIndex", document->object()["wndIndex"]}});
        take(LD_Stop(mainWindow, &args));
        ++storm.stopsFromEvents;
    }

    void actOnMainThread(Dice& dice)
    {
        QWidget* const main = lasting_.get();
        const QJsonDocument grid(QJsonObject{{"type", 1 + roll(dice, 4)}});
        const std::function<void()> acts[] = {
            [&] { take(LD_ArrangeWindow(main, &grid)); },
            [&] { take(LD_StopRealPlayAll(main)); },
            [&] {
                passing_ = std::make_unique<QWidget>();
                take(LD_Initialize(passing_.get()));
                take(LD_ArrangeWindow(passing_.get(), &grid));
            },
            [&] { passing_.reset(); },
            [&] { LD_HideWindow(main, roll(dice, 16)), LD_ShowWindow(main, roll(dice, 16)); },
            [&] { main->resize(300 + roll(dice, 100), 200 + roll(dice, 100)); },
            [&] { drawByMouse(main, dice); },
            [&] { callWindowFunction(passing_ ? passing_.get() : main, dice); }};
        acts[std::min(roll(dice, 10), 7)](); // most often the last
        LD_IsWindowPlaying(main, roll(dice, 16));
        LD_IsWindowHidden(main, LD_WindowCount(main) - 1);
    }

    static void drawByMouse(QWidget* main, Dice& dice)
    {
        const QList<IPlayWindow*> windows = main->findChildren<IPlayWindow*>();
        IPlayWindow* const window = windows.isEmpty() ? nullptr : windows.at(roll(dice, windows.size()));
        for (const auto type :
             {QEvent::MouseButtonPress, QEvent::MouseMove, QEvent::MouseMove, QEvent::MouseButtonRelease}) {
            const QPointF at(roll(dice, 100), roll(dice, 100));
            QMouseEvent event(type, at, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            if (window)
                QApplication::sendEvent(window, &event);
        }
    }

    static inline Storm* theStorm = nullptr;

    std::unique_ptr<QWidget> lasting_ = std::make_unique<QWidget>();
    std::unique_ptr<QWidget> passing_; // main thread
    std::atomic<bool> over_ = false;
    std::atomic<int> running_ = 0;
};

TEST(StormTest, hostEngineAndMainThreadAtOnce)
{
    const journal::Tolerated allKeysAtOnce;
    alarm(120); // ends the program when the storm hangs
    silenceLog();
    engine_double::reset();
    {
        Storm storm;
        storm.rage(4s);
        EXPECT_GT(storm.frames, 100);
        EXPECT_GT(storm.events, 100);
        EXPECT_GT(storm.stopsFromEvents, 0);
    }
    EXPECT_TRUE(engine_double::livePlays().empty()) << "every stream went with its window";
    alarm(0);
}

} // namespace
