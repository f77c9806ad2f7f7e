#pragma once

#include "host/wall/CallTable.h"
#include "host/wall/CellBook.h"
#include "host/wall/EventHub.h"

#include <QJsonObject>
#include <QObject>

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
    QWidget* wall() const { return wall_; }
    EventHub& events() { return events_; }
    CellBook& cells() { return cells_; }
    int selected() const { return selected_; }

signals:
    void selectionChanged();
    void failed(const QString& message);

private:
    void note(const QString& function, const QJsonObject& args, const QJsonValue& result);
    void onEvent(int type, const QJsonObject& document);
    void select(int index);

    QWidget* const wall_;
    EventHub events_;
    CellBook cells_;
    int selected_ = 0;
};

} // namespace quillmark::lumen_wall
