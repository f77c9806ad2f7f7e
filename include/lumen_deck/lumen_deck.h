/* liblumen_deck: a wall of video windows for a Qt 5 host on Linux.
 *
 * The host hands over one main widget per wall and drives it with the functions below. Requests and answers are JSON
 * documents; events come back through callbacks.
 *
 * Threads.    "Queued" functions may be called from any thread: they run on the main widget's thread and the caller
 *             waits. "Direct" and "Unmoved" ones run on the caller's thread; those that take a widget are called on
 *             the main widget's thread.
 * Ownership.  `args` stays the caller's. A result that is not null belongs to the caller, who frees it with LD_Release
 *             on any thread. A document that a callback receives is borrowed and dies when the callback returns.
 * Failure.    A request either succeeds or changes nothing. Null means success with nothing to report; a document with
 *             the key `errorCode` is an error: {"errorCode", "errorName", "errorMessage", "errorModule", "errorLine"}.
 *             Codes: 500 bad document (plus "json_string"), 501 wrong state, 502 no such window; every other code is
 *             the stream engine's own ("tide_pipe_error_code" repeats it).
 * Windows.    A key `wndIndex` names a window by its index, 0 to 15 in layout order, or by the name of its cell.
 */
#pragma once

#include <QtCore/QJsonDocument>

class QWidget;

#define LUMEN_DECK_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* What an event callback is told. Types 2, 5, 7 and 8 come from the drawing layer. */
enum LD_EventType : int {
    LD_EVENT_SELECTED = 0,       /* a cell became the selected one: {"wndInfo": {"wndIndex": n}} */
    LD_EVENT_DOUBLE_CLICKED = 1, /* {"wndIndex": n} */
    LD_EVENT_SHAPE_FINISHED = 2, /* the shape's own document */
    LD_EVENT_STREAM = 3,         /* {"cmd": "window.onPluginEventHandler", "wndIndex": n, "eventType": code} */
    LD_EVENT_FISHEYE_PTZ = 4,    /* {"cmd": "window.onFisheyePTZInfo", ...} */
    LD_EVENT_MOUSE = 5,          /* {"wndIndex": n, "eventType": kind, "point": [x, y], "delta": wheel only} */
    LD_EVENT_RESERVED = 6,       /* never sent */
    LD_EVENT_SHAPE_CHOSEN = 7,   /* {"event": "choosed", "id": n, "type": word} */
    LD_EVENT_DRAWING_ENDED = 8   /* {"event": "drawEnd", "id": n, "type": word} */
};

/* Runs on the thread that the event arises on: the main thread for all types but 3 and 4, which may come from a thread
 * of the stream engine. It must return promptly. `document` is borrowed. */
typedef void (*LD_EventCallback)(LD_EventType type, QWidget* mainWindow, const QJsonDocument* document);

/* Life, events, window accessors */
LUMEN_DECK_API QJsonDocument* LD_Initialize(QWidget* mainWindow);
LUMEN_DECK_API QJsonDocument* LD_Uninitialize(QWidget* mainWindow);
LUMEN_DECK_API void LD_Release(void* document);
LUMEN_DECK_API LD_EventCallback LD_InstallEventCallback(LD_EventType type, LD_EventCallback callback);
LUMEN_DECK_API void LD_HideWindow(QWidget* mainWindow, int index);
LUMEN_DECK_API void LD_ShowWindow(QWidget* mainWindow, int index);
LUMEN_DECK_API bool LD_IsWindowHidden(QWidget* mainWindow, int index);
LUMEN_DECK_API int LD_WindowCount(QWidget* mainWindow);
LUMEN_DECK_API bool LD_IsWindowPlaying(QWidget* mainWindow, int index);
LUMEN_DECK_API int LD_WndResolutionChange(const QWidget* window);

