#include "src/player/Player.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/LayoutDetail.h"
#include "src/player/PlayIds.h"

#include <QDebug>
#include <QWheelEvent>
#include <QWidget>

namespace quillmark::lumen_deck {

Player::Player(QWidget* parent)
    : IPlayer(parent)
{
    ensureMessageHandler();
    if (auto* window = qobject_cast<IPlayWindow*>(parent))
        connect(window, &IPlayWindow::sigWheel, this, &Player::onMouseWheelEvent, Qt::UniqueConnection);
}

// The id is forgotten before the engine stops: a message that is on its way finds nobody.
Player::~Player()
{
    if (saving_)
        TP_StopSave(playId_);
    if (!playing())
        return;
    releasePlayId(playId_);
    TP_Stop(playId_);
}

float Player::playSpeed() const
{
    return playing() ? TP_GetScale(playId_) : 0.0F;
}

std::uint16_t Player::volume() const
{
    return static_cast<std::uint16_t>(TP_GetVolume(playId_) & 0xFFFF);
}

void Player::start(int playId, Status status)
{
    bindPlayId(playId, this);
    status_ = status;
    saving_ = false;
    playId_ = playId;
    setEngineDraws(qobject_cast<QWidget*>(parent()), true);
}

bool Player::become(Status status)
{
    if (!playing())
        return false;
    status_ = status;
    return true;
}

void Player::stop()
{
    saving_ = false;
    releasePlayId(playId_);
    playId_ = -1;
    status_ = Stopped;
    setEngineDraws(qobject_cast<QWidget*>(parent()), false);
}

void Player::onMouseWheelEvent(QWheelEvent* event)
{
    if (status_ != FrameStepping || event->angleDelta().y() >= 0)
        return;
    if (TP_FrameForward(playId_) != 0)
        qWarning("no further frame by the wheel, last error %u", TP_GetLastError());
}

} // namespace quillmark::lumen_deck
