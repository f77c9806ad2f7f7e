#include "tests/double/EngineDouble.h"

#include "tests/double/Recorder.h"

using namespace engine_double;

// Most functions only say what they were called with, some after what the test gave has been put into the out parameters.
#define RECORDED_BY(recorder, giving, name, parameters, ...)                                                           \
    int name parameters                                                                                                \
    {                                                                                                                  \
        giving;                                                                                                        \
        return recorder(#name, __VA_ARGS__);                                                                           \
    }
#define RECORDED(name, parameters, ...) RECORDED_BY(record, (void)0, name, parameters, __VA_ARGS__)
#define RECORDED_WITH_ID(name, parameters, ...) RECORDED_BY(recordId, (void)0, name, parameters, __VA_ARGS__)
#define RECORDED_GIVEN(giving, name, parameters, ...) RECORDED_BY(record, giving, name, parameters, __VA_ARGS__)

// clang-format off
RECORDED(TP_InitLib, (const char* dir), dir)
RECORDED(TP_WndResolutionChange, (TP_WId window), window)
RECORDED(TP_SetDisplayBuf, (int frames), frames)
RECORDED(TP_Pause, (int playId), playId)
RECORDED(TP_Resume, (int playId), playId)
RECORDED(TP_Fast, (int playId), playId)
RECORDED(TP_Slow, (int playId), playId)
RECORDED(TP_FrameForward, (int playId), playId)
RECORDED(TP_SetReconnectInfo, (int playId, const char* auth), playId, auth)
RECORDED(TP_SetDisplayRegion,
    (int playId, int reserved, const _TP_REGION* region, TP_WId window, int enable),
    playId, reserved, region, window, enable)
RECORDED(TP_EnableIVS, (int playId, int selector, int enable), playId, selector, enable)
RECORDED(TP_RenderPrivateDataEx, (int playId, int selector, int part, int enable), playId, selector, part, enable)
RECORDED(TP_RegAdditionFun, (int playId, int type, TP_AdditionFun fn, void* user), playId, type, fn, user)
RECORDED(TP_SetOverlayPriInfoFlag, (int playId, int selector, int enable), playId, selector, enable)
RECORDED(TP_JPEGCapture, (int playId, const char* path), playId, path)
RECORDED(TP_BMPCapture, (int playId, const char* path), playId, path)
RECORDED(TP_StartSave, (int playId, const char* path, int packageType), playId, path, packageType)
RECORDED(TP_StopSave, (int playId), playId)
RECORDED(TP_SwitchFile, (int playId, const char* path), playId, path)
RECORDED(TP_GetRecordFileSize, (int playId), playId)
RECORDED(TP_OpenSound, (int playId), playId)
RECORDED(TP_SetVolume, (int playId, unsigned short volume), playId, volume)
RECORDED(TP_GetVolume, (int playId), playId)
RECORDED_WITH_ID(TP_StartVoiceTalk,
    (const char* openUrl, const char* closeUrl, const char* dataUrl, const char* auth, int audioType,
     int bitRate, int sampleRate, int soundChannel, int deviceCastChannelNum),
    openUrl, closeUrl, dataUrl, auth, audioType, bitRate, sampleRate, soundChannel, deviceCastChannelNum)
RECORDED(TP_StopVoiceTalk, (int talkId), talkId)
RECORDED(TP_FEC_UpDateParam, (int realPlayId, int viewId, const _TP_FISHEYEPARAM* param), realPlayId, viewId, param)
RECORDED(TP_FEC_SetDrawType, (int realPlayId, int drawType), realPlayId, drawType)
RECORDED(TP_FEC_SetFinshDraw, (int realPlayId, int viewId), realPlayId, viewId)
RECORDED(TP_FEC_CapturePIC, (int isBmp, int playId, int viewId, const char* path), isBmp, playId, viewId, path)
RECORDED_WITH_ID(TP_StartFishListener, (const char* url, const char* auth, const char* extData), url, auth, extData)
RECORDED(TP_StopFishListener, (int listenerId), listenerId)
RECORDED(TP_SR_Rotate, (int playId, const _TP_SRTRANSFER* transfer), playId, transfer)
RECORDED(TP_SetSecretKey, (int keyType, const char* key), keyType, key)
RECORDED_WITH_ID(TP_StartAsynUpload,
    (const char* uploadUrl, const char* statusUrl, const char* auth, const char* path, const char* pReserve,
     int iReserve),
    uploadUrl, statusUrl, auth, path, pReserve, iReserve)
RECORDED(TP_StopAsynUpload, (int uploadId), uploadId)
RECORDED(TP_ImportDeviceConfig, (const char* uploadUrl, const char* auth, const char* path), uploadUrl, auth, path)
RECORDED(TP_ExportDeviceConfig, (const char* downloadUrl, const char* auth, const char* path), downloadUrl, auth, path)
RECORDED(TP_Upload,
    (const char* uploadUrl, const char* auth, const char* path, const char* contentType, int iReserve),
    uploadUrl, auth, path, contentType, iReserve)
RECORDED_WITH_ID(TP_StartDownload,
    (const char* downloadUrl, const char* auth, const char* path, const char* downloadXml),
    downloadUrl, auth, path, downloadXml)
RECORDED_WITH_ID(TP_StartDownloadEx,
    (const char* downloadUrl, const char* auth, const char* path, int packageType, const char* downloadXml),
    downloadUrl, auth, path, packageType, downloadXml)
RECORDED(TP_StopDownload, (int downloadId), downloadId)
RECORDED_WITH_ID(TP_StartUpgrade,
    (const char* upgradeUrl, const char* statusUrl, const char* auth, const char* path,
     const char* upgradeFlag, const char* pReserve),
    upgradeUrl, statusUrl, auth, path, upgradeFlag, pReserve)
RECORDED(TP_StopUpgrade, (int upgradeId), upgradeId)
RECORDED_GIVEN(fill("TP_GetPictureSize", width, height),
    TP_GetPictureSize, (int playId, int* width, int* height), playId, width, height)
RECORDED_GIVEN(
    fill("TP_GetOSDTime", &time->year, &time->month, &time->day, &time->hour, &time->minute, &time->second),
    TP_GetOSDTime, (int playId, _TP_OSDTIME* time), playId, time)
RECORDED_GIVEN(fill("TP_FEC_GetParam", &param->mask, &param->x, &param->y, &param->z, &param->angle),
    TP_FEC_GetParam, (int realPlayId, int viewId, _TP_FISHEYEPARAM* param), realPlayId, viewId)
RECORDED_GIVEN(fill("TP_FEC_IsInFinshDraw", viewId),
    TP_FEC_IsInFinshDraw, (int realPlayId, int* viewId, float x, float y), realPlayId, viewId, x, y)
RECORDED_GIVEN(fill("TP_FEC_PTZ2WindowEx", x, y), TP_FEC_PTZ2WindowEx,
    (int realPlayId, int viewId, int ownViewId, const _TP_PTZPARAM* start, const _TP_PTZPARAM* from,
     const _TP_PTZPARAM* to, float* x, float* y),
    realPlayId, viewId, ownViewId, start, from, to, x, y)
RECORDED_GIVEN(fill("TP_FEC_TestScan", x, y), TP_FEC_TestScan,
    (int realPlayId, int viewId, float* x, float* y, int placeType, float step),
    realPlayId, viewId, x, y, placeType, step)
RECORDED_GIVEN((copyText("TP_Encrypt", out), fill("TP_Encrypt", outLength)), TP_Encrypt,
    (int type, const char* text, char* out, int* outLength, int reserved, bool encrypted),
    type, text, out, outLength, reserved, encrypted)
RECORDED_GIVEN((copyText("TP_Decrypt", out), fill("TP_Decrypt", outLength)), TP_Decrypt,
    (int type, const char* text, char* out, int* outLength, int reserved, bool encrypted),
    type, text, out, outLength, reserved, encrypted)
RECORDED_GIVEN(copyText("TP_GetUploadErrorInfo", buffer),
    TP_GetUploadErrorInfo, (int uploadId, char* buffer), uploadId, buffer)
RECORDED_GIVEN(copyText("TP_GetIpcImportErrorInfo", buffer), TP_GetIpcImportErrorInfo, (char* buffer), buffer)
RECORDED_GIVEN(copyText("TP_GetHTTPErrorInfo", buffer),
    TP_GetHTTPErrorInfo, (char* buffer, int size), buffer, size)
RECORDED_GIVEN(fill("TP_GetDownloadStatus", status, progress),
    TP_GetDownloadStatus, (int downloadId, int* status, int* progress), downloadId, status, progress)
RECORDED_GIVEN(fill("TP_UpgradeStatus", status, progress),
    TP_UpgradeStatus, (int upgradeId, int* status, int* progress), upgradeId, status, progress)
// clang-format on

unsigned TP_GetLastError()
{
    return scriptedError();
}

int TP_SetMessageHandler(TP_MessageHandler handler, void* user)
{
    const int result = record("TP_SetMessageHandler", handler, user);
    if (result == 0)
        setMessageHandler(handler, user);
    return result;
}

int TP_Play(const char* url, const char* auth, int protocol, TP_WId window, const char* startTime, const char* stopTime,
            int correctionType, const void* transParam, const void* eagleEye, int playGroup)
{
    return opened(recordId("TP_Play", url, auth, protocol, window, startTime, stopTime, correctionType,
                           bytesAsText(transParam, sizeof(_TP_TRANSPARAM)),
                           bytesAsText(eagleEye, sizeof(_TP_EAGLEEYEPARAM)), playGroup));
}

int TP_ReversePlay(const char* url, const char* auth, int reserved, TP_WId window, const char* startTime,
                   const char* stopTime)
{
    return opened(recordId("TP_ReversePlay", url, auth, reserved, window, startTime, stopTime));
}

int TP_Stop(int playId)
{
    return closed(playId, record("TP_Stop", playId));
}

float TP_GetScale(int playId)
{
    auto scale = static_cast<float>(record("TP_GetScale", playId));
    fill("TP_GetScale", &scale);
    return scale;
}

int TP_RigisterDrawFun(int playId, TP_DrawFun fn, void* user)
{
    const int result = record("TP_RigisterDrawFun", playId, fn, user);
    if (result >= 0)
        setDrawHook(playId, [=](void* drawContext) { fn(playId, drawContext, user); });
    return result;
}

int TP_CloseSound()
{
    return record("TP_CloseSound");
}

int TP_FEC_Play(int realPlayId, TP_WId window, const _TP_FISHEYEPARAM* param, int placeType, int correctType)
{
    return opened(recordId("TP_FEC_Play", realPlayId, window, param, placeType, correctType), realPlayId);
}

int TP_FECRigisterDrawFun(int realPlayId, int viewId, TP_FECDrawFun fn, void* user)
{
    const int result = record("TP_FECRigisterDrawFun", realPlayId, viewId, fn, user);
    if (result >= 0)
        setDrawHook(viewId, [=](void* drawContext) { fn(user, 0, 0, drawContext, 0, 0); });
    return result;
}

int TP_SetFishMsgCallBack(TP_FishMsgFun fn)
{
    setFishMessageHandler(fn);
    return record("TP_SetFishMsgCallBack", fn);
}