/* Layout and arrangement */
LUMEN_DECK_API QJsonDocument* LD_SetLayout(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_ArrangeWindow(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetWndResolution(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetWndRatioMode(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_QueryLayout(QWidget* mainWindow);

/* Play */
LUMEN_DECK_API QJsonDocument* LD_Play(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_ReversePlay(QWidget* mainWindow, const QJsonDocument* args);

/* Transport */
LUMEN_DECK_API QJsonDocument* LD_Stop(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_Pause(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_Fast(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_Slow(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_Resume(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_FrameForward(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_QueryPlayStatus(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetTrsPlayBackParam(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetReconnectInfo(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetHttps(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StopRealPlayAll(QWidget* mainWindow);

/* Pictures and on-screen time */
LUMEN_DECK_API QJsonDocument* LD_GetOSDTime(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_Snapshot(QWidget* mainWindow, const QJsonDocument* args);

/* Recording */
LUMEN_DECK_API QJsonDocument* LD_StartSave(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StopSave(QWidget* mainWindow, const QJsonDocument* args);

/* Sound */
LUMEN_DECK_API QJsonDocument* LD_OpenSound(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetVolume(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_CloseSound();

/* Voice talk */
LUMEN_DECK_API QJsonDocument* LD_StartVoiceTalk(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StopVoiceTalk(const QJsonDocument* args);

/* Drawing */
LUMEN_DECK_API QJsonDocument* LD_SetRectInfo(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetPointInfo(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetPolygonInfo(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetDrawStatus(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetTextOverlay(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetLineInfo(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_ClearShapeByType(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_ClearShapeById(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SelectShape(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetDrawCallback(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetDrawShapeInfo(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetGridInfo(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetPolygonInfo(QWidget* mainWindow);
LUMEN_DECK_API QJsonDocument* LD_GetTextOverlay(QWidget* mainWindow);
LUMEN_DECK_API QJsonDocument* LD_GetLineInfo(QWidget* mainWindow);
LUMEN_DECK_API QJsonDocument* LD_ClearGraphics(QWidget* mainWindow);
LUMEN_DECK_API QJsonDocument* LD_GetPointInfo(QWidget* mainWindow);
LUMEN_DECK_API QJsonDocument* LD_GetRectInfo(QWidget* mainWindow);
LUMEN_DECK_API QJsonDocument* LD_GetGridInfo(QWidget* mainWindow);

/* Electronic zoom */
LUMEN_DECK_API QJsonDocument* LD_EnableEZoom(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_DisableEZoom(QWidget* mainWindow);

/* Fisheye */
LUMEN_DECK_API QJsonDocument* LD_SetCorrectionType(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetPlaceType(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StartFishListener(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StopFishListener(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetFishBoxListInfo(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetFishBoxListInfo(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_ClearAllWndFishBoxInfo(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetFishWndProperty(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_ArrangeFECWindow(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StartFECScan(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StopFECScan(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_FishEyePTZ(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_FishEyeZoomIn(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_FishEyeZoomOut(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_FishEyeGetPreset(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_FishEyeSetPreset(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StartFECCruise(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StopFECCruise(QWidget* mainWindow, const QJsonDocument* args);

/* Eagle eye */
LUMEN_DECK_API QJsonDocument* LD_SRInit(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SRPTZ(QWidget* mainWindow, const QJsonDocument* args);

/* Local configuration */
LUMEN_DECK_API QJsonDocument* LD_GetLocalConfig(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetLocalConfig(const QJsonDocument* args);

/* Dialogs and string protection */
LUMEN_DECK_API QJsonDocument* LD_OpenFileBrowser(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_OpenDirectory(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetSecretKey(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_SetOriginalString(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetEncryptString(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetDecryptString(const QJsonDocument* args);

/* Uploads and device configuration */
LUMEN_DECK_API QJsonDocument* LD_StartAsynUpload(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StopAsynUpload(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_ImportDeviceConfig(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_ExportDeviceConfig(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_ExportDeviceLog(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_UploadFile(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_Download(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetUploadErrorInfo(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetIpcImportErrorInfo(const QJsonDocument* args);

/* Downloads and upgrade */
LUMEN_DECK_API QJsonDocument* LD_StartUpgrade(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StopUpgrade(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_UpgradeStatus(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_UpgradeProgress(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StartDownload(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StopDownload(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetDownloadProgress(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetDownloadStatus(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetDownloadInfo(const QJsonDocument* args);

#ifdef __cplusplus
}
#endif
