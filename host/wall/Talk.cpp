#include "host/wall/Talk.h"

#include "host/wall/CellBook.h"
#include "host/wall/ErrorText.h"
#include "host/wall/LocalSettings.h"
#include "host/wall/StreamMessages.h"

#include <QUrl>
#include <QUuid>

namespace quillmark::lumen_wall {

namespace {

QString withoutCredential(const QString& address)
{
    const QUrl url(address);
    return url.userInfo().isEmpty() ? address : url.toString(QUrl::RemoveUserInfo);
}

QString whyNot(const QJsonObject& error)
{
    const QString reason = engineReason(error.value("errorCode").toInt());
    return reason.isEmpty() ? errorText("LD_StartVoiceTalk", error) : reason;
}

} // namespace

Talk::Talk(Deck& deck)
    : deck_(deck)
{
}

Talk::~Talk()
{
    if (state_ == State::Talking)
        deck_.ask("LD_StopVoiceTalk", {{"uuid", uuid_}});
}

void Talk::start(const TalkTarget& target)
{
    if (state_ != State::Silent)
        return;
    uuid_ = QUuid::createUuid().toString(QUuid::WithoutBraces);
    remember(target);
    become(State::Opening);
    deck_.askApart("LD_StartVoiceTalk",
                   {{"openUrl", target.openUrl},
                    {"dataUrl", target.dataUrl},
                    {"closeUrl", target.closeUrl},
                    {"auth", authOf(target.user, target.password)},
                    {"audioType", target.audioType},
                    {"uuid", uuid_}},
                   this, [this, uuid = uuid_](const QJsonValue& answer) { onAnswer(uuid, answer); });
}

void Talk::stop()
{
    if (state_ == State::Talking)
        deck_.call("LD_StopVoiceTalk", {{"uuid", uuid_}});
    uuid_.clear();
    become(State::Silent);
}

void Talk::onAnswer(const QString& uuid, const QJsonValue& answer)
{
    if (uuid != uuid_) { // nobody waits for it any more
        deck_.ask("LD_StopVoiceTalk", {{"uuid", uuid}});
        return;
    }
    if (!isError(answer)) {
        since_ = QDateTime::currentDateTime();
        become(State::Talking);
        return;
    }
    become(State::Silent, whyNot(answer.toObject()));
    emit reported(static_cast<int>(Severity::Failure), -1, "no talk: " + problem_);
}

void Talk::become(State state, const QString& problem)
{
    state_ = state;
    problem_ = problem;
    emit changed();
}

TalkTarget Talk::remembered() const
{
    const QJsonObject settings = readSettings(deck_);
    const auto text = [&](const char* key) { return settings.value(key).toString(); };
    return {text("talkOpenUrl"),           text("talkDataUrl"), text("talkCloseUrl"),
            text("talkAudioType").toInt(), text("talkUser"),    {}};
}

void Talk::remember(const TalkTarget& target)
{
    writeSettings(deck_, {{"talkOpenUrl", withoutCredential(target.openUrl)},
                          {"talkDataUrl", withoutCredential(target.dataUrl)},
                          {"talkCloseUrl", withoutCredential(target.closeUrl)},
                          {"talkAudioType", QString::number(target.audioType)},
                          {"talkUser", target.user}});
}

QString talkText(const Talk& talk)
{
    switch (talk.state()) {
    case Talk::State::Opening:
        return "Opening the talk …";
    case Talk::State::Talking:
        return "● Talking  " + durationText(talk.since());
    case Talk::State::Silent:
        break;
    }
    return talk.problem().isEmpty() ? QString("Not talking") : "No talk: " + talk.problem();
}

} // namespace quillmark::lumen_wall
