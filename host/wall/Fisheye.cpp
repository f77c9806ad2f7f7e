#include "host/wall/Fisheye.h"

#include "host/wall/LocalSettings.h"

#include <QJsonArray>

#include <cmath>
#include <utility>

namespace quillmark::lumen_wall {

namespace {

constexpr const char* kPresetsKey = "fisheyePresets";
constexpr double kRing = 0.25; // of the picture, from its middle
constexpr double kTurn = 6.283185307179586;

double number(const QJsonObject& object, const char* key)
{
    return object.value(key).toVariant().toDouble();
}

QJsonObject documentOf(const FisheyePreset& preset)
{
    return {{"xPoint", preset.x}, {"yPoint", preset.y}, {"zPoint", preset.z}, {"time", preset.seconds}};
}

FisheyePreset presetOf(const QJsonObject& document)
{
    return {number(document, "xPoint"), number(document, "yPoint"), number(document, "zPoint"),
            static_cast<int>(number(document, "time"))};
}

QJsonArray documentsOf(const std::vector<FisheyePreset>& presets)
{
    QJsonArray documents;
    for (const FisheyePreset& preset : presets)
        documents.append(documentOf(preset));
    return documents;
}

} // namespace

void Fisheye::loadPresets()
{
    if (std::exchange(loaded_, true))
        return;
    const QString kept = readSettings(deck_).value(kPresetsKey).toString();
    for (const QJsonValue& document : QJsonDocument::fromJson(kept.toUtf8()).array())
        presets_.push_back(presetOf(document.toObject()));
    emit presetsChanged();
}

// The windows first, then the stream: the views begin with it.
void Fisheye::show(int mounting, int arrangement, const QString& source, const QString& auth)
{
    deck_.call("LD_StopRealPlayAll");
    deck_.call("LD_SetCorrectionType", {{"type", 1}});
    deck_.call("LD_SetPlaceType", {{"type", mounting}});
    deck_.call("LD_ArrangeFECWindow", {{"type", arrangement}});
    deck_.call("LD_Play", {{"wndIndex", 0}, {"url", source}, {"auth", auth}});
}

void Fisheye::step(int direction, int speed)
{
    deck_.call("LD_FishEyePTZ", {{"direction", direction}, {"speed", speed}});
}

bool Fisheye::scan(bool on, int speed)
{
    const QJsonValue answer = on ? deck_.call("LD_StartFECScan", {{"speed", speed}}) : deck_.call("LD_StopFECScan");
    return on && !isError(answer);
}

bool Fisheye::cruise(bool on)
{
    const QJsonValue answer = on ? deck_.call("LD_StartFECCruise", {{"fishEyePresetList", documentsOf(presets_)}})
                                 : deck_.call("LD_StopFECCruise");
    return on && !isError(answer);
}

void Fisheye::keepPreset(int seconds)
{
    const QJsonObject answer = deck_.call("LD_FishEyeGetPreset").toObject().value("fishEyePreset").toObject();
    if (answer.isEmpty())
        return;
    presets_.push_back(presetOf(answer));
    presets_.back().seconds = seconds;
    savePresets();
}

void Fisheye::usePreset(size_t index)
{
    deck_.call("LD_FishEyeSetPreset", {{"fishEyePreset", documentOf(presets_[index])}});
}

void Fisheye::dropPreset(size_t index)
{
    presets_.erase(presets_.begin() + static_cast<std::ptrdiff_t>(index));
    savePresets();
}

void Fisheye::savePresets()
{
    const QByteArray text = QJsonDocument(documentsOf(presets_)).toJson(QJsonDocument::Compact);
    writeSettings(deck_, {{kPresetsKey, QString::fromUtf8(text)}});
    emit presetsChanged();
}

void Fisheye::setRole(int window, FisheyeRole role, int number)
{
    deck_.call("LD_SetCorrectionType", {{"type", 0}});
    deck_.call("LD_SetFishWndProperty", {{"wndIndex", window}, {"type", static_cast<int>(role)}, {"id", number}});
}

void Fisheye::setBoxes(int count)
{
    QJsonArray boxes;
    for (int box = 0; box < count; ++box) {
        const double angle = kTurn * box / count;
        boxes.append(QJsonObject{
            {"id", box + 1}, {"xPoint", 0.5 + kRing * std::sin(angle)}, {"yPoint", 0.5 - kRing * std::cos(angle)}});
    }
    if (count > 0)
        deck_.call("LD_SetFishBoxListInfo", {{"fishBoxList", boxes}});
    else
        deck_.call("LD_ClearAllWndFishBoxInfo");
}

QString fisheyeReport(const QJsonObject& info)
{
    const QString view = QStringLiteral("fisheye view %1").arg(info.value("id").toInt());
    const int type = info.value("type").toInt();
    if (type != 0)
        return view + (type == 1 ? ": wheel up" : ": wheel down");
    const QJsonArray to = info.value("position").toArray();
    return QStringLiteral("%1 dragged to %2, %3 (drag %4, point %5)")
        .arg(view)
        .arg(to.at(0).toDouble(), 0, 'f', 3)
        .arg(to.at(1).toDouble(), 0, 'f', 3)
        .arg(info.value("trackId").toInt())
        .arg(info.value("pointId").toInt());
}

} // namespace quillmark::lumen_wall
