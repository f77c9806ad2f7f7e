#include "src/eagleeyemodule.h"

#include "src/LayoutDetail.h"
#include "src/LayoutManager.h"
#include "src/fisheye/Pointer.h"
#include "src/player/Player.h"
#include "src/player/Requests.h"

#include <QJsonObject>
#include <QMouseEvent>
#include <QWheelEvent>

namespace quillmark::lumen_deck {

namespace {

constexpr float kPi = 3.1415925F;
constexpr float kWheelStep = 0.05F;

} // namespace

EagleEyeModule* getEagleEyeInstance(QWidget* mainWindow, const QJsonDocument& document)
{
    const QJsonObject object = document.object();
    if (object.isEmpty())
        return nullptr;
    QWidget* window = Layout(mainWindow).getPlayWindow(QVariant(object.value("wndIndex").toInt(-1)));
    return window ? detail::useChildOf<EagleEyeModule>(window) : nullptr;
}

EagleEyeModule::EagleEyeModule(QWidget* window)
    : IEagleEyeModule(window)
    , window_(window)
{
    auto* source = qobject_cast<IPlayWindow*>(window);
    if (!source)
        return;
    connect(source, &IPlayWindow::sigMousePress, this, &EagleEyeModule::setEagleEyeMousePress, Qt::UniqueConnection);
    connect(source, &IPlayWindow::sigMouseMove, this, &EagleEyeModule::setEagleEyeMouseMove, Qt::UniqueConnection);
    connect(source, &IPlayWindow::sigMouseRelease, this, &EagleEyeModule::setEagleEyeMouseRelease,
            Qt::UniqueConnection);
    connect(source, &IPlayWindow::sigWheel, this, &EagleEyeModule::setEagleEyeMouseWheel, Qt::UniqueConnection);
}

int EagleEyeModule::playId() const
{
    const auto* player = window_->findChild<Player*>();
    return player ? player->playId() : -1;
}

std::shared_ptr<ErrorBase> EagleEyeModule::setEagleEyeExpandType(const QJsonDocument& document)
{
    const QJsonObject object = document.object();
    if (object.isEmpty())
        return constructJsonError("setEagleEyeExpandType param error", document, LUMEN_HERE);
    setEagleEyeExpandType(object.value("type").toInt(-1));
    return nullptr;
}

void EagleEyeModule::setEagleEyeExpandType(int type)
{
    if (type == 0 || type == 1)
        block_.expandType = type;
}

std::shared_ptr<ErrorBase> EagleEyeModule::setEagleEyePTZ(const QJsonDocument& document)
{
    if (!window_)
        return constructJsonError("setEagleEyePTZ init Error", document, LUMEN_HERE);
    if (playId() < 0)
        return constructJsonError("setEagleEyePTZ not on play", document, LUMEN_HERE);
    const QJsonObject object = document.object();
    if (object.isEmpty())
        return constructJsonError("setEagleEyePTZ param Error", document, LUMEN_HERE);
    const auto direction = static_cast<PTZType>(object.value("direction").toInt(-1));
    const auto step = static_cast<unsigned>(object.value("step").toInt(-1));
    if (setEagleEyePTZ(playId(), direction, step) < 0)
        return constructJsonError("setEagleEyePTZ to tidePipe Error", document, LUMEN_HERE);
    return nullptr;
}

float EagleEyeModule::tanslateSpeed(int kind, unsigned speed) const
{
    if (speed < 1 || speed > 7)
        return 0.0F;
    const auto pace = static_cast<float>(speed);
    switch (kind) {
    case 0:
        return pace * 0.001F + 0.004F;
    case 1:
        return pace * 0.005F + 0.0025F;
    case 2:
        return pace * 0.00065F;
    default:
        return 0.0F;
    }
}

int EagleEyeModule::setEagleEyePTZ(int playId, PTZType direction, unsigned speed)
{
    constexpr int zooming = 1;
    constexpr int turning = 2;
    if (playId == -1)
        return -1;
    const float up = 2.0F * tanslateSpeed(turning, speed) * kPi;
    const float right = 4.0F * tanslateSpeed(turning, speed) * kPi;
    const float nearer = tanslateSpeed(zooming, speed);
    const _TP_SRTRANSFERELEMENT elements[] = {{0, up, 0, 0},    {0, -up, 0, 0},     {-right, 0, 0, 0},
                                              {right, 0, 0, 0}, {0, 0, 0, -nearer}, {0, 0, 0, nearer}};
    return setEagleEyeRotateParam(playId, direction <= PTZZoomOut ? elements[direction] : _TP_SRTRANSFERELEMENT{});
}

int EagleEyeModule::setEagleEyeRotateParam(int playId, _TP_SRTRANSFERELEMENT element)
{
    const _TP_SRTRANSFER transfer{&element, 0};
    return TP_SR_Rotate(playId, &transfer);
}

void EagleEyeModule::setEagleEyeMousePress(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    pressed_ = true;
    press_ = pointerIn(*window_, *event);
}

// Each report is the whole way since the press.
void EagleEyeModule::setEagleEyeMouseMove(QMouseEvent* event)
{
    if (!pressed_)
        return;
    const auto turned = [](float from, float to, double turns) {
        return static_cast<float>((static_cast<double>(to) - static_cast<double>(from)) * turns *
                                  static_cast<double>(kPi));
    };
    const _TP_PTZPARAM at = pointerIn(*window_, *event);
    setEagleEyeRotateParam(playId(), {turned(press_.x, at.x, 8.0), turned(press_.y, at.y, 4.0), 0.0F, 0.0F});
}

void EagleEyeModule::setEagleEyeMouseRelease(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        pressed_ = false;
}

void EagleEyeModule::setEagleEyeMouseWheel(QWheelEvent* event)
{
    const int delta = event->angleDelta().y();
    setEagleEyeRotateParam(playId(), {0, 0, 0, delta > 0 ? kWheelStep : delta < 0 ? -kWheelStep : 0.0F});
}

} // namespace quillmark::lumen_deck
