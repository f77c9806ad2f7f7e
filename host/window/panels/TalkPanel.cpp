#include "host/window/panels/TalkPanel.h"

#include "host/window/Mark.h"

#include <QFormLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace quillmark::lumen_wall {

namespace {

constexpr int kClockMs = 500;

QLineEdit* addressField(const char* hint, const char* tip)
{
    auto* field = new QLineEdit;
    field->setPlaceholderText(hint);
    field->setToolTip(tip);
    return field;
}

const char* mood(const Talk& talk)
{
    if (talk.state() == Talk::State::Talking)
        return "live";
    return talk.state() == Talk::State::Opening || !talk.problem().isEmpty() ? "waiting" : "";
}

} // namespace

TalkPanel::TalkPanel(Operator& wall, QWidget* parent)
    : QWidget(parent)
    , talk_(wall.talk())
    , open_(addressField("http://camera/audio/open", "Asked before the talk; may be left out"))
    , data_(addressField("http://camera/audio/data", "Takes and gives the sound"))
    , close_(addressField("http://camera/audio/close", "Asked after the talk; may be left out"))
    , codec_(new QComboBox)
    , user_(new QLineEdit)
    , password_(new QLineEdit)
    , button_(new QPushButton)
    , state_(new QLabel)
{
    codec_->addItems({"G.711 A law", "G.711 µ law", "AAC"}); // in the order of the library's numbers
    password_->setEchoMode(QLineEdit::Password);
    password_->setToolTip("Not kept");
    state_->setObjectName("talkState");
    state_->setWordWrap(true);
    state_->setAlignment(Qt::AlignTop);

    auto* form = new QFormLayout;
    form->addRow("Open", open_);
    form->addRow("Sound", data_);
    form->addRow("Close", close_);
    form->addRow("Codec", codec_);
    form->addRow("User", user_);
    form->addRow("Password", password_);
    auto* column = new QVBoxLayout(this);
    column->addLayout(form);
    column->addWidget(button_);
    column->addWidget(state_, 1);

    connect(button_, &QPushButton::clicked, this, &TalkPanel::toggle);
    connect(data_, &QLineEdit::textChanged, this, &TalkPanel::refresh);
    for (QLineEdit* const field : {open_, data_, close_, user_, password_})
        connect(field, &QLineEdit::returnPressed, button_, &QPushButton::click);
    connect(&talk_, &Talk::changed, this, &TalkPanel::refresh);
    connect(&clock_, &QTimer::timeout, this, &TalkPanel::refresh);
    clock_.setInterval(kClockMs);
    refresh();
}

void TalkPanel::showEvent(QShowEvent*)
{
    if (!filled_)
        show(talk_.remembered());
    filled_ = true;
}

void TalkPanel::toggle()
{
    if (talk_.state() == Talk::State::Silent)
        talk_.start(target());
    else
        talk_.stop();
}

void TalkPanel::refresh()
{
    const bool silent = talk_.state() == Talk::State::Silent;
    for (QWidget* const field : std::initializer_list<QWidget*>{open_, data_, close_, codec_, user_, password_})
        field->setEnabled(silent);
    button_->setText(silent ? "Talk" : "Stop talking");
    button_->setEnabled(!silent || !data_->text().trimmed().isEmpty());
    state_->setText(talkText(talk_));
    setMark(*state_, "mood", mood(talk_));
    if (silent)
        clock_.stop();
    else if (!clock_.isActive())
        clock_.start();
}

TalkTarget TalkPanel::target() const
{
    return {open_->text().trimmed(), data_->text().trimmed(), close_->text().trimmed(),
            codec_->currentIndex(),  user_->text(),           password_->text()};
}

void TalkPanel::show(const TalkTarget& target)
{
    open_->setText(target.openUrl);
    data_->setText(target.dataUrl);
    close_->setText(target.closeUrl);
    codec_->setCurrentIndex(std::clamp(target.audioType, 0, codec_->count() - 1));
    user_->setText(target.user);
}

} // namespace quillmark::lumen_wall
