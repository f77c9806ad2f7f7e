#include "src/ApiDispatcher.h"
#include "src/fisheye/FisheyeWindow.h"
#include "src/fisheye/Pointer.h"
#include "src/player/Player.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWidget>

#include <cmath>

// What the mouse does in a fisheye window: it moves the view, or tells the host.
namespace quillmark::lumen_deck {

namespace {

constexpr float kWheelStep = 0.025F;

// What a report to the host is about.
enum Gesture
{
    Drag = 0,
    WheelUp = 1,
    WheelDown = 2
};

QJsonArray toJson(const _TP_PTZPARAM& position)
{
    return {static_cast<double>(position.x), static_cast<double>(position.y)};
}

bool turnsByDrag(int windowType, int ptzMarkType)
{
    return windowType == FisheyeTurning || (windowType == FisheyePanorama && ptzMarkType < 1);
}

bool looksByDrag(int windowType, int ptzMarkType)
{
    return windowType == FisheyeView || (windowType == FisheyePanorama && ptzMarkType >= 1);
}

// Both bounds belong to it; the slack is what float arithmetic may lose, far below a pixel.
bool within(float a, float b, float reach)
{
    constexpr float slack = 1e-6F;
    return std::abs(a - b) <= reach + slack;
}

} // namespace

bool FisheyeWindow::takesPresses() const
{
    if (softwarePlay_)
        return ptzMarkType_ != 0 || (windowType_ >= FisheyeView && windowType_ <= FisheyePanorama);
    return windowType_ != FisheyeOrigin || !marks_.empty();
}

void FisheyeWindow::setFisheyeMousePress(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !takesPresses())
        return;
    dragging_ = false;
    pointId_ = 1;
    pressPosition_ = pointerIn(*window_, *event);
    pressTime_ = event->timestamp();
    if (softwarePlay_)
        beginViewDrag();
    else
        beginDeviceDrag();
}

void FisheyeWindow::beginViewDrag()
{
    hightLightPTZ();
    delayHideFisheyeMark();
    _TP_FISHEYEPARAM param{};
    if (!readPressedView(param))
        return;
    dragging_ = true;
    pressParam_ = {param.x, param.y};
    pressAngle_ = param.angle;
}

// The view of this window, or the one whose box is under the pointer.
bool FisheyeWindow::readPressedView(_TP_FISHEYEPARAM& param)
{
    if (ptzMarkType_ < 1)
        return getFisheyeParam(&param) >= 0;
    int id = -1;
    if (TP_FEC_IsInFinshDraw(realPlayId_, &id, pressPosition_.x, pressPosition_.y) < 0)
        return false;
    dragId_ = id;
    return TP_FEC_GetParam(realPlayId_, id, &param) >= 0;
}

void FisheyeWindow::beginDeviceDrag()
{
    delayHideFisheyeMark();
    if (windowType_ == FisheyeOrigin && !pickMark())
        return;
    ++trackId_;
    dragging_ = true;
}

// The last of the boxes under the pointer is the one on top.
bool FisheyeWindow::pickMark()
{
    constexpr float reachAcross = 24.0F;
    constexpr float reachDown = 32.0F;
    const QSize size = window_->size().expandedTo({1, 1});
    const float across = reachAcross / static_cast<float>(size.width());
    const float down = reachDown / static_cast<float>(size.height());
    marks_.showAll();
    dragId_ = -1;
    const FisheyeMarks::Marks marks = marks_.all();
    for (auto mark = marks.cbegin(); mark != marks.cend(); ++mark) {
        if (within(pressPosition_.x, mark->x, across) && within(pressPosition_.y, mark->y, down))
            dragId_ = mark.key();
    }
    return dragId_ != -1;
}

void FisheyeWindow::setFisheyeMouseMove(QMouseEvent* event)
{
    if (!dragging_)
        return;
    const _TP_PTZPARAM at = pointerIn(*window_, *event);
    if (softwarePlay_)
        dragView(at);
    else
        dragOnDevice(at, event->timestamp());
}

void FisheyeWindow::dragView(const _TP_PTZPARAM& at)
{
    if (turnsByDrag(windowType_, ptzMarkType_))
        turnView(at);
    else if (looksByDrag(windowType_, ptzMarkType_))
        moveView(at);
    else
        moveBox(at);
}

