/* libtide_pipe: the stream engine. Plain C11 and C++17; x86-64 System V calling convention. */
#ifndef TIDE_PIPE_H
#define TIDE_PIPE_H

#ifndef __cplusplus
#include <stdbool.h>
#endif

#define TIDE_PIPE_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

typedef unsigned long TP_WId; /* an X11 window, as QWidget::winId() gives it */

/* records */
struct _TP_PTZPARAM { float x, y; };
struct _TP_FISHEYEPARAM { unsigned mask; unsigned char r0[4]; float x, y; unsigned char r1[16];
                          float z, angle; unsigned char color[4]; unsigned char r2[60]; };          /* 104 bytes */
struct _TP_SRTRANSFERELEMENT { float e0, e1, e2, e3; };
struct _TP_SRTRANSFER { struct _TP_SRTRANSFERELEMENT* element; long long reserved; };              /* 16 bytes */
struct _TP_REGION { long long left, top, right, bottom; };
struct _TP_OSDTIME { int year, month, day, hour, minute, second; };
struct TP_ADDITION_DATA_INFO { long long type; long long r0, r1; int length; int r2; void* data; }; /* 40 bytes */
struct _TP_TRANSPARAM { unsigned char r0; unsigned char resolution; unsigned char r1[2];
                        unsigned bitrate, frameRate; unsigned char r2[16]; };                       /* 28 bytes, built by PlayParam */
struct _TP_EAGLEEYEPARAM { bool flag; int mode; int expandType; };                                  /* 12 bytes, built by EagleEyeModule */
struct _TP_FISHMESSAGE { int box, kind, length, r0; void* payload; unsigned char r1[64]; };         /* 88 bytes, read by the fish listener */

/* What happens to a stream later than in the call that caused it; see TP_SetMessageHandler. 21 is never used: it belongs to
 * the library above the engine. */
enum TP_Message {
    TP_MESSAGE_OPENED = 1,         /* the first picture (of a stream without pictures: the first sound) is there */
    TP_MESSAGE_OPEN_FAILED = 2,    /* the source cannot be opened or is no media; network sources are tried again */
    TP_MESSAGE_AUTH_FAILED = 3,    /* the source refuses the credential; waits for TP_SetReconnectInfo */
    TP_MESSAGE_ENDED = 4,          /* the end of the source or the stop time; the last picture stays on show */
    TP_MESSAGE_LOST = 5,           /* a network source broke off or fell silent; it is tried again */
    TP_MESSAGE_RESTORED = 6,       /* after LOST: pictures come again */
    TP_MESSAGE_STANDING_STILL = 7, /* no new picture for three seconds though the stream should move */
    TP_MESSAGE_MOVING_AGAIN = 8,   /* after STANDING_STILL, when the connection itself did not break */
    TP_MESSAGE_SIZE_CHANGED = 9,   /* the picture has another size than before */
    TP_MESSAGE_NOT_DECODABLE = 10, /* no decoder for the pictures of this source */
    TP_MESSAGE_NOT_REVERSIBLE = 11, /* the source cannot be played backwards: live, or without an index */
    TP_MESSAGE_RECORD_FAILED = 30  /* the disk ended a recording; what was written until then is good */
};

/* callbacks */
typedef void (*TP_MessageHandler)(int playId, unsigned message, void* user);
typedef void (*TP_DrawFun)(int playId, void* drawContext, void* user);
typedef void (*TP_FECDrawFun)(void* user, unsigned, unsigned, void* drawContext, unsigned, unsigned);
typedef void (*TP_AdditionFun)(int playId, struct TP_ADDITION_DATA_INFO* info, void* user);
typedef void (*TP_FishMsgFun)(int, int, void* data, unsigned length);

/* life, errors, messages */
TIDE_PIPE_API int TP_InitLib(const char* dir);
TIDE_PIPE_API unsigned TP_GetLastError(void);
TIDE_PIPE_API int TP_SetMessageHandler(TP_MessageHandler handler, void* user);
TIDE_PIPE_API int TP_WndResolutionChange(TP_WId window);

/* streams */
TIDE_PIPE_API int TP_SetDisplayBuf(int frames);
TIDE_PIPE_API int TP_Play(const char* url, const char* auth, int protocol, TP_WId window, const char* startTime, const char* stopTime,
              int correctionType, const void* transParam, const void* eagleEye, int playGroup);
TIDE_PIPE_API int TP_ReversePlay(const char* url, const char* auth, int reserved, TP_WId window, const char* startTime, const char* stopTime);
TIDE_PIPE_API int TP_Stop(int playId);
TIDE_PIPE_API int TP_Pause(int playId);
TIDE_PIPE_API int TP_Resume(int playId);
TIDE_PIPE_API int TP_Fast(int playId);
TIDE_PIPE_API int TP_Slow(int playId);
TIDE_PIPE_API int TP_FrameForward(int playId);
TIDE_PIPE_API float TP_GetScale(int playId);
TIDE_PIPE_API int TP_GetPictureSize(int playId, int* width, int* height);
TIDE_PIPE_API int TP_SetReconnectInfo(int playId, const char* auth);
TIDE_PIPE_API int TP_SetDisplayRegion(int playId, int reserved, const struct _TP_REGION* region, TP_WId window, int enable);
TIDE_PIPE_API int TP_RigisterDrawFun(int playId, TP_DrawFun fn, void* user);
TIDE_PIPE_API int TP_EnableIVS(int playId, int selector, int enable);
TIDE_PIPE_API int TP_RenderPrivateDataEx(int playId, int selector, int part, int enable);
TIDE_PIPE_API int TP_SetOverlayPriInfoFlag(int playId, int selector, int enable);
TIDE_PIPE_API int TP_RegAdditionFun(int playId, int type, TP_AdditionFun fn, void* user);

