#pragma once

#include "include/lumen_deck/lumen_deck.h"

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <set>

namespace quillmark::lumen_deck {

// The callable of one exported call; exactly one member is set. Copied at every hand-over, so it carries no state.
struct ApiFunctionDescriptor
{
    std::function<QJsonDocument*(QWidget*, const QJsonDocument*)> withWidgetAndDocument;
    std::function<QJsonDocument*(QWidget*)> withWidget;
    std::function<QJsonDocument*(const QJsonDocument*)> withDocument;
    std::function<QJsonDocument*()> withNothing;
};

// A call on its way to the main thread. Widget and document belong to the caller, who waits for the promise.
class ApiCallEvent : public QEvent
{
public:
    static int eventType; // -1 until registerEventType
    static void registerEventType();

    ApiCallEvent(std::shared_ptr<std::promise<QJsonDocument*>> promise, ApiFunctionDescriptor function, QWidget* widget,
                 const QJsonDocument* document);

    void makeCall(); // keeps the promise with the callable's result
    void refuse();   // keeps the promise with an error, the callable does not run

private:
    std::shared_ptr<std::promise<QJsonDocument*>> promise_;
    ApiFunctionDescriptor function_;
    QPointer<QWidget> widget_; // a call whose widget dies while it waits in the queue is refused
    const QJsonDocument* document_;
};

// Takes calls to the thread that it lives on, one at a time in the order of their arrival. A call that has no widget,
// or whose caller already is on the widget's thread, runs at once.
class ApiDispatcher : public QObject
{
    Q_OBJECT
public:
    ApiDispatcher(); // any thread; lives on the application's thread where there is an application

    // From now on calls run on the current thread, until the application object goes.
    void serve();

    // Any thread. Does not wait: the caller waits for the promise.
    std::shared_ptr<std::promise<QJsonDocument*>> makeCall(ApiFunctionDescriptor function, QWidget* widget,
                                                           const QJsonDocument* document);

    bool event(QEvent* e) override;

private:
    void openUntilApplicationGoes();
    void close();

    // ThreadSanitizer does not see the lock of Qt's event queue; this one also hands each event over from the caller.
    std::mutex mutex_;
    std::set<ApiCallEvent*> pending_; // guarded by mutex_
    bool open_ = false;               // guarded by mutex_
};

// The host's callbacks, one an event type. Any thread.
LD_EventCallback installCallback(LD_EventType type, LD_EventCallback callback);
void callCallback(LD_EventType type, QWidget* widget, const QJsonDocument* document);

} // namespace quillmark::lumen_deck
