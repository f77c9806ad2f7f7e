#pragma once

#include "host/wall/Deck.h"

#include <QDateTime>
#include <QJsonObject>
#include <QObject>

namespace quillmark::lumen_wall {

// Whom to talk to.
struct TalkTarget
{
    QString openUrl, dataUrl, closeUrl;
    int audioType = 0;
    QString user, password;
};

// The one talk with a device that a person holds at the wall. The device's answer is waited for beside the wall. Main
// thread.
class Talk : public QObject
{
    Q_OBJECT

public:
    enum class State
    {
        Silent,
        Opening,
        Talking
    };

    explicit Talk(Deck& deck);
    ~Talk() override; // ends it

    State state() const { return state_; }
    QDateTime since() const { return since_; }
    QString problem() const { return problem_; } // why the last one did not begin, empty when it did

    void start(const TalkTarget& target); // a talk that goes on already goes on
    void stop();                          // one that is being opened as well

    // Everything but the password.
    TalkTarget remembered() const;

signals:
    void changed();
    void reported(int severity, int cell, const QString& text);

private:
    void onAnswer(const QString& uuid, const QJsonValue& answer);
    void remember(const TalkTarget& target);
    void become(State state, const QString& problem = {});

    Deck& deck_;
    State state_ = State::Silent;
    QString uuid_; // of the talk that is wanted
    QDateTime since_;
    QString problem_;
};

QString talkText(const Talk& talk); // its state, and how long it lasts

} // namespace quillmark::lumen_wall