/* capture, on-screen time, record */
TIDE_PIPE_API int TP_JPEGCapture(int playId, const char* path);
TIDE_PIPE_API int TP_BMPCapture(int playId, const char* path);
TIDE_PIPE_API int TP_GetOSDTime(int playId, struct _TP_OSDTIME* time);
TIDE_PIPE_API int TP_StartSave(int playId, const char* path, int packageType);
TIDE_PIPE_API int TP_StopSave(int playId);
TIDE_PIPE_API int TP_SwitchFile(int playId, const char* path);
TIDE_PIPE_API int TP_GetRecordFileSize(int playId);

/* sound, voice talk */
TIDE_PIPE_API int TP_OpenSound(int playId);
TIDE_PIPE_API int TP_CloseSound(void);
TIDE_PIPE_API int TP_SetVolume(int playId, unsigned short volume);
TIDE_PIPE_API int TP_GetVolume(int playId);
TIDE_PIPE_API int TP_StartVoiceTalk(const char* openUrl, const char* closeUrl, const char* dataUrl, const char* auth, int audioType,
                      int bitRate, int sampleRate, int soundChannel, int deviceCastChannelNum);
TIDE_PIPE_API int TP_StopVoiceTalk(int talkId);

/* fisheye, eagle eye */
TIDE_PIPE_API int TP_FEC_Play(int realPlayId, TP_WId window, const struct _TP_FISHEYEPARAM* param, int placeType, int correctType);
TIDE_PIPE_API int TP_FECRigisterDrawFun(int realPlayId, int viewId, TP_FECDrawFun fn, void* user);
TIDE_PIPE_API int TP_FEC_GetParam(int realPlayId, int viewId, struct _TP_FISHEYEPARAM* param);
TIDE_PIPE_API int TP_FEC_UpDateParam(int realPlayId, int viewId, const struct _TP_FISHEYEPARAM* param);
TIDE_PIPE_API int TP_FEC_SetDrawType(int realPlayId, int drawType);
TIDE_PIPE_API int TP_FEC_SetFinshDraw(int realPlayId, int viewId);
TIDE_PIPE_API int TP_FEC_IsInFinshDraw(int realPlayId, int* viewId, float x, float y);
TIDE_PIPE_API int TP_FEC_PTZ2WindowEx(int realPlayId, int viewId, int ownViewId, const struct _TP_PTZPARAM* start,
                        const struct _TP_PTZPARAM* from, const struct _TP_PTZPARAM* to, float* x, float* y);
TIDE_PIPE_API int TP_FEC_TestScan(int realPlayId, int viewId, float* x, float* y, int placeType, float step);
TIDE_PIPE_API int TP_FEC_CapturePIC(int isBmp, int playId, int viewId, const char* path);
TIDE_PIPE_API int TP_StartFishListener(const char* url, const char* auth, const char* extData);
TIDE_PIPE_API int TP_StopFishListener(int listenerId);
TIDE_PIPE_API int TP_SetFishMsgCallBack(TP_FishMsgFun fn);
TIDE_PIPE_API int TP_SR_Rotate(int playId, const struct _TP_SRTRANSFER* transfer);

/* string protection */
TIDE_PIPE_API int TP_SetSecretKey(int keyType, const char* key);
TIDE_PIPE_API int TP_Encrypt(int type, const char* text, char* out, int* outLength, int reserved, bool encrypted);
TIDE_PIPE_API int TP_Decrypt(int type, const char* text, char* out, int* outLength, int reserved, bool encrypted);

/* transfers */
TIDE_PIPE_API int TP_StartAsynUpload(const char* uploadUrl, const char* statusUrl, const char* auth, const char* path,
                       const char* pReserve, int iReserve);
TIDE_PIPE_API int TP_StopAsynUpload(int uploadId);
TIDE_PIPE_API int TP_GetUploadErrorInfo(int uploadId, char* buffer);
TIDE_PIPE_API int TP_GetIpcImportErrorInfo(char* buffer);
TIDE_PIPE_API int TP_GetHTTPErrorInfo(char* buffer, int size);
TIDE_PIPE_API int TP_ImportDeviceConfig(const char* uploadUrl, const char* auth, const char* path);
TIDE_PIPE_API int TP_ExportDeviceConfig(const char* downloadUrl, const char* auth, const char* path);
TIDE_PIPE_API int TP_Upload(const char* uploadUrl, const char* auth, const char* path, const char* contentType, int iReserve);
TIDE_PIPE_API int TP_StartDownload(const char* downloadUrl, const char* auth, const char* path, const char* downloadXml);
TIDE_PIPE_API int TP_StartDownloadEx(const char* downloadUrl, const char* auth, const char* path, int packageType, const char* downloadXml);
TIDE_PIPE_API int TP_StopDownload(int downloadId);
TIDE_PIPE_API int TP_GetDownloadStatus(int downloadId, int* status, int* progress);
TIDE_PIPE_API int TP_StartUpgrade(const char* upgradeUrl, const char* statusUrl, const char* auth, const char* path,
                    const char* upgradeFlag, const char* pReserve);
TIDE_PIPE_API int TP_StopUpgrade(int upgradeId);
TIDE_PIPE_API int TP_UpgradeStatus(int upgradeId, int* status, int* progress);

#ifdef __cplusplus
}
#endif

#endif
