#include "src/LayoutDetail.h"
#include "tests/support/Wall.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QMouseEvent>

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <thread>

using namespace std::chrono_literals;
using quillmark::lumen_deck::IPlayWindow;

namespace {

// Ends the program with a word when the storm hangs.
class Watchdog
{
public:
    explicit Watchdog(std::chrono::seconds limit)
        : thread_([this, limit] { watch(limit); })
    {
    }

    ~Watchdog()
    {
        {
            const std::lock_guard lock(mutex_);
            over_ = true;
        }
        wake_.notify_all();
        thread_.join();
    }

private:
    void watch(std::chrono::seconds limit)
    {
        std::unique_lock lock(mutex_);
        if (wake_.wait_for(lock, limit, [this] { return over_; }))
            return;
        std::fputs("the storm hangs\n", stderr);
        std::abort();
    }

    std::mutex mutex_;
    std::condition_variable wake_;
    bool over_ = false; // guarded by mutex_
    std::thread thread_;
};

using Dice = std::minstd_rand;

int roll(Dice& dice, int sides)
{
    return static_cast<int>(dice() % static_cast<unsigned>(sides));
}

using WithWidget = QJsonDocument* (*)(QWidget*, const QJsonDocument*);
using WithDocument = QJsonDocument* (*)(const QJsonDocument*);

// Any window of sixteen, with all keys that the functions want.
QJsonDocument streamRequest(Dice& dice)
{
    return QJsonDocument(QJsonObject{{"wndIndex", roll(dice, 16)},
                                     {"url", roll(dice, 2) ? "h/channels/1" : "h/tracks/1"},
                                     {"auth", "a:b"},
                                     {"startTime", ""},
                                     {"stopTime", ""},
                                     {"volume", roll(dice, 100)},
                                     {"fileName", "clip"},
                                     {"https", roll(dice, 2) == 1},
                                     {"mode", roll(dice, 5)},
                                     {"type", 1 + roll(dice, 4)}});
}

QJsonDocument drawingRequest(Dice& dice)
{
    const double far = 0.5 + 0.1 * roll(dice, 5);
    const QJsonArray corners = {QJsonArray{0.1, 0.1}, QJsonArray{far, 0.1}, QJsonArray{far, far}, QJsonArray{0.1, far}};
    QJsonObject shape{{"wndIndex", roll(dice, 16)}, {"id", roll(dice, 3)}, {"text", "wall"}, {"enable", true}};
    const QJsonObject date{{"timeFormat", "24hour"}, {"enable", true}};
    shape["points"] = corners;
    const QJsonArray areas{shape};
    shape["points"] = QJsonArray{corners[0], corners[2]};
    const QJsonArray lines{shape};
    const QJsonObject overlays{{"date", date}, {"text", lines}};
    const QString words[] = {"Rect", "Polygon", "Line", "all"};
    return QJsonDocument(QJsonObject{{"wndIndex", roll(dice, 16)},
                                     {"enable", roll(dice, 4) != 0},
                                     {"rectInfo", areas},
                                     {"polygonInfo", areas},
                                     {"lineInfo", lines},
                                     {"overlayInfo", overlays},
                                     {"type", words[roll(dice, 4)]},
                                     {"id", QJsonArray{roll(dice, 3)}}});
}

constexpr WithWidget streamFunctions[] = {LD_Play,
                                          LD_Play,
                                          LD_Play,
                                          LD_ReversePlay,
                                          LD_Stop,
                                          LD_Pause,
                                          LD_Resume,
                                          LD_Fast,
                                          LD_Slow,
                                          LD_FrameForward,
                                          LD_SetHttps,
                                          LD_OpenSound,
                                          LD_SetVolume,
                                          LD_StartSave,
                                          LD_StopSave,
                                          LD_QueryPlayStatus,
                                          LD_SetReconnectInfo,
                                          LD_Snapshot,
                                          LD_GetOSDTime,
                                          LD_SetWndRatioMode};
constexpr WithWidget drawingFunctions[] = {LD_SetRectInfo,    LD_SetPolygonInfo,  LD_SetLineInfo,
                                           LD_SetTextOverlay, LD_SetDrawStatus,   LD_ClearShapeByType,
                                           LD_SelectShape,    LD_SetDrawCallback, LD_EnableEZoom};

template <std::size_t Count>
void callOneOf(const WithWidget (&functions)[Count], QWidget* mainWindow, const QJsonDocument& args, Dice& dice)
{
    wall::take(functions[roll(dice, Count)](mainWindow, &args));
}

void callWindowFunction(QWidget* mainWindow, Dice& dice)
{
    if (roll(dice, 2))
        callOneOf(streamFunctions, mainWindow, streamRequest(dice), dice);
    else
        callOneOf(drawingFunctions, mainWindow, drawingRequest(dice), dice);
}

void callService(Dice& dice)
{
    const QJsonDocument talk(QJsonObject{{"uuid", QString::number(roll(dice, 3))},
                                         {"openUrl", ""},
                                         {"closeUrl", ""},
                                         {"dataUrl", ""},
                                         {"auth", ""},
                                         {"audioType", 0}});
    const QJsonDocument settings(
        QJsonObject{{"localConfig", QJsonObject{{"ivsMode", roll(dice, 2)}, {"host", roll(dice, 9)}}}});
    const std::array<std::pair<WithDocument, const QJsonDocument*>, 4> services = {{{LD_StartVoiceTalk, &talk},
                                                                                    {LD_StopVoiceTalk, &talk},
                                                                                    {LD_GetLocalConfig, &talk},
                                                                                    {LD_SetLocalConfig, &settings}}};
    const auto& [function, args] = services[static_cast<std::size_t>(roll(dice, services.size()))];
    wall::take(function(args));
    if (roll(dice, 4) == 0)
        wall::take(LD_CloseSound());
}

// A host with a wall that stays and walls that come and go.
class Storm
{
public:
    Storm()
    {
        theStorm = this;
        wall::take(LD_Initialize(lasting_.get()));
        lasting_->show();
        for (const auto type : {LD_EVENT_SELECTED, LD_EVENT_DOUBLE_CLICKED, LD_EVENT_STREAM})
            LD_InstallEventCallback(type, &Storm::onEvent);
    }

