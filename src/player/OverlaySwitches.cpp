#include "src/player/Play.h"

#include "include/tide_pipe/tide_pipe.h"
#include "src/util/JsonUtil.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>

namespace quillmark::lumen_deck {

namespace {

// Selectors of the engine's overlays.
enum Overlay : int
{
    Rules = 1,
    Targets = 2,
    OsdPosition = 4,
    OsdPicture = 8,
    Fire = 16,
    Temperature = 32
};

// One part of what the engine draws from a stream's private data.
struct Part
{
    const char* key;
    int part;
};

constexpr Part fireParts[] = {
    {"showFireBox", 1}, {"showFireMaxTemperature", 2}, {"showFireMaxTemperaturePos", 4}, {"showFireDistance", 8}};
constexpr Part temperatureParts[] = {
    {"showTemperatureBox", 1}, {"showTemperatureLine", 2}, {"showTemperaturePoint", 4}};

// Sets the overlays of one stream. Each answers the sum of what the engine has answered so far; below 0 it has refused.
class OverlaySwitches
{
public:
    OverlaySwitches(int playId, const QJsonObject& params)
        : playId_(playId)
        , params_(params)
    {
    }

    std::int64_t enable(std::initializer_list<Overlay> overlays, const char* key)
    {
        for (const Overlay overlay : overlays)
            sum_ += TP_EnableIVS(playId_, overlay, value(key));
        return sum_;
    }

    // The overlay as a whole is on while one of its parts is. `captureKey`: whether snapshots show it, null for no
    // choice.
    template <class Parts> std::int64_t render(Overlay overlay, const Parts& parts, const char* captureKey = nullptr)
    {
        const auto shown = [this](const Part& part) { return value(part.key) != 0; };
        sum_ += TP_EnableIVS(playId_, overlay, std::any_of(std::begin(parts), std::end(parts), shown) ? 1 : 0);
        for (const Part& part : parts)
            sum_ += TP_RenderPrivateDataEx(playId_, overlay, part.part, value(part.key));
        if (captureKey)
            sum_ += TP_SetOverlayPriInfoFlag(playId_, overlay, value(captureKey));
        return sum_;
    }

private:
    int value(const char* key) const { return parseOptional<int>(params_, key, 0).second; }

    int playId_;
    const QJsonObject& params_;
    std::int64_t sum_ = 0;
};

} // namespace

std::shared_ptr<ErrorBase> setPlayStatParam(int playId, const QJsonObject& params)
{
    OverlaySwitches switches(playId, params);
    const bool refused = switches.enable({Rules, Targets}, "ivsMode") < 0 ||
                         switches.enable({OsdPosition}, "osdPosInfo") < 0 ||
                         switches.enable({OsdPicture}, "osdPicInfo") < 0 || switches.render(Fire, fireParts) < 0 ||
                         switches.render(Temperature, temperatureParts, "captureIncludeTemperatureInfo") < 0;
    if (refused)
        return constructJsonError("setPlayStatParam failed", params, LUMEN_HERE);
    return nullptr;
}

} // namespace quillmark::lumen_deck
