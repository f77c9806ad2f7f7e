#include "src/ApiDispatcher.h"

#include "src/util/Errors.h"

#include <QCoreApplication>
#include <QThread>

#include <map>
#include <utility>

namespace quillmark::lumen_deck {

namespace {

QJsonDocument* makeCall(ApiFunctionDescriptor function, QWidget* widget, const QJsonDocument* document)
{
    if (function.withWidgetAndDocument)
        return function.withWidgetAndDocument(widget, document);
    if (function.withDocument)
        return function.withDocument(document);
    if (function.withWidget)
        return function.withWidget(widget);
    return function.withNothing();
}

struct CallbackContainer
{
    std::mutex mutex;
    std::map<LD_EventType, LD_EventCallback> callbacks; // guarded by mutex
};

// Never destroyed: the engine's threads may still send events while the process exits.
CallbackContainer& acquireCallbackContainer()
{
    static auto* const container = new CallbackContainer;
    return *container;
}

LD_EventCallback callbackFor(LD_EventType type)
{
    CallbackContainer& container = acquireCallbackContainer();
    const std::lock_guard lock(container.mutex);
    const auto found = container.callbacks.find(type);
    return found != container.callbacks.end() ? found->second : nullptr;
}

} // namespace

int ApiCallEvent::eventType = -1;

void ApiCallEvent::registerEventType()
{
    eventType = QEvent::registerEventType(-1);
    Q_ASSERT(eventType != -1);
}

ApiCallEvent::ApiCallEvent(std::shared_ptr<std::promise<QJsonDocument*>> promise, ApiFunctionDescriptor function,
                           QWidget* widget, const QJsonDocument* document)
    : QEvent(static_cast<QEvent::Type>(eventType))
    , promise_(std::move(promise))
    , function_(std::move(function))
    , widget_(widget)
    , document_(document)
{
    Q_ASSERT(eventType != -1);
}

void ApiCallEvent::makeCall()
{
    if (widget_)
        promise_->set_value(lumen_deck::makeCall(function_, widget_, document_));
    else
        refuse();
}

void ApiCallEvent::refuse()
{
    const InvalidStatusError error("the main window or the application is gone, the call was not made", LUMEN_HERE);
    promise_->set_value(new QJsonDocument(error.toJson()));
}

ApiDispatcher::ApiDispatcher()
{
    ApiCallEvent::registerEventType();
    openUntilApplicationGoes();
}

void ApiDispatcher::serve()
{
    moveToThread(QThread::currentThread());
    openUntilApplicationGoes();
}

void ApiDispatcher::openUntilApplicationGoes()
{
    const QCoreApplication* application = QCoreApplication::instance();
    if (!application)
        return;
    if (thread() == QThread::currentThread())
        moveToThread(application->thread());
    connect(application, &QObject::destroyed, this, &ApiDispatcher::close,
            static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::UniqueConnection));
    const std::lock_guard lock(mutex_);
    open_ = true;
}

// Without an application no event is delivered any more: whoever waits would wait for ever.
void ApiDispatcher::close()
{
    const std::lock_guard lock(mutex_);
    open_ = false;
    for (ApiCallEvent* call : pending_)
        call->refuse();
    pending_.clear();
    QCoreApplication::removePostedEvents(this, ApiCallEvent::eventType);
}

std::shared_ptr<std::promise<QJsonDocument*>> ApiDispatcher::makeCall(ApiFunctionDescriptor function, QWidget* widget,
                                                                      const QJsonDocument* document)
{
    auto promise = std::make_shared<std::promise<QJsonDocument*>>();
    if (!widget || widget->thread() == QThread::currentThread()) {
        promise->set_value(lumen_deck::makeCall(std::move(function), widget, document));
        return promise;
    }
    auto call = std::make_unique<ApiCallEvent>(promise, std::move(function), widget, document);
    const std::lock_guard lock(mutex_);
    if (!open_) {
        call->refuse();
        return promise;
    }
    pending_.insert(call.get());
    QCoreApplication::postEvent(this, call.release(), 0);
    return promise;
}

bool ApiDispatcher::event(QEvent* e)
{
    std::unique_lock lock(mutex_); // before the event is looked at: its poster wrote it under the lock
    if (e->type() != ApiCallEvent::eventType) {
        lock.unlock();
        return QObject::event(e);
    }
    auto* call = static_cast<ApiCallEvent*>(e);
    pending_.erase(call);
    lock.unlock();
    call->makeCall();
    return true;
}

LD_EventCallback installCallback(LD_EventType type, LD_EventCallback callback)
{
    CallbackContainer& container = acquireCallbackContainer();
    const std::lock_guard lock(container.mutex);
    return std::exchange(container.callbacks[type], callback);
}

void callCallback(LD_EventType type, QWidget* widget, const QJsonDocument* document)
{
    if (const LD_EventCallback callback = callbackFor(type))
        callback(type, widget, document);
}

} // namespace quillmark::lumen_deck