    ~Storm()
    {
        for (const auto type : {LD_EVENT_SELECTED, LD_EVENT_DOUBLE_CLICKED, LD_EVENT_STREAM})
            LD_InstallEventCallback(type, nullptr);
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

    int frames() const { return frames_; }
    int events() const { return events_; }
    int stopsFromEvents() const { return stopsFromEvents_; }

private:
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
            frames_ += engine_double::drawFrame(id, nullptr) ? 1 : 0;
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
        const int count = ++storm.events_;
        if (type != LD_EVENT_STREAM || mainWindow != storm.lasting_.get() || count % 16 != 0)
            return;
        const QJsonDocument args(QJsonObject{{"wndIndex", document->object()["wndIndex"]}});
        wall::take(LD_Stop(mainWindow, &args));
        ++storm.stopsFromEvents_;
    }

    void actOnMainThread(Dice& dice)
    {
        QWidget* const main = lasting_.get();
        const QJsonDocument grid(QJsonObject{{"type", 1 + roll(dice, 4)}});
        switch (roll(dice, 10)) {
        case 0:
            wall::take(LD_ArrangeWindow(main, &grid));
            break;
        case 1:
            wall::take(LD_StopRealPlayAll(main));
            break;
        case 2:
            passing_ = std::make_unique<QWidget>();
            wall::take(LD_Initialize(passing_.get()));
            wall::take(LD_ArrangeWindow(passing_.get(), &grid));
            break;
        case 3:
            passing_.reset();
            break;
        case 4:
            LD_HideWindow(main, roll(dice, 16));
            LD_ShowWindow(main, roll(dice, 16));
            break;
        case 5:
            main->resize(300 + roll(dice, 100), 200 + roll(dice, 100));
            break;
        case 6:
            drawByMouse(main, dice);
            break;
        default:
            callWindowFunction(passing_ ? passing_.get() : main, dice);
            LD_IsWindowPlaying(main, roll(dice, 16));
            LD_IsWindowHidden(main, LD_WindowCount(main) - 1);
        }
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

    static Storm* theStorm;

    std::unique_ptr<QWidget> lasting_ = std::make_unique<QWidget>();
    std::unique_ptr<QWidget> passing_; // main thread
    std::atomic<bool> over_ = false;
    std::atomic<int> running_ = 0;
    std::atomic<int> frames_ = 0;
    std::atomic<int> events_ = 0;
    std::atomic<int> stopsFromEvents_ = 0;
};

Storm* Storm::theStorm = nullptr;

TEST(StormTest, hostEngineAndMainThreadAtOnce)
{
    const journal::Tolerated allKeysAtOnce;
    const Watchdog watchdog(120s);
    wall::silenceLog();
    engine_double::reset();
    {
        Storm storm;
        storm.rage(4s);
        EXPECT_GT(storm.frames(), 100);
        EXPECT_GT(storm.events(), 100);
        EXPECT_GT(storm.stopsFromEvents(), 0);
    }
    EXPECT_TRUE(engine_double::livePlays().empty()) << "every stream went with its window";
}

} // namespace
