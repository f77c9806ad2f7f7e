#include "tests/double/EngineDouble.h"

#include "tests/double/Recorder.h"
#include "tests/double/Streams.h"

using namespace engine_double;

int TP_InitLib(const char* dir)
{
    return record("TP_InitLib", dir);
}

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

int TP_WndResolutionChange(TP_WId window)
{
    return record("TP_WndResolutionChange", window);
}

int TP_SetDisplayBuf(int frames)
{
    return record("TP_SetDisplayBuf", frames);
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

int TP_Pause(int playId)
{
    return record("TP_Pause", playId);
}

int TP_Resume(int playId)
{
    return record("TP_Resume", playId);
}

int TP_Fast(int playId)
{
    return record("TP_Fast", playId);
}

int TP_Slow(int playId)
{
    return record("TP_Slow", playId);
}

int TP_FrameForward(int playId)
{
    return record("TP_FrameForward", playId);
}

float TP_GetScale(int playId)
{
    auto scale = static_cast<float>(record("TP_GetScale", playId));
    fill("TP_GetScale", &scale);
    return scale;
}

int TP_GetPictureSize(int playId, int* width, int* height)
{
    fill("TP_GetPictureSize", width, height);
    return record("TP_GetPictureSize", playId, width, height);
}

int TP_SetReconnectInfo(int playId, const char* auth)
{
    return record("TP_SetReconnectInfo", playId, auth);
}

int TP_SetDisplayRegion(int playId, int reserved, const _TP_REGION* region, TP_WId window, int enable)
{
    return record("TP_SetDisplayRegion", playId, reserved, region, window, enable);
}

int TP_RigisterDrawFun(int playId, TP_DrawFun fn, void* user)
{
    const int result = record("TP_RigisterDrawFun", playId, fn, user);
    if (result >= 0)
        setDrawHook(playId, [=](void* drawContext) { fn(playId, drawContext, user); });
    return result;
}

int TP_EnableIVS(int playId, int selector, int enable)
{
    return record("TP_EnableIVS", playId, selector, enable);
}

int TP_RenderPrivateDataEx(int playId, int selector, int part, int enable)
{
    return record("TP_RenderPrivateDataEx", playId, selector, part, enable);
}

int TP_SetOverlayPriInfoFlag(int playId, int selector, int enable)
{
    return record("TP_SetOverlayPriInfoFlag", playId, selector, enable);
}

int TP_RegAdditionFun(int playId, int type, TP_AdditionFun fn, void* user)
{
    const int result = record("TP_RegAdditionFun", playId, type, fn, user);
    if (result >= 0 && fn)
        setAdditionHook(playId, [=](TP_ADDITION_DATA_INFO* info) { fn(playId, info, user); });
    else if (result >= 0)
        setAdditionHook(playId, nullptr);
    return result;
}

int TP_JPEGCapture(int playId, const char* path)
{
    return record("TP_JPEGCapture", playId, path);
}

int TP_BMPCapture(int playId, const char* path)
{
    return record("TP_BMPCapture", playId, path);
}

int TP_GetOSDTime(int playId, _TP_OSDTIME* time)
{
    fill("TP_GetOSDTime", &time->year, &time->month, &time->day, &time->hour, &time->minute, &time->second);
    return record("TP_GetOSDTime", playId, time);
}

int TP_StartSave(int playId, const char* path, int packageType)
{
    return record("TP_StartSave", playId, path, packageType);
}

int TP_StopSave(int playId)
{
    return record("TP_StopSave", playId);
}

int TP_SwitchFile(int playId, const char* path)
{
    return record("TP_SwitchFile", playId, path);
}

int TP_GetRecordFileSize(int playId)
{
    return record("TP_GetRecordFileSize", playId);
}

int TP_OpenSound(int playId)
{
    return record("TP_OpenSound", playId);
}

int TP_CloseSound()
{
    return record("TP_CloseSound");
}

int TP_SetVolume(int playId, unsigned short volume)
{
    return record("TP_SetVolume", playId, volume);
}

int TP_GetVolume(int playId)
{
    return record("TP_GetVolume", playId);
}

int TP_StartVoiceTalk(const char* openUrl, const char* closeUrl, const char* dataUrl, const char* auth, int audioType,
                      int bitRate, int sampleRate, int soundChannel, int deviceCastChannelNum)
{
    return recordId("TP_StartVoiceTalk", openUrl, closeUrl, dataUrl, auth, audioType, bitRate, sampleRate, soundChannel,
                    deviceCastChannelNum);
}

int TP_StopVoiceTalk(int talkId)
{
    return record("TP_StopVoiceTalk", talkId);
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

int TP_FEC_GetParam(int realPlayId, int viewId, _TP_FISHEYEPARAM* param)
{
    fill("TP_FEC_GetParam", &param->mask, &param->x, &param->y, &param->z, &param->angle);
    return record("TP_FEC_GetParam", realPlayId, viewId);
}

int TP_FEC_UpDateParam(int realPlayId, int viewId, const _TP_FISHEYEPARAM* param)
{
    return record("TP_FEC_UpDateParam", realPlayId, viewId, param);
}

int TP_FEC_SetDrawType(int realPlayId, int drawType)
{
    return record("TP_FEC_SetDrawType", realPlayId, drawType);
}

int TP_FEC_SetFinshDraw(int realPlayId, int viewId)
{
    return record("TP_FEC_SetFinshDraw", realPlayId, viewId);
}

int TP_FEC_IsInFinshDraw(int realPlayId, int* viewId, float x, float y)
{
    fill("TP_FEC_IsInFinshDraw", viewId);
    return record("TP_FEC_IsInFinshDraw", realPlayId, viewId, x, y);
}

int TP_FEC_PTZ2WindowEx(int realPlayId, int viewId, int ownViewId, const _TP_PTZPARAM* start, const _TP_PTZPARAM* from,
                        const _TP_PTZPARAM* to, float* x, float* y)
{
    fill("TP_FEC_PTZ2WindowEx", x, y);
    return record("TP_FEC_PTZ2WindowEx", realPlayId, viewId, ownViewId, start, from, to, x, y);
}

int TP_FEC_TestScan(int realPlayId, int viewId, float* x, float* y, int placeType, float step)
{
    fill("TP_FEC_TestScan", x, y);
    return record("TP_FEC_TestScan", realPlayId, viewId, x, y, placeType, step);
}

int TP_FEC_CapturePIC(int isBmp, int playId, int viewId, const char* path)
{
    return record("TP_FEC_CapturePIC", isBmp, playId, viewId, path);
}

int TP_StartFishListener(const char* url, const char* auth, const char* extData)
{
    return recordId("TP_StartFishListener", url, auth, extData);
}

int TP_StopFishListener(int listenerId)
{
    return record("TP_StopFishListener", listenerId);
}

int TP_SetFishMsgCallBack(TP_FishMsgFun fn)
{
    setFishMessageHandler(fn);
    return record("TP_SetFishMsgCallBack", fn);
}

int TP_SR_Rotate(int playId, const _TP_SRTRANSFER* transfer)
{
    return record("TP_SR_Rotate", playId, transfer);
}

int TP_SetSecretKey(int keyType, const char* key)
{
    return record("TP_SetSecretKey", keyType, key);
}

int TP_Encrypt(int type, const char* text, char* out, int* outLength, int reserved, bool encrypted)
{
    copyText("TP_Encrypt", out);
    fill("TP_Encrypt", outLength);
    return record("TP_Encrypt", type, text, out, outLength, reserved, encrypted);
}

int TP_Decrypt(int type, const char* text, char* out, int* outLength, int reserved, bool encrypted)
{
    copyText("TP_Decrypt", out);
    fill("TP_Decrypt", outLength);
    return record("TP_Decrypt", type, text, out, outLength, reserved, encrypted);
}

int TP_StartAsynUpload(const char* uploadUrl, const char* statusUrl, const char* auth, const char* path,
                       const char* pReserve, int iReserve)
{
    return recordId("TP_StartAsynUpload", uploadUrl, statusUrl, auth, path, pReserve, iReserve);
}

int TP_StopAsynUpload(int uploadId)
{
    return record("TP_StopAsynUpload", uploadId);
}

int TP_GetUploadErrorInfo(int uploadId, char* buffer)
{
    copyText("TP_GetUploadErrorInfo", buffer);
    return record("TP_GetUploadErrorInfo", uploadId, buffer);
}

int TP_GetIpcImportErrorInfo(char* buffer)
{
    copyText("TP_GetIpcImportErrorInfo", buffer);
    return record("TP_GetIpcImportErrorInfo", buffer);
}

int TP_GetHTTPErrorInfo(char* buffer, int size)
{
    copyText("TP_GetHTTPErrorInfo", buffer);
    return record("TP_GetHTTPErrorInfo", buffer, size);
}

int TP_ImportDeviceConfig(const char* uploadUrl, const char* auth, const char* path)
{
    return record("TP_ImportDeviceConfig", uploadUrl, auth, path);
}

int TP_ExportDeviceConfig(const char* downloadUrl, const char* auth, const char* path)
{
    return record("TP_ExportDeviceConfig", downloadUrl, auth, path);
}

int TP_Upload(const char* uploadUrl, const char* auth, const char* path, const char* contentType, int iReserve)
{
    return record("TP_Upload", uploadUrl, auth, path, contentType, iReserve);
}

int TP_StartDownload(const char* downloadUrl, const char* auth, const char* path, const char* downloadXml)
{
    return recordId("TP_StartDownload", downloadUrl, auth, path, downloadXml);
}

int TP_StartDownloadEx(const char* downloadUrl, const char* auth, const char* path, int packageType,
                       const char* downloadXml)
{
    return recordId("TP_StartDownloadEx", downloadUrl, auth, path, packageType, downloadXml);
}

int TP_StopDownload(int downloadId)
{
    return record("TP_StopDownload", downloadId);
}

int TP_GetDownloadStatus(int downloadId, int* status, int* progress)
{
    fill("TP_GetDownloadStatus", status, progress);
    return record("TP_GetDownloadStatus", downloadId, status, progress);
}

int TP_StartUpgrade(const char* upgradeUrl, const char* statusUrl, const char* auth, const char* path,
                    const char* upgradeFlag, const char* pReserve)
{
    return recordId("TP_StartUpgrade", upgradeUrl, statusUrl, auth, path, upgradeFlag, pReserve);
}

int TP_StopUpgrade(int upgradeId)
{
    return record("TP_StopUpgrade", upgradeId);
}

int TP_UpgradeStatus(int upgradeId, int* status, int* progress)
{
    fill("TP_UpgradeStatus", status, progress);
    return record("TP_UpgradeStatus", upgradeId, status, progress);
}
