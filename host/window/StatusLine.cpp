#include "host/window/StatusLine.h"

#include "host/window/Mark.h"

#include <QJsonObject>
#include <QStringList>
#include <QTime>

namespace quillmark::lumen_wall {

namespace {

QString motionText(const CellState& state, bool playing)
{
    if (!playing)
        return "stopped";
    if (state.paused)
        return "paused";
    const QString direction = state.motion == Motion::Reverse ? "backwards" : "playing";
    return state.speedStep == 0 ? direction : direction + " " + speedText(state.speedStep);
}

} // namespace

StatusLine::StatusLine(Operator& wall)
    : operator_(wall)
    , cell_(new QLabel)
    , talk_(new QLabel)
    , event_(new QPushButton)
{
    cell_->setObjectName("cellLine");
    event_->setObjectName("eventLine");
    event_->setFlat(true);
    event_->setFocusPolicy(Qt::NoFocus);
    event_->setToolTip("The last event; click for all of them");
    setSizeGripEnabled(false);
    addWidget(cell_, 1);
    talk_->setObjectName("talkLine");
    talk_->setToolTip("The microphone is open");
    addPermanentWidget(talk_);
    addPermanentWidget(event_);
    talk_->hide();
    connect(event_, &QPushButton::clicked, this, &StatusLine::eventsWanted);
    connect(&wall, &Operator::reported, this, &StatusLine::report);
}

void StatusLine::refresh(const CellState& state, bool playing)
{
    QStringList parts{QStringLiteral("Window %1").arg(operator_.deck().selected() + 1)};
    if (state.source.isEmpty()) {
        parts.append("empty");
    } else {
        parts.append(titleOf(state));
        parts.append(motionText(state, playing));
    }
    if (playing)
        parts.append(pictureSize());
    parts.append(state.trouble);
    parts.removeAll(QString());
    cell_->setText(parts.join("  ·  "));
    showTalk();
}

void StatusLine::showTalk()
{
    const Talk& talk = operator_.talk();
    talk_->setVisible(talk.state() != Talk::State::Silent);
    talk_->setText(talkText(talk));
    setMark(*talk_, "waiting", talk.state() == Talk::State::Opening);
}

QString StatusLine::pictureSize() const
{
    Deck& deck = operator_.deck();
    const QJsonObject answer = deck.ask("LD_QueryPlayStatus", {{"wndIndex", deck.selected()}}).toObject();
    const QJsonObject size = answer.value("playInfo").toObject().value("pictureSize").toObject();
    return size.isEmpty()
               ? QString()
               : QStringLiteral("%1 × %2").arg(size.value("width").toInt()).arg(size.value("height").toInt());
}

void StatusLine::report(int severity, int cell, const QString& text)
{
    const QString where = cell < 0 ? QString() : QStringLiteral("Window %1: ").arg(cell + 1);
    event_->setText(QTime::currentTime().toString("HH:mm:ss  ") + where + text);
    setMark(*event_, "severity", severity);
}

} // namespace quillmark::lumen_wall