void FisheyeWindow::turnView(const _TP_PTZPARAM& at)
{
    constexpr double pi = 3.1415926;
    const double turn = 2.0 * static_cast<double>(pressPosition_.x - at.x) * pi;
    _TP_FISHEYEPARAM param{};
    param.mask = FisheyeAngleField;
    param.angle = static_cast<float>(static_cast<double>(pressAngle_) - turn);
    setFisheyeParam(&param);
}

void FisheyeWindow::updateView(int viewId, _TP_FISHEYEPARAM& param)
{
    TP_FEC_UpDateParam(realPlayId_, viewId, &param);
    delayHideFisheyeMark();
}

void FisheyeWindow::moveBox(const _TP_PTZPARAM& at)
{
    if (dragId_ < 0)
        return;
    _TP_FISHEYEPARAM param{};
    param.mask = FisheyePositionField;
    param.x = at.x + pressParam_.x - pressPosition_.x;
    param.y = at.y + pressParam_.y - pressPosition_.y;
    updateView(dragId_, param);
}

void FisheyeWindow::moveView(const _TP_PTZPARAM& at)
{
    const bool another = dragId_ >= 0;
    const int viewId = another ? dragId_ : getPlayerId();
    _TP_FISHEYEPARAM param{};
    if (getPTZ2WindowPosition(viewId, pressParam_, pressPosition_, at, &param.x, &param.y) < 0)
        return;
    param.mask = FisheyePositionField;
    if (another)
        updateView(viewId, param);
    else
        setFisheyeParam(&param);
}

// A click that trembles is no drag.
void FisheyeWindow::dragOnDevice(const _TP_PTZPARAM& at, unsigned long time)
{
    constexpr float tremble = 0.1F;
    constexpr unsigned long clickTime = 200; // ms
    const float way = std::abs(at.x - pressPosition_.x) + std::abs(at.y - pressPosition_.y);
    if (way < tremble && time - pressTime_ < clickTime)
        return;
    const std::optional<int> id = reportedId();
    if (!id)
        return;
    const QPointer<FisheyeWindow> self = this;
    setPTZInfo(Drag, pressPosition_, at, *id);
    if (self && dragId_ > 0)
        setFisheyeMark(dragId_, at, true);
}

std::optional<int> FisheyeWindow::reportedId() const
{
    if (windowType_ == FisheyeView)
        return windowPTZId_;
    return dragId_ >= 0 ? std::optional(dragId_) : std::nullopt;
}

void FisheyeWindow::setFisheyeMouseRelease(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    dragging_ = false;
    if (softwarePlay_)
        return;
    pointId_ = 0;
    if (const std::optional<int> id = reportedId())
        setPTZInfo(Drag, pressPosition_, pressPosition_, *id);
}

void FisheyeWindow::setFisheyeMouseWheel(QWheelEvent* event)
{
    if (correctType_ != kCorrectView)
        return;
    const int delta = event->angleDelta().y();
    if (!softwarePlay_) {
        if (windowType_ == FisheyeView)
            setPTZInfo(delta > 0 ? WheelUp : delta < 0 ? WheelDown : Drag, {0, 0}, {0, 0}, windowPTZId_);
        return;
    }
    _TP_FISHEYEPARAM param{};
    if (getFisheyeParam(&param) != 0)
        return;
    param.z += delta > 0 ? kWheelStep : delta < 0 ? -kWheelStep : 0.0F;
    param.mask = FisheyeZoomField;
    setFisheyeParam(&param);
}

// The host may do anything when it is told: nothing of the window is touched after that.
void FisheyeWindow::setPTZInfo(int type, _TP_PTZPARAM origin, _TP_PTZPARAM position, int id)
{
    constexpr int viewToTheHost = 1;
    const auto* player = window_->findChild<Player*>();
    const QWidget* cell = window_->parentWidget();
    QWidget* mainWindow = cell ? cell->parentWidget() : nullptr;
    if (!mainWindow || (player && !player->playing()))
        return;
    const int windowType = windowType_;
    const QJsonObject info{{"type", type},
                           {"windowType", windowType == FisheyeView ? viewToTheHost : windowType},
                           {"id", id},
                           {"trackId", trackId_},
                           {"pointId", pointId_++},
                           {"position", toJson(position)},
                           {"originPosition", toJson(origin)}};
    const QJsonDocument document(QJsonObject{{"cmd", "window.onFisheyePTZInfo"}, {"fishEyePTZInfo", info}});
    callCallback(LD_EVENT_FISHEYE_PTZ, mainWindow, &document);
}

} // namespace quillmark::lumen_deck
