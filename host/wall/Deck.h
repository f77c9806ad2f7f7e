#pragma once

#include "host/wall/CallTable.h"
#include "host/wall/CellBook.h"
#include "host/wall/EventHub.h"
#include "host/wall/WorkerPool.h"

#include <QJsonObject>
#include <QObject>

#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace quillmark::lumen_wall {

// The one road from the host to the library: window and control channel call through it, so each sees what the other
// has done.
class Deck : public QObject
{
    Q_OBJECT

public:
    explicit Deck(QWidget* wall); // outlives the deck
    ~Deck() override;             // stops every stream

    // Any thread that the function allows.
    Reply invoke(const Function& function, const QJsonDocument& args);

    // Main thread. A failure of call() is also told by `failed`, one of ask() is the answer.
    void start(); // initialises the library on the wall
    QJsonValue call(const char* function, const QJsonObject& args = {});
    QJsonValue ask(const char* function, const QJsonObject& args = {}) const;

    // Asks beside the wall, where a server is waited for; the answer comes to the main thread, if `receiver` is still
    // there.
    void askApart(const char* function, const QJsonObject& args, QObject* receiver,
                  std::function<void(const QJsonValue&)> then);
    bool settle(std::chrono::milliseconds limit) { return apart_->waitForDone(limit); } // false: some still wait

    QWidget* wall() const { return wall_; }
    EventHub& events() { return events_; }
    CellBook& cells() { return cells_; }
    int selected() const { return selected_; }

signals:
    void selectionChanged();
    void failed(const QString& message);

private:
    static constexpr size_t kAtATime = 16; // calls that wait for servers

    void later(std::function<void()> action); // on the main thread
    void runLater();
    void note(const QString& function, const QJsonObject& args, const QJsonValue& result);
    void onEvent(int type, const QJsonObject& document);
    void select(int index);

    QWidget* const wall_;
    EventHub events_;
    CellBook cells_;
    int selected_ = 0;
    std::mutex lock_;
    std::vector<std::function<void()>> later_; // guarded by lock_
    std::optional<WorkerPool> apart_{std::in_place, kAtATime};
};

// The form in which the library takes a log-in.
QString authOf(const QString& user, const QString& password);

} // namespace quillmark::lumen_wall
