#include "src/fisheye/FisheyeWindow.h"

#include "src/LayoutDetail.h"
#include "src/graphics/IGraphicsView.h"
#include "src/player/PlayIds.h"
#include "src/player/Player.h"

#include <QDebug>
#include <QResizeEvent>
#include <QTimerEvent>

#include <cstring>

namespace quillmark::lumen_deck {

namespace {

constexpr int kMarkTime = 5000; // ms
constexpr int kMarkTick = 1000; // ms

// Draw thread of the engine. The engine draws the boxes of dewarped streams by itself.
void fisheyeWindowRenderCallback(void* user, unsigned, unsigned, void* drawContext, unsigned, unsigned)
{
    const WindowDirectory::Visit visit = WindowDirectory::instance().visit(user);
    if (visit && visit.view())
        visit.view()->render(drawContext);
}

} // namespace

FisheyeWindow::FisheyeWindow(QWidget* window)
    : QObject(window)
    , window_(window)
    , width_(window->width())
    , height_(window->height())
{
    if (auto* source = qobject_cast<IPlayWindow*>(window))
        connect(source, &IPlayWindow::sigResize, this, &FisheyeWindow::keepSize, Qt::UniqueConnection);
    WindowDirectory::instance().setOverlay(window, this);
}

FisheyeWindow::~FisheyeWindow()
{
    WindowDirectory::instance().setOverlay(window_, nullptr);
}

// For the draw thread, which may not ask the widget.
void FisheyeWindow::keepSize(QResizeEvent* event)
{
    width_ = event->size().width();
    height_ = event->size().height();
}

void FisheyeWindow::connectMouse()
{
    auto* source = qobject_cast<IPlayWindow*>(window_);
    if (!source)
        return;
    connect(source, &IPlayWindow::sigMousePress, this, &FisheyeWindow::setFisheyeMousePress, Qt::UniqueConnection);
    connect(source, &IPlayWindow::sigMouseMove, this, &FisheyeWindow::setFisheyeMouseMove, Qt::UniqueConnection);
    connect(source, &IPlayWindow::sigMouseRelease, this, &FisheyeWindow::setFisheyeMouseRelease, Qt::UniqueConnection);
    connect(source, &IPlayWindow::sigWheel, this, &FisheyeWindow::setFisheyeMouseWheel, Qt::UniqueConnection);
}

void FisheyeWindow::setWindowType(int type)
{
    windowType_ = type >= FisheyeNoRole && type <= FisheyeCircle ? type : FisheyeOrigin;
    if (!softwarePlay_)
        connectMouse();
}

// The timer means something else in each mode.
void FisheyeWindow::setSoftwarePlay(bool software)
{
    if (softwarePlay_.exchange(software) != software)
        markTimer_.stop();
}

int FisheyeWindow::getPlayerId() const
{
    return player_ ? player_->playId() : -1;
}

int FisheyeWindow::getCurrentWindowRealPlayId() const
{
    if (softwarePlay_)
        return realPlayId_;
    const auto* player = window_->findChild<Player*>();
    return player ? player->playId() : -1;
}

// At once, with the stream that it may still play: a window has one player, and who looks for it finds the new one.
void FisheyeWindow::removePlayer()
{
    auto* player = window_->findChild<Player*>();
    if (!player)
        return;
    delete player;
    setEngineDraws(window_, false);
}

_TP_FISHEYEPARAM FisheyeWindow::startParam(const _TP_FISHEYEPARAM& param) const
{
    _TP_FISHEYEPARAM start = param;
    if (windowType_ == FisheyeView) {
        start.x = windowPTZ_.x;
        start.y = windowPTZ_.y;
        start.mask = FisheyePositionField;
        if (windowPTZ_.z != kStartZoom) {
            start.z = windowPTZ_.z;
            start.mask = FisheyeZoomField | FisheyePositionField;
        }
    }
    if (color_.alpha != 0) {
        const unsigned char color[] = {color_.red, color_.green, color_.blue, static_cast<unsigned char>(color_.alpha)};
        std::memcpy(start.color, color, sizeof color);
        start.mask += FisheyeColorField;
    }
    return start;
}

int FisheyeWindow::subWindowPlay(int realPlayId, TP_WId windowHandle, const _TP_FISHEYEPARAM* param, int placeType)
{
    if (realPlayId < 0 || !param)
        return -1;
    if (windowType_ == FisheyeOrigin) {
        qDebug("originfail");
        return -1;
    }
    removePlayer();
    auto* player = new Player(window_);
    connectMouse();
    const _TP_FISHEYEPARAM start = startParam(*param);
    const BeginningPlay beginning;
    const int viewId = TP_FEC_Play(realPlayId, windowHandle, &start, placeType, correctType_);
    if (viewId < 0) {
        qDebug("Playfailed");
        return -1;
    }
    player_ = player;
    realPlayId_ = realPlayId;
    player->play(viewId);
    TP_FECRigisterDrawFun(realPlayId, viewId, fisheyeWindowRenderCallback, window_);
    return 0;
}

int FisheyeWindow::subWindowStop()
{
    if (!softwarePlay_)
        return 0;
    if (player_)
        player_->stop();
    window_->repaint();
    return 0;
}

void FisheyeWindow::endView()
{
    if (!softwarePlay_ || !player_ || !player_->playing())
        return;
    TP_Stop(player_->playId());
    player_->stop();
}

int FisheyeWindow::getFisheyeParam(_TP_FISHEYEPARAM* param) const
{
    if (realPlayId_ < 0 || getPlayerId() < 0)
        return -1;
    return TP_FEC_GetParam(realPlayId_, getPlayerId(), param);
}

int FisheyeWindow::setFisheyeParam(_TP_FISHEYEPARAM* param)
{
    const int realPlayId = getCurrentWindowRealPlayId();
    if (realPlayId < 0 || getPlayerId() < 0)
        return -1;
    delayHideFisheyeMark();
    return TP_FEC_UpDateParam(realPlayId, getPlayerId(), param);
}

int FisheyeWindow::getPTZ2WindowPosition(int subId, _TP_PTZPARAM start, _TP_PTZPARAM from, _TP_PTZPARAM to, float* x,
                                         float* y) const
{
    if (realPlayId_ < 0 || getPlayerId() < 0)
        return -1;
    return TP_FEC_PTZ2WindowEx(realPlayId_, subId, getPlayerId(), &start, &from, &to, x, y);
}

void FisheyeWindow::delayHideFisheyeMark()
{
    if (!softwarePlay_) {
        marks_.touch();
        return;
    }
    TP_FEC_SetDrawType(realPlayId_, triggerMarkType_);
    markTimer_.start(kMarkTime, Qt::CoarseTimer, this);
}

void FisheyeWindow::hidePTZMarrk()
{
    TP_FEC_SetDrawType(realPlayId_, 0);
}

void FisheyeWindow::setPTZMarkParam(int type)
{
    ptzMarkType_ = type;
    delayHideFisheyeMark();
    TP_FEC_SetDrawType(realPlayId_, type);
}

void FisheyeWindow::hightLightPTZ()
{
    TP_FEC_SetFinshDraw(realPlayId_, getPlayerId());
}

void FisheyeWindow::addFisheyeMark(int id, const _TP_PTZPARAM& position, bool visible)
{
    if (softwarePlay_ || windowType_ == FisheyeView)
        return;
    if (!markTimer_.isActive())
        markTimer_.start(kMarkTick, Qt::CoarseTimer, this);
    marks_.put(id, {position.x, position.y, visible});
}

// A moved box shows for five seconds more: the marks see to it, since no timer may be touched from the listener thread.
void FisheyeWindow::setFisheyeMark(int id, const _TP_PTZPARAM& position, bool visible)
{
    if (!softwarePlay_ && windowType_ != FisheyeView)
        marks_.move(id, {position.x, position.y, visible});
}

_TP_PTZPARAM FisheyeWindow::getFisheyeMarkPos(int id) const
{
    const FisheyeDeviceExpandMark mark = marks_.all().value(id);
    return {mark.x, mark.y};
}

void FisheyeWindow::timerEvent(QTimerEvent* event)
{
    const int id = event->timerId();
    if (id == markTimer_.timerId()) {
        marksTimedOut();
    } else if (id == cruiseTimer_.timerId()) {
        cruiseTimer_.stop();
        cruisePTZ();
    } else if (id == scanTimer_.timerId()) {
        scan();
    }
}

void FisheyeWindow::marksTimedOut()
{
    if (!softwarePlay_) {
        marks_.tick();
        return;
    }
    hidePTZMarrk();
    markTimer_.stop();
}

} // namespace quillmark::lumen_deck
