#include "src/fisheyemodule.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/fisheye/FisheyeWindow.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

// Steps, scans, cruises, presets and boxes.
namespace quillmark::lumen_deck {

namespace {

constexpr int kFailed = -1;
constexpr unsigned kFastest = 7;

// What is no number, or no number that a float can hold, is none or the nearest one.
float readFloat(const QJsonObject& object, const char* key)
{
    constexpr double largest = std::numeric_limits<float>::max();
    const double number = object.value(QLatin1String(key)).toDouble();
    return std::isnan(number) ? 0.0F : static_cast<float>(std::clamp(number, -largest, largest));
}

int readSeconds(const QJsonObject& object, const char* key)
{
    constexpr double longest = std::numeric_limits<int>::max();
    const double number = object.value(QLatin1String(key)).toDouble();
    return std::isnan(number) ? 0 : static_cast<int>(std::clamp(number, 0.0, longest));
}

FisheyePTZCruise readPlace(const QJsonObject& object)
{
    return {readFloat(object, "xPoint"), readFloat(object, "yPoint"), readFloat(object, "zPoint"),
            readSeconds(object, "time")};
}

// Which way a step in the picture goes.
struct Way
{
    float x;
    float y;
};
constexpr Way kWays[] = {{0.0F, -1.0F}, {0.0F, 1.0F}, {-1.0F, 0.0F}, {1.0F, 0.0F}};

} // namespace

float FisheyeModule::fisheyeValueToSetp(int kind, int speed) const
{
    constexpr double picturesAStep = 3.17;
    if (speed < 1 || speed > static_cast<int>(kFastest))
        return 0.0F;
    const auto pace = static_cast<float>(speed);
    const float slow = pace * 0.001F + 0.002F;
    switch (kind) {
    case ScanStep:
        return slow;
    case ZoomStep:
        return 0.025F;
    case LookStep:
        return static_cast<float>(static_cast<double>(slow) / picturesAStep);
    case TurnStep:
        return pace * 0.2F + 0.05F;
    default:
        return 0.0F;
    }
}

int FisheyeModule::setFisheyePTZ(int index, unsigned direction, unsigned speed)
{
    FisheyeWindow* window = index >= 0 ? getSubWindowByReference(index) : nullptr;
    if (speed > kFastest || direction > PTZZoomOut || !window || window->getPlayerId() == -1 ||
        correctionType_ == DeviceExpansion)
        return kFailed;
    _TP_FISHEYEPARAM param{};
    if (window->getFisheyeParam(&param) != 0)
        return kFailed;
    const int pace = static_cast<int>(speed);
    if (direction >= PTZZoomIn)
        return zoomView(*window, param.z, direction, pace);
    switch (window->getWindowType()) {
    case FisheyeTurning:
    case FisheyePanorama:
        return turnView(*window, param, direction, pace);
    case FisheyeView:
        return lookAside(*window, param, direction, pace);
    default:
        return kFailed;
    }
}

int FisheyeModule::zoomView(FisheyeWindow& window, float oldZoom, unsigned direction, int speed)
{
    const float step = fisheyeValueToSetp(ZoomStep, speed);
    _TP_FISHEYEPARAM param{};
    param.mask = FisheyeZoomField;
    param.z = direction == PTZZoomIn ? oldZoom + step : oldZoom - step;
    return window.setFisheyeParam(&param);
}

int FisheyeModule::turnView(FisheyeWindow& window, _TP_FISHEYEPARAM& param, unsigned direction, int speed)
{
    if (subWindowCount_ != 1 || direction < PTZLeft)
        return kFailed;
    const float step = fisheyeValueToSetp(TurnStep, speed);
    param.mask = FisheyeAngleField;
    param.angle += direction == PTZLeft ? step : -step;
    return window.setFisheyeParam(&param);
}

// On a wall the round picture and its views have the same directions; elsewhere the step is made in the picture of the
// view, and the engine says where that leads.
int FisheyeModule::lookAside(FisheyeWindow& window, _TP_FISHEYEPARAM& param, unsigned direction, int speed)
{
    constexpr _TP_PTZPARAM middle{0.5F, 0.5F};
    const float step = fisheyeValueToSetp(LookStep, speed);
    const auto [wayX, wayY] = kWays[direction];
    param.mask = FisheyePositionField;
    if (placeType_ == kPlaceWall) {
        param.x += wayX * step;
        param.y += wayY * step;
        return window.setFisheyeParam(&param);
    }
    const _TP_PTZPARAM aside{middle.x + wayX * step, middle.y + wayY * step};
    const _TP_PTZPARAM start{param.x, param.y};
    if (window.getPTZ2WindowPosition(window.getPlayerId(), start, middle, aside, &param.x, &param.y) != 0)
        return kFailed;
    return window.setFisheyeParam(&param);
}

int FisheyeModule::startFisheyeScan(int index, int speed)
{
    FisheyeWindow* window = index >= 0 ? getSubWindowByReference(index) : nullptr;
    if (!window || correctionType_ != SoftwareCorrection || window->getCurrentWindowRealPlayId() < 0)
        return kFailed;
    return window->startScan(fisheyeValueToSetp(ScanStep, speed), placeType_);
}

int FisheyeModule::stopFisheyeScan()
{
    for (FisheyeWindow* window : companions())
        window->stopScan();
    return 0;
}

// All places are read before the first is taken.
int FisheyeModule::startFisheyeCruise(int index, const QJsonDocument& document)
{
    FisheyeWindow* window = index >= 0 ? getSubWindowByReference(index) : nullptr;
    const QJsonArray presets = document.object().value("fishEyePresetList").toArray();
    if (!window || presets.isEmpty())
        return kFailed;
    std::vector<FisheyePTZCruise> places;
    for (const QJsonValue& preset : presets) {
        const QJsonObject place = preset.toObject();
        if (place.isEmpty())
            return kFailed;
        places.push_back(readPlace(place));
    }
    return window->startCruise(std::move(places));
}

int FisheyeModule::stopFisheyeCruise()
{
    for (FisheyeWindow* window : companions())
        window->stopCruise();
    return 0;
}

int FisheyeModule::setSubWindowPTZParam(int index, const QJsonDocument& document)
{
    FisheyeWindow* window = index >= 0 ? getSubWindowByReference(index) : nullptr;
    if (!window)
        return kFailed;
    qDebug().noquote() << document.toJson(QJsonDocument::Compact);
    const QJsonObject preset = document.object().value("fishEyePreset").toObject();
    if (preset.isEmpty())
        return kFailed;
    const FisheyePTZCruise place = readPlace(preset);
    _TP_FISHEYEPARAM param{};
    param.mask = FisheyeZoomField | FisheyePositionField;
    param.x = place.x;
    param.y = place.y;
    param.z = place.z;
    return window->setFisheyeParam(&param);
}

// Six digits are what a person would write down.
QJsonDocument FisheyeModule::getSubWindowPTZParam(int index)
{
    const FisheyeWindow* window = index >= 0 ? getSubWindowByReference(index) : nullptr;
    _TP_FISHEYEPARAM param{};
    if (!window || window->getFisheyeParam(&param) < 0)
        return {};
    const QString text = QStringLiteral(R"({"fishEyePreset":{"xPoint":%1,"yPoint":%2,"zPoint":%3}})")
                             .arg(static_cast<double>(param.x))
                             .arg(static_cast<double>(param.y))
                             .arg(static_cast<double>(param.z));
    return QJsonDocument::fromJson(text.toUtf8());
}

QJsonDocument FisheyeModule::getSubWindowPTZParam()
{
    return getSubWindowPTZParam(selectedSubWindow());
}

QJsonDocument FisheyeModule::getPTZList()
{
    constexpr int entries = 9;
    QJsonArray list;
    for (int id = 0; id < entries; ++id) {
        const FisheyeWindow* window = getSubWindowByReference(id);
        _TP_FISHEYEPARAM param{};
        if (!window || window->getFisheyeParam(&param) < 0)
            param = {};
        list.append(QJsonObject{{"id", id},
                                {"xPoint", static_cast<double>(param.x)},
                                {"yPoint", static_cast<double>(param.y)},
                                {"zPoint", static_cast<double>(param.z)}});
    }
    return QJsonDocument(QJsonObject{{"fishBoxList", list}});
}

// The old boxes go before the new list is looked at; a bad entry ends the list.
int FisheyeModule::addFisheyeWindowMark(int index, const QJsonDocument& document)
{
    FisheyeWindow* window = index >= 0 ? getSubWindowByReference(index) : nullptr;
    if (!window)
        return kFailed;
    const QJsonArray boxes = document.object().value("fishBoxList").toArray();
    window->clearDeviceExpandMark();
    if (boxes.isEmpty())
        return kFailed;
    for (const QJsonValue& entry : boxes) {
        const QJsonObject box = entry.toObject();
        if (box.isEmpty())
            return kFailed;
        window->addFisheyeMark(box.value("id").toInt(), {readFloat(box, "xPoint"), readFloat(box, "yPoint")}, true);
    }
    return 0;
}

int FisheyeModule::clearFisheyeWindowMark(int index)
{
    FisheyeWindow* window = index >= 0 ? getSubWindowByReference(index) : nullptr;
    if (!window)
        return kFailed;
    window->clearDeviceExpandMark();
    return 0;
}

} // namespace quillmark::lumen_deck
