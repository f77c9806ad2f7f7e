#include "src/player/Play.h"

#include "src/interface/Export.h"
#include "src/local_info.h"
#include "src/player/IFisheyeModule.h"
#include "src/util/JsonUtil.h"

namespace {

using namespace quillmark::lumen_deck;

// What the user's settings say of a play, in place of what the request says.
QJsonObject playStatParam()
{
    QJsonObject params;
    for (const char* key :
         {"buffNumberType", "protocolType", "ivsMode", "osdPosInfo", "osdPicInfo", "showFireBox", "showFireDistance",
          "showFireMaxTemperature", "showFireMaxTemperaturePos", "showTemperatureBox", "showTemperatureLine",
          "showTemperaturePoint", "captureIncludeTemperatureInfo"})
        params[key] = LocalInfo().GetLocalInfo(key).toInt();
    return params;
}

QJsonDocument withSettings(const QJsonDocument& args)
{
    QJsonObject request = args.object();
    return QJsonDocument(assign(request, playStatParam()));
}

// With any other correction type than 0 the fisheye module plays, by the streams' own function.
std::shared_ptr<ErrorBase> playOrDewarp(QWidget* mainWindow, const QJsonDocument& args)
{
    const QJsonDocument request = withSettings(args);
    return correctionTypeOf(mainWindow) != 0 ? findFisheyeModule(mainWindow)->setJsonParam(FisheyePlay, request)
                                             : play(mainWindow, request);
}

std::shared_ptr<ErrorBase> reverse(QWidget* mainWindow, const QJsonDocument& args)
{
    return reversePlay(mainWindow, withSettings(args));
}

} // namespace

LUMEN_EXPORT_WD(LD_Play, playOrDewarp)
LUMEN_EXPORT_WD(LD_ReversePlay, reverse)
