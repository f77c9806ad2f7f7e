#include "src/fisheyemodule.h"

#include "src/interface/Export.h"

namespace {

using namespace quillmark::lumen_deck;

template <FisheyeModuleInterface operation>
std::shared_ptr<ErrorBase> ask(QWidget* mainWindow, const QJsonDocument& args)
{
    return getFisheyeInstance(mainWindow)->setJsonParam(operation, args);
}

// A step in a fixed direction.
template <PTZType direction> std::shared_ptr<ErrorBase> step(QWidget* mainWindow, const QJsonDocument& args)
{
    QJsonObject request = args.object();
    request["direction"] = static_cast<int>(direction);
    return ask<FisheyeStep>(mainWindow, QJsonDocument(request));
}

QJsonDocument boxes(QWidget* mainWindow, const QJsonDocument&)
{
    return getFisheyeInstance(mainWindow)->getPTZList();
}

QJsonDocument preset(QWidget* mainWindow, const QJsonDocument&)
{
    return getFisheyeInstance(mainWindow)->getSubWindowPTZParam();
}

} // namespace

LUMEN_EXPORT_WD(LD_SetCorrectionType, ask<FisheyeSetCorrectionType>)
LUMEN_EXPORT_WD(LD_SetPlaceType, ask<FisheyeSetPlaceType>)
LUMEN_EXPORT_WD(LD_StartFishListener, ask<FisheyeStartListener>)
LUMEN_EXPORT_WD(LD_StopFishListener, ask<FisheyeStopListener>)
LUMEN_EXPORT_WD(LD_SetFishBoxListInfo, ask<FisheyeSetBoxes>)
LUMEN_EXPORT_WD(LD_GetFishBoxListInfo, boxes)
LUMEN_EXPORT_WD(LD_ClearAllWndFishBoxInfo, ask<FisheyeClearBoxes>)
LUMEN_EXPORT_WD(LD_SetFishWndProperty, ask<FisheyeSetWindow>)
LUMEN_EXPORT_WD(LD_ArrangeFECWindow, ask<FisheyeArrange>)
LUMEN_EXPORT_WD(LD_StartFECScan, ask<FisheyeStartScan>)
LUMEN_EXPORT_WD(LD_StopFECScan, ask<FisheyeStopScan>)
LUMEN_EXPORT_WD(LD_FishEyePTZ, ask<FisheyeStep>)
LUMEN_EXPORT_WD(LD_FishEyeZoomIn, step<PTZZoomIn>)
LUMEN_EXPORT_WD(LD_FishEyeZoomOut, step<PTZZoomOut>)
LUMEN_EXPORT_WD(LD_FishEyeGetPreset, preset)
LUMEN_EXPORT_WD(LD_FishEyeSetPreset, ask<FisheyeSetPreset>)
LUMEN_EXPORT_WD(LD_StartFECCruise, ask<FisheyeStartCruise>)
LUMEN_EXPORT_WD(LD_StopFECCruise, ask<FisheyeStopCruise>)
