#pragma once

#include <lumen_deck/lumen_deck.h>

#include <QJsonObject>
#include <QObject>

#include <deque>
#include <functional>
#include <mutex>
#include <utility>

namespace quillmark::lumen_wall {

// Takes the library's events on whatever thread they arise and hands them on. There is one at a time, since the
// library's callbacks carry no user pointer.
class EventHub : public QObject
{
    Q_OBJECT

public:
    using Listener = std::function<void(int type, const QJsonObject& document)>;

    EventHub(); // installs itself for all event types
    ~EventHub() override;

    // Hears every event at once, on the thread that it arises on; must neither wait nor call the library.
    void setListener(Listener listener);

    // What is installed in the library. Any thread.
    static void receive(LD_EventType type, QWidget* wall, const QJsonDocument* document);

signals:
    void happened(int type, const QJsonObject& document); // main thread, later

private:
    void deliver();

    std::deque<std::pair<int, QJsonObject>> waiting_; // guarded by the hub's lock
    Listener listener_;                               // guarded by the hub's lock
};

} // namespace quillmark::lumen_wall
