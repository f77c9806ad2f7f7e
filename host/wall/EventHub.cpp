#include "host/wall/EventHub.h"

namespace quillmark::lumen_wall {

namespace {

std::mutex lock; // guards the hub's address and its members
EventHub* hub = nullptr;

void installAll(LD_EventCallback callback)
{
    for (int type = LD_EVENT_SELECTED; type <= LD_EVENT_DRAWING_ENDED; ++type)
        LD_InstallEventCallback(static_cast<LD_EventType>(type), callback);
}

} // namespace

EventHub::EventHub()
{
    {
        const std::lock_guard guard(lock);
        hub = this;
    }
    installAll(&EventHub::receive);
}

EventHub::~EventHub()
{
    installAll(nullptr);
    const std::lock_guard guard(lock);
    hub = nullptr;
}

void EventHub::setListener(Listener listener)
{
    const std::lock_guard guard(lock);
    listener_ = std::move(listener);
}

void EventHub::receive(LD_EventType type, QWidget*, const QJsonDocument* document)
{
    const std::lock_guard guard(lock);
    if (!hub)
        return;
    hub->waiting_.emplace_back(type, document->object());
    if (hub->listener_)
        hub->listener_(type, document->object());
    if (hub->waiting_.size() == 1)
        QMetaObject::invokeMethod(hub, &EventHub::deliver, Qt::QueuedConnection);
}

void EventHub::deliver()
{
    std::deque<std::pair<int, QJsonObject>> events;
    {
        const std::lock_guard guard(lock);
        events.swap(waiting_);
    }
    for (const auto& [type, document] : events)
        emit happened(type, document);
}

} // namespace quillmark::lumen_wall
