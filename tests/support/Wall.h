#pragma once

#include "include/lumen_deck/lumen_deck.h"
#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"
#include "src/local_info.h"
#include "src/player/Player.h"
#include "tests/double/EngineDouble.h"
#include "tests/support/Documents.h"
#include "tests/support/Journal.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDate>
#include <QDir>
#include <QLayout>
#include <QLoggingCategory>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

#include <gmock/gmock.h>

#include <map>
#include <mutex>
#include <set>
#include <thread>

// A wall on the engine double, driven as a host drives it, with documents as text.
namespace wall {

using documents::json;
using documents::mismatch;
using documents::missing;
using engine_double::calls;
using quillmark::lumen_deck::IPlayWindow;
using quillmark::lumen_deck::Player;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using WithWidget = QJsonDocument* (*)(QWidget*, const QJsonDocument*);
using WithDocument = QJsonDocument* (*)(const QJsonDocument*);

struct Answer
{
    bool null = true;
    QJsonObject object;

    int code() const { return object["errorCode"].toInt(); }
    std::string message() const { return object["errorMessage"].toString().toStdString(); }
};

inline Answer take(QJsonDocument* document)
{
    const Answer answer{document == nullptr, document ? document->object() : QJsonObject()};
    LD_Release(document);
    return answer;
}

// The library's log of calls; QT_LOGGING_RULES brings it back.
inline void silenceLog()
{
    QLoggingCategory::setFilterRules("default.debug=false");
}

struct Event
{
    QWidget* mainWindow;
    QJsonObject object;
};

// The calls of the engine since `from`, as "name(argument, argument)", without those that come at their own times.
inline std::vector<std::string> engineCalls(std::size_t from = 0)
{
    static const std::set<std::string> left = {"TP_GetLastError", "TP_WndResolutionChange", "TP_SetMessageHandler"};
    std::vector<std::string> lines;
    const std::vector<engine_double::Call> calls = engine_double::calls();
    for (std::size_t i = from; i < calls.size(); ++i) {
        std::string line;
        for (const std::string& argument : calls[i].arguments)
            line += (line.empty() ? "" : ", ") + argument;
        if (left.count(calls[i].name) == 0)
            lines.push_back(calls[i].name + "(" + line + ")");
    }
    return lines;
}

// Where files of a kind go today.
inline QString dayFolder(const char* kind)
{
    return QString::fromLocal8Bit(qgetenv("PWD")) + "/Web/" + kind + "/" + QDate::currentDate().toString("yyyy-MM-dd");
}

inline void configure(const QByteArray& settings)
{
    const LocalInfo settingsFile;
    delete settingsFile.ReadLocalFile();
    const QJsonDocument request = json("{\"localConfig\":" + settings + "}");
    settingsFile.WriteLocalFile(&request);
}

inline void sendMouse(QWidget* window, QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons held,
                      unsigned long time)
{
    QMouseEvent event(type, at, button, held, Qt::NoModifier);
    event.setTimestamp(time);
    QApplication::sendEvent(window, &event);
}

inline void turnWheel(QWidget* window, QPoint at, QPoint angle)
{
    QWheelEvent event(at, window->mapToGlobal(at), {}, angle, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(window, &event);
}

// Four windows, default settings, and the events that came.
class WallTest : public ::testing::Test
{
protected:
    using WithWidget = wall::WithWidget;

    void SetUp() override
    {
        silenceLog();
        engine_double::reset();
        QFile::remove(QString::fromLocal8Bit(qgetenv("PWD")) + "/.HarborKit/local.json");
        take(LD_Initialize(&main()));
        arrange(R"({"type":2})");
        heard().clear();
        installAll([](LD_EventType type, QWidget* mainWindow, const QJsonDocument* document) {
            const std::lock_guard lock(eventLock());
            heard()[type].push_back({mainWindow, document->object()});
        });
    }

    void TearDown() override { installAll(nullptr); }

    QWidget& main() { return *main_; }
    void destroyMain() { main_.reset(); }
    void remakeMain()
    {
        main_ = std::make_unique<QWidget>();
        take(LD_Initialize(&main()));
    }

    IPlayWindow* window(int index) { return quillmark::lumen_deck::Layout(&main()).getPlayWindow(QVariant(index)); }
    Player* player() { return main().findChild<Player*>(); } // the first there is

    Answer ask(WithWidget function, const QByteArray& request = R"({"wndIndex":0})")
    {
        const QJsonDocument document = json(request);
        return take(function(&main(), &document));
    }
    static Answer ask(WithDocument function, const QByteArray& request)
    {
        const QJsonDocument document = json(request);
        return take(function(&document));
    }

    void arrange(const QByteArray& request) { ASSERT_TRUE(ask(LD_ArrangeWindow, request).null); }

    // Plays in window 0; answers the play id. What was called until then is forgotten.
    int play(const QByteArray& url = "rtsp://camera/channels/1")
    {
        const Answer answer = ask(LD_Play, R"({"wndIndex":0,"auth":"a:b","url":")" + url + "\"}");
        EXPECT_TRUE(answer.null) << answer.message();
        const std::vector<int> live = engine_double::livePlays();
        return live.empty() ? -1 : live.back();
    }

    // The timers of an object, by their intervals.
    static std::vector<int> timers(QObject* object)
    {
        std::vector<int> intervals;
        for (const auto& timer : QAbstractEventDispatcher::instance()->registeredTimers(object))
            intervals.push_back(timer.interval);
        return intervals;
    }
    static void expire(QObject* object, int interval)
    {
        for (const auto& timer : QAbstractEventDispatcher::instance()->registeredTimers(object)) {
            QTimerEvent event(timer.timerId);
            if (timer.interval == interval)
                return void(QApplication::sendEvent(object, &event));
        }
        ADD_FAILURE() << "no timer of " << interval << " ms runs";
    }

    static std::vector<Event>& events() { return heard()[LD_EVENT_STREAM]; }
    // What came of a type since the last question.
    static std::vector<QJsonObject> told(LD_EventType type)
    {
        std::vector<QJsonObject> documents;
        for (const Event& event : heard()[type])
            documents.push_back(event.object);
        heard().clear();
        return documents;
    }

    static std::map<LD_EventType, std::vector<Event>>& heard()
    {
        static std::map<LD_EventType, std::vector<Event>> instance;
        return instance;
    }

private:
    static void installAll(LD_EventCallback callback)
    {
        for (int type = LD_EVENT_SELECTED; type <= LD_EVENT_DRAWING_ENDED; ++type)
            LD_InstallEventCallback(static_cast<LD_EventType>(type), callback);
    }
    static std::mutex& eventLock()
    {
        static std::mutex instance;
        return instance;
    }

    std::unique_ptr<QWidget> main_ = std::make_unique<QWidget>();
};

} // namespace wall
