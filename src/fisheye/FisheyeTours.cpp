#include "src/fisheye/FisheyeWindow.h"

#include <algorithm>
#include <cstdint>
#include <utility>

// Views that move by themselves.
namespace quillmark::lumen_deck {

namespace {

constexpr int kScanTick = 25;  // ms
constexpr int kRoundWait = 10; // ms, before a cruise begins anew

int dwellOf(const FisheyePTZCruise& place)
{
    constexpr std::int64_t longest = 2'000'000'000; // 23 days; Qt rounds a timer up, and beyond an int it turns over
    return static_cast<int>(std::clamp<std::int64_t>(std::int64_t(place.time) * 1000, 0, longest));
}

} // namespace

int FisheyeWindow::startScan(float step, int placeType)
{
    _TP_FISHEYEPARAM param{};
    if (correctType_ != kCorrectView || !softwarePlay_ || getFisheyeParam(&param) < 0)
        return -1;
    scanStart_ = {param.x, param.y};
    scanStep_ = step;
    scanPlace_ = placeType;
    scanTimer_.start(kScanTick, Qt::CoarseTimer, this);
    return 0;
}

// The engine knows how far the scan has come: it is asked from the start position each time.
void FisheyeWindow::scan()
{
    _TP_FISHEYEPARAM param{};
    param.x = scanStart_.x;
    param.y = scanStart_.y;
    if (TP_FEC_TestScan(realPlayId_, getPlayerId(), &param.x, &param.y, scanPlace_, scanStep_) != 0)
        return;
    param.mask = FisheyePositionField;
    setFisheyeParam(&param);
}

int FisheyeWindow::startCruise(std::vector<FisheyePTZCruise> list)
{
    stopCruise();
    cruiseList_ = std::move(list);
    cruiseCursor_ = 0;
    return cruisePTZ() < 0 ? -1 : 0;
}

int FisheyeWindow::cruisePTZ()
{
    if (cruiseCursor_ >= cruiseList_.size()) {
        cruiseCursor_ = 0;
        cruiseTimer_.start(kRoundWait, Qt::CoarseTimer, this);
        return 0;
    }
    const FisheyePTZCruise& place = cruiseList_[cruiseCursor_++];
    _TP_FISHEYEPARAM param{};
    param.mask = FisheyeZoomField | FisheyePositionField;
    param.x = place.x;
    param.y = place.y;
    param.z = place.z;
    if (setFisheyeParam(&param) < 0)
        return -1;
    cruiseTimer_.start(dwellOf(place), Qt::CoarseTimer, this);
    return 0;
}

} // namespace quillmark::lumen_deck
