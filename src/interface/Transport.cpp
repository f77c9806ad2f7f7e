#include "src/player/Transport.h"

#include "src/interface/Export.h"
#include "src/player/IFisheyeModule.h"
#include "src/player/StreamSettings.h"

namespace {

using namespace quillmark::lumen_deck;

std::shared_ptr<ErrorBase> stopOrEndDewarp(QWidget* mainWindow, const QJsonDocument& args)
{
    return correctionTypeOf(mainWindow) != 0 ? findFisheyeModule(mainWindow)->setJsonParam(FisheyeStop, args)
                                             : stop(mainWindow, args);
}

} // namespace

LUMEN_EXPORT_WD(LD_Stop, stopOrEndDewarp)
LUMEN_EXPORT_WD(LD_Pause, pause)
LUMEN_EXPORT_WD(LD_Fast, fast)
LUMEN_EXPORT_WD(LD_Slow, slow)
LUMEN_EXPORT_WD(LD_Resume, resume)
LUMEN_EXPORT_WD(LD_FrameForward, frameForward)
LUMEN_EXPORT_WD(LD_QueryPlayStatus, queryPlayStatus)
LUMEN_EXPORT_WD(LD_SetTrsPlayBackParam, setTrsPlayBackParam)
LUMEN_EXPORT_WD(LD_SetReconnectInfo, setReconnectInfo)
LUMEN_EXPORT_WD(LD_SetHttps, setHttps)
LUMEN_EXPORT_W(LD_StopRealPlayAll, stopAll)
