#pragma once

#include "src/fisheye/FisheyeTypes.h"
#include "src/player/IEagleEyeModule.h"
#include "src/util/Errors.h"

#include <QJsonDocument>

#include <memory>

class QMouseEvent;
class QWheelEvent;
class QWidget;

namespace quillmark::lumen_deck {

// Turns the picture of an eagle-eye stream, by mouse and by request; a direct child of the play window. Main thread
// only.
class EagleEyeModule : public IEagleEyeModule
{
    Q_OBJECT
public:
    explicit EagleEyeModule(QWidget* window);

    _TP_EAGLEEYEPARAM getEagleEyeParam() const override { return block_; }

    std::shared_ptr<ErrorBase> setEagleEyeExpandType(const QJsonDocument& document);
    void setEagleEyeExpandType(int type); // 0 or 1; others are ignored
    std::shared_ptr<ErrorBase> setEagleEyePTZ(const QJsonDocument& document);
    int setEagleEyePTZ(int playId, PTZType direction, unsigned speed);
    float tanslateSpeed(int kind, unsigned speed) const; // 0 for a speed outside 1 to 7
    int setEagleEyeRotateParam(int playId, _TP_SRTRANSFERELEMENT element);

public slots:
    void setEagleEyeMousePress(QMouseEvent* event);
    void setEagleEyeMouseMove(QMouseEvent* event);
    void setEagleEyeMouseRelease(QMouseEvent* event);
    void setEagleEyeMouseWheel(QWheelEvent* event);

private:
    int playId() const; // -1 when nothing has played

    QWidget* const window_;
    _TP_EAGLEEYEPARAM block_{true, 1, 0};
    bool pressed_ = false;
    _TP_PTZPARAM press_{};
};

// The module of the window that a request names, made where there is none; null for no such window or an empty request.
EagleEyeModule* getEagleEyeInstance(QWidget* mainWindow, const QJsonDocument& document);

} // namespace quillmark::lumen_deck
