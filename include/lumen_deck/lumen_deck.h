/* liblumen_deck: a wall of video windows for a Qt 5 host on Linux.
 *
 * A host hands over one main widget per wall and drives it with the functions below. Requests and answers are JSON
 * documents; what happens by itself comes back through callbacks.
 *
 *     LD_InstallEventCallback(LD_EVENT_STREAM, &onStreamEvent);
 *     LD_Release(LD_Initialize(&wall));                              // a wall of one window
 *     const QJsonDocument grid = QJsonDocument::fromJson(R"({"type": 2})");
 *     LD_Release(LD_ArrangeWindow(&wall, &grid));                    // now of 2 by 2
 *     const QJsonDocument play = QJsonDocument::fromJson(R"({"wndIndex": 0, "url": "rtsp://camera/1", "auth": ""})");
 *     QJsonDocument* failure = LD_Play(&wall, &play);                // null: it plays
 *     if (failure)
 *         qWarning() << (*failure)["errorMessage"].toString();
 *     LD_Release(failure);
 *
 * ---- Threads ----
 *
 * Queued    Any thread may call. The body runs on the main widget's thread, in the order of the calls, and the caller
 *           waits for it without a time limit: do not call from a thread that the main thread is waiting for. From the
 *           main widget's thread it runs at once; waiting when that widget or the application goes, it is refused, 501.
 * Direct    The body runs on the caller's thread. Functions that take a widget belong on the main widget's thread then;
 *           the services, which take none, may be called from any thread, several at a time.
 *
 * Each family below says what its functions are, and a function that differs says so itself. LD_Initialize comes first.
 *
 * ---- Documents ----
 *
 * Ownership  `args` stays the caller's and is only read. A result that is not null belongs to the caller, who frees it
 *            with LD_Release, on any thread. A document that a callback gets is borrowed and dies when it returns.
 * Nulls      Null `args` count as an empty document. A null `mainWindow` is answered with 502.
 * Success    A request either succeeds or changes nothing, unless its text says otherwise. Null means success with
 *            nothing to report; functions with something to report say "out:".
 * Keys       stand in the lists below as `name  type, default  meaning`; one without a default is required. Unknown
 *            keys are ignored.
 *                window  a window of the wall: its index, 0 to 15 in the order of the layout, or the name of its cell
 *                        as a text. Windows past the sixteenth have no index, but may have a name.
 *                int     a whole number; a text, a fraction or null reads as 0 and is no error.
 *                number, bool, text, array, object   other types are an error, or where so told count as absent.
 *                colour  a text such as "#ff8000" or "red".
 *                point   [x, y], two numbers from 0 to 1: the play window from its top left to its bottom right.
 *
 * ---- Errors ----
 *
 * An error is an object with the key `errorCode`; no other answer of the families "Layout" to "Eagle eye" has that key.
 *
 *     {"errorCode": 502, "errorName": "reference error", "errorMessage": "play_window reference can not be found",
 *      "errorModule": "src/player/Requests", "errorLine": 31}
 *
 *     500  "json error": the document does not say what it should. `json_string` holds the offending part. Among them
 *              "an required field is missing from json object, required key is KEY"
 *              "error retrieving an optional field KEY, type mismatch, required type is TYPE"
 *              "error parsing refence key KEY, type mismatch, type required is int, std::size_t or QString"
 *     501  "invalid status error": not in this state
 *     502  "reference error": no such window, "play_window reference can not be found"
 *     any other number  "tide_pipe error": the stream engine refused; the number is its code, in `tide_pipe_error_code`
 *          too: 1 bad argument, 2 no such id, 3 not supported, 4 wrong state, 5 no window, 6 no display, 7 cannot be
 *          opened, 8 no picture, 9 cannot be written, 10 sound, 11 HTTP, 12 log-in refused, 13 time-out, 14 protection,
 *          15 too long, 16 no memory, 17 internal; "WHAT, TidePipe Call returns RESULT, TP_GetLastError() returns CODE"
 *
 * The services ("Local configuration" to "Downloads and upgrade") answer in another form, told there.
 */
#pragma once

#include <QtCore/QJsonDocument>

class QWidget;

#define LUMEN_DECK_VERSION_MAJOR 1 /* docs/api-changes.md tells what the numbers promise */
#define LUMEN_DECK_VERSION_MINOR 0
#define LUMEN_DECK_VERSION_PATCH 0
#define LUMEN_DECK_VERSION "1.0.0"
#define LUMEN_DECK_API __attribute__((visibility("default")))

extern "C" {

/* ==== Events =========================================================================================================
 *
 * At most one callback for each type. It gets the main widget that the event belongs to and runs on the thread on which
 * the event arises: the main thread for all types but 3 and 4, which may come from a thread of the stream engine. It
 * must return promptly. On the main thread it may call any function here; elsewhere none that waits for a main thread
 * that waits for it. */
enum LD_EventType : int
{
    /* A cell became the selected one: {"wndInfo": {"wndIndex": n}} */
    LD_EVENT_SELECTED = 0,

    /* The left button was double-clicked in a cell: {"wndIndex": n} */
    LD_EVENT_DOUBLE_CLICKED = 1,

    /* A shape drawn after LD_SetDrawCallback is finished: the shape as LD_Get...Info reports it. A point comes twice,
     * when the button goes down and when it comes up. */
    LD_EVENT_SHAPE_FINISHED = 2,

    /* A stream or a recording: {"cmd": "window.onPluginEventHandler", "wndIndex": n, "eventType": code}
     * `wndIndex` is -1 for a window that is not in the layout at present.
     *      1 the first picture is there        5 connection lost, tried again       9 the picture has another size
     *      2 cannot be opened                  6 connection restored               10 pictures cannot be decoded
     *      3 log-in refused, see               7 the picture stands still          11 cannot be played backwards
     *        LD_SetReconnectInfo               8 the picture moves again           21 disk nearly full, recording ended
     *      4 end of the recording                                                  30 recording ended by a write error
     *   1000 to 1999: the picture of a live stream is (code - 1000) tenths of a second older than what has come; told
     *        when that has changed by half a second or more, so not at all of a stream that is in time
     * Further codes may come; ignore those you do not know. */
    LD_EVENT_STREAM = 3,

    /* The user turned a fisheye picture that the device expands:
     * {"cmd": "window.onFisheyePTZInfo", "fishEyePTZInfo": {"type": 0 drag, 1 wheel up, 2 wheel down; "windowType":
     * role of the window, "id": its number, "trackId": n, "pointId": n counting up, "position": [x, y],
     * "originPosition": [x, y]}} */
    LD_EVENT_FISHEYE_PTZ = 4,

    /* The mouse in the wall while the selected window plays: {"wndIndex": n, "eventType": kind, "point": [x, y]}
     * `point` is relative to the cell of the selected window. Kinds: 1 left down, 2 left double click, 3 left up, 4
     * right down, 5 right up, 6 move, 7 move with the left button held, 8 wheel while zooming, which has "delta" in
     * place of "point". Events of one kind come at most every 200 ms. */
    LD_EVENT_MOUSE = 5,

    LD_EVENT_RESERVED = 6, /* never sent */

    /* A shape was chosen by the mouse: {"event": "choosed", "id": n, "type": "Rectangle", "Polygon" or "Line"} */
    LD_EVENT_SHAPE_CHOSEN = 7,

    /* A shape drawn after LD_SetDrawShapeInfo is finished: {"event": "drawEnd", "id": n, "type": "Rect", "Polygon" or
     * "Line"} */
    LD_EVENT_DRAWING_ENDED = 8
};

typedef void (*LD_EventCallback)(LD_EventType type, QWidget* mainWindow, const QJsonDocument* document);

/* ==== Life and window accessors ======================================================================================
 *
 * Direct, on the main widget's thread; LD_Release and LD_InstallEventCallback on any. An index that no window has does
 * nothing. */

/* Makes `mainWindow` a wall of one window, which is selected. The first call of the process starts the stream engine.
 * May be called for several main widgets; each must have no QLayout of its own. For a widget that is a wall already it
 * sets that layout anew.
 * errors: the engine's error if it does not start: the wall is there all the same, and nothing plays in it; 501 on
 *         another thread than the widget's, or for a widget with a layout of its own */
LUMEN_DECK_API QJsonDocument* LD_Initialize(QWidget* mainWindow);

/* Changes nothing and returns null: windows and streams live until their main widget is deleted. */
LUMEN_DECK_API QJsonDocument* LD_Uninitialize(QWidget* mainWindow);

/* Frees a document that a function here has returned. Null does nothing. */
LUMEN_DECK_API void LD_Release(void* document);

/* Sets the callback of an event type; null takes it off. Returns the one before, or null. */
LUMEN_DECK_API LD_EventCallback LD_InstallEventCallback(LD_EventType type, LD_EventCallback callback);

/* A hidden window keeps its stream. While one single window is visible it fills the whole wall. A new layout shows all
 * windows again. */
LUMEN_DECK_API void LD_HideWindow(QWidget* mainWindow, int index);
LUMEN_DECK_API void LD_ShowWindow(QWidget* mainWindow, int index);
LUMEN_DECK_API bool LD_IsWindowHidden(QWidget* mainWindow, int index); /* false for no such window */

/* Windows of the layout, the hidden ones too. */
LUMEN_DECK_API int LD_WindowCount(QWidget* mainWindow);

/* A paused window plays. */
LUMEN_DECK_API bool LD_IsWindowPlaying(QWidget* mainWindow, int index); /* false for no such window */

/* Tells the engine that a video window has another size. The wall does so by itself; hosts need it for windows that
 * they resize behind its back. Returns what the engine answers, 0 for success, -1 for null. */
LUMEN_DECK_API int LD_WndResolutionChange(const QWidget* window);

/* ==== Layout =========================================================================================================
 *
 * Queued. */

/* Sets the windows of the wall: an array of at most 1024 cells, or an object with that array under `windows`.
 * in, for each cell, all optional:
 *     left, top         number, 0           where, in fractions of the main widget; no limits, cells may overlap
 *     width, height     number, 0           how large, in the same way
 *     wndIndex          window, its place   the old window that this cell takes over, with its stream and shapes. Where
 *                                           there is none, the last spare window comes back, or a new one is made
 *     name              text, a unique one  the name of the cell
 *     ratio             int, 0              0 fills the cell, 1 is 4:3, 2 is 16:9, 3 the video's own
 *                                           (LD_SetWndResolution), 4 is 1:1; others count as 0
 *     layer             int, 0              cells of layer 0 lie above all others, the last one on top
 *     dragable          bool, false         the user may drag the cell within the wall
 *     border_color      colour, "#ffcc00"   of the frame of the selected cell
 *     background_color  colour, "#343434"   where no video shows
 *     colspan, rowspan  int, 1              brought into 1 to 16, with no effect on the geometry
 * The place in the array is the index from now on. Windows that no cell takes over become spare: they are hidden, and
 * go on playing. The first window becomes the selected one. The main widget becomes one pixel wider, which lays out all
 * cells; give it its size back if it matters.
 * errors: 500 "error setting layout, layout json document should be an array", "error setting layout, layout should be
 *         a one-demension array of object describing the layout", "error setting layout, more than 1024 cells", or
 *         of the first bad key
 *         501 the main widget has a layout of another class */
LUMEN_DECK_API QJsonDocument* LD_SetLayout(QWidget* mainWindow, const QJsonDocument* args);

/* Sets a square grid, or a layout of the host's own.
 * in: custom  array or object, none  a layout as for LD_SetLayout, if it is not empty
 *     type    int                    else: 1, 2, 3 or 4 for 1, 2 by 2, 3 by 3 or 4 by 4 windows, with the ratio that
 *                                    the setting `playWndType` tells
 * errors: 500 "LD_ArrangeWindow only accept type 1,2,3,4"; those of LD_SetLayout */
LUMEN_DECK_API QJsonDocument* LD_ArrangeWindow(QWidget* mainWindow, const QJsonDocument* args);

/* Sets the size of the video for ratio mode 3. Counts from the next change of the cell's size on. No such window:
 * nothing.
 * in: wndIndex  int, from 0 to 15
 *     width     int, pixels
 *     height    int, pixels */
LUMEN_DECK_API QJsonDocument* LD_SetWndResolution(QWidget* mainWindow, const QJsonDocument* args);

/* Sets the ratio mode of a window, as `ratio` of LD_SetLayout. The main widget is resized to an invalid size, so that
 * each cell is fitted anew when the host gives it its size back. No such window: only that.
 * in: wndIndex  int, from 0 to 15
 *     mode      int, 0 to 4; others count as 0 */
LUMEN_DECK_API QJsonDocument* LD_SetWndRatioMode(QWidget* mainWindow, const QJsonDocument* args);

/* out: always an empty document; no layout is reported. */
LUMEN_DECK_API QJsonDocument* LD_QueryLayout(QWidget* mainWindow);

/* ==== Play ===========================================================================================================
 *
 * Queued. Both return as soon as the stream is set going; whether it opens is told by LD_EVENT_STREAM. Settings of the
 * local configuration (buffNumberType, protocolType, ivsMode, osdPosInfo, osdPicInfo, showFire..., showTemperature...,
 * captureIncludeTemperatureInfo) take the place of keys of the same name in the request. */

/* Shows a stream in a window.
 * in: wndIndex          window
 *     url               text       a path; a file:, http:, https:, rtsp: or rtsps: address; or "test:pattern?..."
 *     auth              text       "", "user:password", or an object as text with "user" and "password"
 *     startTime         text, ""   where a recording begins: seconds, "00:01:30", or a date "2026-05-01T10:00:00Z"
 *     stopTime          text, ""   where it ends
 *     protocolType      int, 0     RTSP over 0 TCP, 1 UDP, 2 multicast, 3 UDP and then TCP, 4 HTTP (HTTPS after
 *                                  LD_SetHttps), 5 HTTPS
 *     buffNumberType    int        pictures kept ready: 0 one, 1 three, 2 six, 3 fifteen, 4 as customBuffNumber; others
 *                                  six
 *     customBuffNumber  int, 0
 *     playGroup         int, -1    1 for a stream of the group that plays in step
 * The words of the address tell the kind of the stream, which decides where recordings go: "channels", "quillmark" or
 * "sdk/play/" live, "tracks", "vod" or "sdk/playback" recorded. With "transcoding" in it, the values of
 * LD_SetTrsPlayBackParam go along. In software correction (LD_SetCorrectionType 1) the stream feeds the views of the
 * fisheye arrangement and wndIndex is not looked at.
 * errors: 500 "play descriptor should be an object"
 *         501 "The player is already playing, can not play twice"
 *         502
 *         engine "tide_pipe error call tide_pipe TP_Play error"; "call TP_RigisterDrawFun error": it plays, without
 *         drawing */
LUMEN_DECK_API QJsonDocument* LD_Play(QWidget* mainWindow, const QJsonDocument* args);

/* Plays a recording backwards, without sound.
 * in: wndIndex   window
 *     url, auth, startTime, stopTime   text, all required, as for LD_Play
 * errors: 500 "reverse play json descriptor should be json object"
 *         501 "is player is ready playing, can not play twice"
 *         502
 *         engine "call TP_ReversePlay error", "call TP_RigisterDrawFunc error" */
LUMEN_DECK_API QJsonDocument* LD_ReversePlay(QWidget* mainWindow, const QJsonDocument* args);

/* ==== Transport ======================================================================================================
 *
 * Queued. Each takes {"wndIndex": window} and more where told.
 * errors of each: 500 for a document that is no object, 501 for a window that does not play, 502, and the engine's */

/* Stops the stream, ending its recording first. A window that does not play is no error. */
LUMEN_DECK_API QJsonDocument* LD_Stop(QWidget* mainWindow, const QJsonDocument* args);

/* The picture stands; drawing and zooming on it go on. A second pause succeeds. */
LUMEN_DECK_API QJsonDocument* LD_Pause(QWidget* mainWindow, const QJsonDocument* args);

/* One step up or down along 1/8, 1/4, 1/2, 1, 2, 4, 8 times the speed. Recordings only. */
LUMEN_DECK_API QJsonDocument* LD_Fast(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_Slow(QWidget* mainWindow, const QJsonDocument* args);

/* Goes on playing, after a pause or single frames. */
LUMEN_DECK_API QJsonDocument* LD_Resume(QWidget* mainWindow, const QJsonDocument* args);

/* Shows the next picture and stands there; from then on the wheel turned down over the window steps too. */
LUMEN_DECK_API QJsonDocument* LD_FrameForward(QWidget* mainWindow, const QJsonDocument* args);

/* Asks for the size of the picture.
 * out: {"playInfo": {"pictureSize": {"width": pixels, "height": pixels}}}, or an empty document while there is no
 *      picture */
LUMEN_DECK_API QJsonDocument* LD_QueryPlayStatus(QWidget* mainWindow, const QJsonDocument* args);

/* Sets what a transcoding server should send, from the window's next play of a "transcoding" address on.
 * in: params  object  {"transBitrate": kbit/s, "transResolution": the server's code, "transFrameRate": pictures/s},
 *                     each an int and required */
LUMEN_DECK_API QJsonDocument* LD_SetTrsPlayBackParam(QWidget* mainWindow, const QJsonDocument* args);

/* Sets the credential for the next connection of a stream; one that waits after a refused log-in tries again at once.
 * in: auth  text, as for LD_Play
 * errors: 501 "the player is not playing can not set reconnect info" for a window that has never played */
LUMEN_DECK_API QJsonDocument* LD_SetReconnectInfo(QWidget* mainWindow, const QJsonDocument* args);

/* Switches HTTPS in place of HTTP for protocol 4, for all windows of the wall and their next play. wndIndex is not
 * read.
 * in: https  bool */
LUMEN_DECK_API QJsonDocument* LD_SetHttps(QWidget* mainWindow, const QJsonDocument* args);

/* Stops all windows of the wall, the spare ones too, with their recordings, and puts the fisheye settings back to their
 * start. Never fails. */
LUMEN_DECK_API QJsonDocument* LD_StopRealPlayAll(QWidget* mainWindow);

/* ==== Pictures and on-screen time ====================================================================================
 *
 * Queued. */

/* Asks for the time of the picture on show.
 * in:  wndIndex  window
 * out: {"osdTime": seconds since 1970}
 * errors: 501 "the player is not playing can not get osd time", also for a time that is none; 502; engine "call
 *         TP_GetOSDTime error" */
LUMEN_DECK_API QJsonDocument* LD_GetOSDTime(QWidget* mainWindow, const QJsonDocument* args);

/* Saves the picture on show. The file is named on the caller's thread, then the rest is Queued.
 * in: wndIndex  window
 *     fileName  text  the file becomes FOLDER/yyyy-MM-dd/NAME with ".jpg" or ".bmp" as the setting `captureFileFormat`
 *                     (0, 1) tells. FOLDER is the setting `capturePath`; with "playback_" in the name, which is cut
 *                     out, `playbackPicPath`
 * errors: 500 "Snapshot descriptor should contains key 'fileName' of String", "file format magic number is neither 0
 *         nor 1"
 *         501 "the player is not playing can not capture"; 502; engine "call TP_JPEGCapture error", "call TP_FECCapture
 *         error" */
LUMEN_DECK_API QJsonDocument* LD_Snapshot(QWidget* mainWindow, const QJsonDocument* args);

/* ==== Recording ======================================================================================================
 *
 * Queued. */

/* Records the stream of a window, as it comes, into MP4.
 * in: wndIndex     window
 *     fileName     text    without ending. The file becomes FOLDER/yyyy-MM-dd/fileName.mp4, FOLDER being the setting
 *                          `recordPath` for live streams and `playbackFilePath` for all others
 *     packageType  int, 2  handed to the engine
 * A file that grows past the size that the setting `packgeSize` tells (0: 256,000,000, 1: 512,000,000, else
 * 1,000,000,000 bytes) is followed by another: they are then NAME_1.mp4, NAME_2.mp4 and so on. With less than
 * 1,000,000,000 bytes free on the disk the recording ends, with LD_EVENT_STREAM code 21; where the disk fails, with code
 * 30; where the next file cannot be made, without one.
 * errors: 500 "fileName does not exists"; 501 "the player is not playing can not record"; 502; engine "TP_StartSave
 *         call error" */
LUMEN_DECK_API QJsonDocument* LD_StartSave(QWidget* mainWindow, const QJsonDocument* args);

/* Ends a recording; the file is complete when it returns.
 * in: wndIndex  window
 * errors: 501 "the player is not playing can not stop record"; 502; engine "TP_StopSave call error" */
LUMEN_DECK_API QJsonDocument* LD_StopSave(QWidget* mainWindow, const QJsonDocument* args);

/* ==== Sound ==========================================================================================================
 *
 * One window sounds at a time. Queued, but for LD_CloseSound. */

/* Lets a window sound, in place of the one that did.
 * in: wndIndex  window
 * errors: 501 "the player is not playing, can not open sound"; 502; engine "TP_OpenSound call failed" */
LUMEN_DECK_API QJsonDocument* LD_OpenSound(QWidget* mainWindow, const QJsonDocument* args);

/* in: wndIndex  window
 *     volume    number  0 to 100; what is no number reads as 0
 * errors: 501 "the player is not playing can not set volume"; 502; engine "TP_SetVolume call failed" */
LUMEN_DECK_API QJsonDocument* LD_SetVolume(QWidget* mainWindow, const QJsonDocument* args);

/* Silence. Direct, on any thread; always null. */
LUMEN_DECK_API QJsonDocument* LD_CloseSound();

/* ==== Voice talk =====================================================================================================
 *
 * A two-way talk with a device, apart from all windows. Direct, on any thread. */

/* Opens a talk under a name of the host's own. Waits for the device's answer.
 * in: openUrl, closeUrl, dataUrl   text
 *     auth                         text
 *     audioType                    int
 *     bitRate, sampleRate, soundChannel, deviceCastChannelNum   int, -1: the device's own
 *     uuid                         text  the name for LD_StopVoiceTalk
 * errors: 500 for a bad key, one for `uuid` after the talk has begun: give it always; engine "call tide pipe
 *         TP_StartVoiceTalk error, ..." */
LUMEN_DECK_API QJsonDocument* LD_StartVoiceTalk(const QJsonDocument* args);

/* Ends a talk; one that is not there or has ended is no error.
 * in: uuid  text */
LUMEN_DECK_API QJsonDocument* LD_StopVoiceTalk(const QJsonDocument* args);

/* ==== Drawing ========================================================================================================
 *
 * Each window has shapes over its video: given as documents, or drawn by the user with a tool. Queued, but for the
 * functions marked Direct, which belong on the main widget's thread.
 *
 * Which window: each shape that is given names its own by `wndIndex`; a shape without one, or with one that is not
 * there, goes to the selected window. All functions without `wndIndex` act on the selected window.
 *
 * What shapes have in common:
 *     id         int            required but for grids and names. A shape takes the place of one with the same id and
 *                               kind; -1 stands for no id
 *     drawColor  colour, red    what is no colour counts as absent
 *     tips       text, ""       written beside the shape
 *     editType   int            what the user may do: 0 move and reshape, 1 move, 2 neither; left out, both (points:
 *                               nothing)
 *     fillColor  colour, none   counts only with `translucent` (number, 1.0) of 1.0 or more
 * In arrays the shapes before a faulty one stay. No array, or an empty one, does nothing.
 * errors: 500 for a faulty shape, among them "point descriptor should be json array and should contains at least two
 *         entry of double"; 501 "can not find graphics view of target widget", "internal error can not find graphics
 *         view" when there is no window */

/* in: rectInfo  array of
 *         points           array of 4 points; the first and the third are opposite corners
 *         fillColor, translucent
 *         widthHeightRate  number, 1.0   height to width that resizing holds
 *         tipsPos          int, 0
 * errors: 500 "rectangle descriptor should contains at least four points." */
LUMEN_DECK_API QJsonDocument* LD_SetRectInfo(QWidget* mainWindow, const QJsonDocument* args);

/* in: pointInfo  array of
 *         points  one point
 *         type    text, "circle"; or "cross" */
LUMEN_DECK_API QJsonDocument* LD_SetPointInfo(QWidget* mainWindow, const QJsonDocument* args);

/* in: polygonInfo  array of
 *         points  array of points
 *         closed  bool, true
 *         showWH  bool, false  the letters W and H at the edges
 *         fillColor, translucent */
LUMEN_DECK_API QJsonDocument* LD_SetPolygonInfo(QWidget* mainWindow, const QJsonDocument* args);

/* Switches drawing by the mouse on or off; off keeps the tool for later.
 * in: wndIndex  window, the selected one
 *     enable    bool */
LUMEN_DECK_API QJsonDocument* LD_SetDrawStatus(QWidget* mainWindow, const QJsonDocument* args);

/* Sets the texts over the video. Those of the selected window go first, whatever follows.
 * in: overlayInfo  object
 *         channelName  object, none   name text; enable bool
 *         date         object, none   timeFormat text, "12hour" or another for 24 hours; dateType int, 0 (0 and 2 year
 *                                     first, 1 and 3 month first, 4 and 5 day first); showWeekDay bool, false; enable
 *                                     bool
 *         text         array, none    of: text text; id int; enable bool
 *         minMoveValue, width, height   int, 16, 704, 576: steps of a drag, in pixels of a picture of that size
 *     and in each: point point, [0, 0]; alignment int, 0 (others hold it sideways); wndIndex. One without `enable`
 *     true, or with an empty name, does not show.
 * errors: of the name, the date, or the last text: 500 "can not deduce what kind of text overlay it is" and others */
LUMEN_DECK_API QJsonDocument* LD_SetTextOverlay(QWidget* mainWindow, const QJsonDocument* args);

/* Lines, and with lineType 2 broken lines.
 * in: lineInfo  array of
 *         points          array of 2 points; of any number for broken lines
 *         lineType        int, 0        0 plain, 1 with an arrow head, 2 broken, 3 counting line with crossing arrows,
 *                                       4 with marks; counts only together with direction, but for 2
 *         direction       int           lineType 1 and 4: 0 or 1; 3: 0 one way, 1 the other, 2 both; 2: 0 none, 1, 2
 *     and for lineType 4
 *         demarcationLineWidth    number, none   where the mark stands, as a fraction of the line
 *         showPDCLine             bool, false    the counting strokes, fed by the stream
 *         showShoulderLine        bool, false
 *         cutOffPositions         array of fractions of the line, none
 *     and for broken lines
 *         closed                  bool, true     the drawing has ended */
LUMEN_DECK_API QJsonDocument* LD_SetLineInfo(QWidget* mainWindow, const QJsonDocument* args);

/* Removes shapes of one kind from the selected window; broken lines are lines.
 * in:  type  text          "rect", "polygon", "line", "point", "grid", "all", "choosed" (those that are selected) or
 *                          "allwindows", in any case; another does nothing
 *      id    array, none   only these, for the first four
 * out: for "choosed" {"clearedShapeId": id of the last one, -1 for none} */
LUMEN_DECK_API QJsonDocument* LD_ClearShapeByType(QWidget* mainWindow, const QJsonDocument* args);

/* in: type  text   "rect", "polygon", "line", "point", "grid", or "all" for any kind
 *     id    array  the ids; none removes nothing */
LUMEN_DECK_API QJsonDocument* LD_ClearShapeById(QWidget* mainWindow, const QJsonDocument* args);

/* Marks the shapes with an id as selected and all others as not, whatever their kind.
 * in: type  text  "rect", "polygon", "line" or "point"; another does nothing
 *     id    int   above 0; another selects none */
LUMEN_DECK_API QJsonDocument* LD_SelectShape(QWidget* mainWindow, const QJsonDocument* args);

/* Lets the user draw one shape at a time, with id 666; each comes as LD_EVENT_SHAPE_FINISHED and replaces the one
 * before.
 * in: wndIndex   window, the selected one
 *     enable     bool             false ends it
 *     type       text             "Rect", "Polygon" (of 4 points), "Line" or "Point"
 *     drawType   text             for "Point" only: "circle" or "cross"
 *     drawColor  colour, yellow
 *     display    bool, true       false: the shape goes as soon as it is reported
 * errors: 500 "error setDrawCallback, can not decide which tool to use"; 501 "can not find graphics view" */
LUMEN_DECK_API QJsonDocument* LD_SetDrawCallback(QWidget* mainWindow, const QJsonDocument* args);

/* Direct. Gives the selected window a tool; it draws once LD_SetDrawStatus has switched drawing on. Ends of drawings
 * come as LD_EVENT_DRAWING_ENDED.
 * in: drawType  text    "Rect", "Polygon", "Line" (a broken line) or "Point"; "Grid" is refused with 500, as a grid is
 *                       given by LD_SetGridInfo; another does nothing
 *     drawInfo  object  of these, all optional:
 *         id                int, -1           of the shape; -1 for many. A tool with an id serves one shape
 *         drawColor         colour, red
 *         tips              text, ""
 *         maxShapeSupport   int, 1            as many without an id
 *         maxPointSupport, minPointSupport    int   Polygon: 11, 3, at least 3; Line: 2, 2, at least 2
 *         fillColor, translucent              Rect, Polygon
 *         redrawMode        int, 0            Rect: 1 lets the user draw it anew
 *         widthHeightRate   number, none      Rect
 *         tipsPos           int, 0            Rect
 *         showWH            bool, false       Polygon
 *         direction         int, 0            Line: 1 or 2 for side arrows
 *         type              text, "circle"    Point; any other is a cross
 *         replace           bool, false       Point: a click moves it
 * errors: 500 "can not set polygon max points less than 3", "can not set polygon max points less than min points" and
 *         their like */
LUMEN_DECK_API QJsonDocument* LD_SetDrawShapeInfo(QWidget* mainWindow, const QJsonDocument* args);

/* Direct. A map of cells over the whole window; one a window.
 * in: gridInfo  object
 *         gridMap     text, ""   hexadecimal, three bytes a row, the first column in the highest bit
 *         gridColNum  int        columns, usually 22
 *         gridRowNum  int        rows, usually 18
 *         drawColor */
LUMEN_DECK_API QJsonDocument* LD_SetGridInfo(QWidget* mainWindow, const QJsonDocument* args);

/* The shapes of the selected window, in the order in which they lie, each as it is now.
 * out: LD_GetPolygonInfo  {"polygonInfo": [{"id", "tips", "points", "closed", "drawColor"}]}
 *      LD_GetLineInfo     {"lineInfo": [...]}: lines {"id", "editType", "lineType", "points", "drawColor", and what
 *                         applies of "direction", "demarcationPoint", "cutOffPositions"}, then broken lines {"id",
 *                         "tips", "points", "closed", "drawColor", "lineType": 2, "direction"}
 *      LD_GetPointInfo    {"pointInfo": [{"id", "point"}]}                          Direct
 *      LD_GetRectInfo     {"rectInfo": [{"id", "points", "tips": "", "drawColor"}]}  Direct
 *      LD_GetGridInfo     {"gridInfo": {"gridMap", "gridColNum", "gridRowNum"}}, or {} without a grid     Direct
 *      LD_GetTextOverlay  {"overlayInfo": {"channelName": {"name"}, "date": {"timeFormat", "showWeekDay"},
 *                         "text": [{"text", "id"}]}}, each with "point", "enable" and "alignment"; the first two only
 *                         if they are there
 * An id of -1 is left out. */
LUMEN_DECK_API QJsonDocument* LD_GetPolygonInfo(QWidget* mainWindow);
LUMEN_DECK_API QJsonDocument* LD_GetTextOverlay(QWidget* mainWindow);
LUMEN_DECK_API QJsonDocument* LD_GetLineInfo(QWidget* mainWindow);

/* Removes all shapes of the selected window. */
LUMEN_DECK_API QJsonDocument* LD_ClearGraphics(QWidget* mainWindow);

/* Direct; see LD_GetPolygonInfo. */
LUMEN_DECK_API QJsonDocument* LD_GetPointInfo(QWidget* mainWindow);
LUMEN_DECK_API QJsonDocument* LD_GetRectInfo(QWidget* mainWindow);
LUMEN_DECK_API QJsonDocument* LD_GetGridInfo(QWidget* mainWindow);

/* ==== Electronic zoom ================================================================================================
 *
 * Shows a part of the picture in the whole selected window. Queued. */

/* Starts the zoom with the whole picture.
 * in: type  int, 1  2: the left button moves the picture, the wheel zooms at the pointer. Others: the user drags a
 *                   frame, whose content fills the window; a drag up or to the left gives the whole picture back */
LUMEN_DECK_API QJsonDocument* LD_EnableEZoom(QWidget* mainWindow, const QJsonDocument* args);

/* Ends it and shows the whole picture. Drawing is switched off. */
LUMEN_DECK_API QJsonDocument* LD_DisableEZoom(QWidget* mainWindow);

/* ==== Fisheye ========================================================================================================
 *
 * A round picture is shown in one of two ways. Device expansion: the device sends ordinary streams, one a window; the
 * library draws numbers and boxes over them and reports what the user does as LD_EVENT_FISHEYE_PTZ. Software
 * correction: one LD_Play feeds an arrangement of dewarped views, which the user moves with the mouse.
 *
 * Queued. Requests are objects; their keys are required, and a text that holds a number counts as the number. Most act
 * on the view in the selected window, on that of window 0 when the selected one is not of the arrangement.
 * errors of each: 500 "setJsonParam param error" for no object, and the message given. */

/* Ends the views of the arrangement. Before LD_ArrangeFECWindow, whose settings it would put back.
 * in: type  int  0 device expansion, 1 software correction; others are ignored
 * errors: "setModuleCorrectionType param error" */
LUMEN_DECK_API QJsonDocument* LD_SetCorrectionType(QWidget* mainWindow, const QJsonDocument* args);

/* How the camera is mounted, for the next play; at the start on the ceiling.
 * in: type  int  0 on a wall, 1 on the floor, 2 on the ceiling; others are ignored
 * errors: "setModuleCorrectionType param error" */
LUMEN_DECK_API QJsonDocument* LD_SetPlaceType(QWidget* mainWindow, const QJsonDocument* args);

/* Listens to a device that reports where its views look; their boxes then follow.
 * in: url, auth, extData  text
 * errors: "startModuleFisheyeListener url param error", "... authinfo param error", "... exData param error",
 *         "startModuleFisheyeListener called error" */
LUMEN_DECK_API QJsonDocument* LD_StartFishListener(QWidget* mainWindow, const QJsonDocument* args);

/* errors: "stopFisheyeListener param error" when nothing listens */
LUMEN_DECK_API QJsonDocument* LD_StopFishListener(QWidget* mainWindow, const QJsonDocument* args);

/* Sets the boxes over the round picture, in place of those before. They hide after five seconds untouched.
 * in: fishBoxList  array of {"id": int, "xPoint": number, "yPoint": number}, not empty; positions 0 to 1
 * errors: "no fisheye or pano window" without an origin window (LD_SetFishWndProperty), "addFisheyeWindowMark param
 *         error" */
LUMEN_DECK_API QJsonDocument* LD_SetFishBoxListInfo(QWidget* mainWindow, const QJsonDocument* args);

/* Where the views look.
 * out: {"fishBoxList": [{"id", "xPoint", "yPoint", "zPoint"}]}, always nine; zeros for those that are not there */
LUMEN_DECK_API QJsonDocument* LD_GetFishBoxListInfo(QWidget* mainWindow, const QJsonDocument* args);

/* Removes the boxes of the selected window of the arrangement; in device expansion those of window 0.
 * errors: "clearFisheyeWindowMark param error" */
LUMEN_DECK_API QJsonDocument* LD_ClearAllWndFishBoxInfo(QWidget* mainWindow, const QJsonDocument* args);

/* Device expansion: tells the role of a window.
 * in: wndIndex  int
 *     type      int  3 the origin window with the round picture, 2 a panorama, 0 a view that is turned, -1 none; others
 *                    change nothing
 *     id        int  the number of a view, 1 to 9 shows
 * errors: "setModuleSubWindowParam param error"; "setSubWindowParam param error" for no such window, or in software
 *         correction */
LUMEN_DECK_API QJsonDocument* LD_SetFishWndProperty(QWidget* mainWindow, const QJsonDocument* args);

/* Sets the windows for software correction, in place of the layout; views end, the stream behind them does not. The next
 * LD_Play shows its stream in them: LD_Stop first.
 * in: type  number, 0 to 17 (below as 0), with O the circle, P a panorama, v a view:
 *           0 O; 1 P; 2 v; 3 P; 4 vvP; 5 Ovvv; 6 vPvv; 7 vvvv; 8 vvvv O vvvv; 9 vvvv P vvvv; 10 nine v; 11 v; 12 P;
 *           13 Pvvv; 14 vvvv P vvvv; 15 vv; 16 v over P; 17 six v over P
 * errors: "parseFisheyeWindowArrange param error" */
LUMEN_DECK_API QJsonDocument* LD_ArrangeFECWindow(QWidget* mainWindow, const QJsonDocument* args);

/* Lets the view wander over the picture until LD_StopFECScan, which ends all scans of the wall.
 * in: speed  int  1 to 7
 * errors: "startModuleFisheyeScan param error", "startFisheyeScan param error" */
LUMEN_DECK_API QJsonDocument* LD_StartFECScan(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StopFECScan(QWidget* mainWindow, const QJsonDocument* args);

/* One step of the view. A circle or a panorama that stands alone turns left and right.
 * in: direction  int  0 up, 1 down, 2 left, 3 right, 4 zoom in, 5 zoom out
 *     speed      int  1 to 7; 0 makes no step; of a zoom its size does not matter
 * errors: "setModuleFisheyePTZ param error", "setFisheyePTZ param error" */
LUMEN_DECK_API QJsonDocument* LD_FishEyePTZ(QWidget* mainWindow, const QJsonDocument* args);

/* As LD_FishEyePTZ with direction 4 and 5. No object is answered as a missing speed.
 * in: speed  int */
LUMEN_DECK_API QJsonDocument* LD_FishEyeZoomIn(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_FishEyeZoomOut(QWidget* mainWindow, const QJsonDocument* args);

/* Where the view looks.
 * out: {"fishEyePreset": {"xPoint", "yPoint", "zPoint"}}, six digits each; an empty document when there is no view */
LUMEN_DECK_API QJsonDocument* LD_FishEyeGetPreset(QWidget* mainWindow, const QJsonDocument* args);

/* Lets the view look there at once.
 * in: fishEyePreset  object {"xPoint": number, 0; "yPoint": number, 0; "zPoint": number, 0}, not empty
 * errors: "setSubWindowPTZParam param error" */
LUMEN_DECK_API QJsonDocument* LD_FishEyeSetPreset(QWidget* mainWindow, const QJsonDocument* args);

/* Takes the view round the presets, until LD_StopFECCruise, which ends all cruises of the wall.
 * in: fishEyePresetList  array of {"xPoint", "yPoint", "zPoint": numbers, 0; "time": whole seconds to stay, 0}, not
 *                        empty, nor is an entry
 * errors: "startFisheyeCruise param error" */
LUMEN_DECK_API QJsonDocument* LD_StartFECCruise(QWidget* mainWindow, const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_StopFECCruise(QWidget* mainWindow, const QJsonDocument* args);

/* ==== Eagle eye ======================================================================================================
 *
 * A stream whose picture the engine turns by itself: by drag, by wheel and by LD_SRPTZ. Queued. */

/* Makes a window an eagle-eye window, for the next play in it; a stop ends it.
 * in: wndIndex  number, an index
 *     type      number  0 or 1, how the picture is expanded; others change nothing
 * errors: 500 "SRInit cannot find eagleEye in the window" for no such window or an empty document */
LUMEN_DECK_API QJsonDocument* LD_SRInit(QWidget* mainWindow, const QJsonDocument* args);

/* One step.
 * in: wndIndex   number, an index
 *     direction  number  0 up, 1 down, 2 left, 3 right, 4 zoom out, 5 zoom in
 *     step       number  1 to 7; another makes no step
 * errors: 500 "SRPTZ cannot find eagleEye in the window", "setEagleEyePTZ not on play", "setEagleEyePTZ to tidePipe
 *         Error" */
LUMEN_DECK_API QJsonDocument* LD_SRPTZ(QWidget* mainWindow, const QJsonDocument* args);

/* ==== Services =======================================================================================================
 *
 * From here on nothing is tied to a window. All are Direct: any thread may call, and those that show a dialog belong on
 * the main thread; elsewhere they answer as if the user had cancelled.
 *
 * Answers carry {"errorModule": where, "errorCode": number}: an empty module and 0 mean success. In requests every key
 * may be left out and then reads as "" or 0; a bool reads as "", so give 1 for true.
 *
 * Paths: ROOT is the folder that the environment variable PWD names, "/opt/quillmark" without one. */

/* ---- Local configuration ----
 * The user's settings, in ROOT/.HarborKit/local.json, made with the folders below ROOT/Web at the first use. Values are
 * texts, numbers as decimals: protocolType, buffNumberType, packgeSize, playWndType, captureFileFormat, recordPath,
 * capturePath, playbackFilePath, playbackPicPath, downloadPath, ivsMode, osdPosInfo, osdPicInfo, showFireBox,
 * showFireDistance, showFireMaxTemperature, showFireMaxTemperaturePos, showTemperatureBox, showTemperatureLine,
 * showTemperaturePoint, captureIncludeTemperatureInfo; and only kept: customBuffNumber, streamType, realPlayAll,
 * showWizard, secretKey, snapScenePicPath, snapViewPicPath, FaceSnapPicPath and what the host adds. */

/* `args` are not read.
 * out: {"errorModule": "", "errorCode": 0, "localConfig": {...}}, or "getLocalConfig" and -1 without such a file */
LUMEN_DECK_API QJsonDocument* LD_GetLocalConfig(const QJsonDocument* args);

/* Lays settings over those last read, and writes the file whole. Read first. Always null.
 * in: localConfig  object  texts and whole numbers are kept, anything else becomes ""; an object within is laid flat */
LUMEN_DECK_API QJsonDocument* LD_SetLocalConfig(const QJsonDocument* args);

/* ---- Dialogs and string protection ---- */

/* Asks the user for a file or a folder; returns when the dialog is closed.
 * in:  mode      int   0 a folder, else a file
 *      fileType  text  "xls", "txt", "*", another ending, or "" for all
 * out: {"filepath": path, "" when cancelled; "errorModule": "", "errorCode": 0} */
LUMEN_DECK_API QJsonDocument* LD_OpenFileBrowser(const QJsonDocument* args);

/* Shows a folder in the desktop's file manager. Always null.
 * in: dir  text  ROOT when empty */
LUMEN_DECK_API QJsonDocument* LD_OpenDirectory(const QJsonDocument* args);

/* Sets the secret of the process, under which texts are protected.
 * in:  key  text, 1 to 4096 bytes;  keyType  int, a number of the host's choice that belongs to the secret
 * out: null, or {"errorModule": "SetSecretKey", "errorCode": negative} */
LUMEN_DECK_API QJsonDocument* LD_SetSecretKey(const QJsonDocument* args);

/* Keeps whether the texts of LD_GetEncryptString may be protected already; such a text is then not protected twice.
 * Always null.
 * in: encrypted  int, 0 or 1;  key  text, kept */
LUMEN_DECK_API QJsonDocument* LD_SetOriginalString(const QJsonDocument* args);

/* in:  originalKey  text, at most 720 bytes;  type  int, a number of the host's choice that the text is bound to
 * out: {"encryptString": text, "errorModule": "", "errorCode": 0}, or "GetEncryptString" and -1 */
LUMEN_DECK_API QJsonDocument* LD_GetEncryptString(const QJsonDocument* args);

/* in:  key  text from LD_GetEncryptString;  type  int, the same;  encrypted  int, 0 or 1
 * out: {"decryptString": text, "errorModule": "", "errorCode": 0}, or "GetDecryptString" and -1 */
LUMEN_DECK_API QJsonDocument* LD_GetDecryptString(const QJsonDocument* args);

/* ---- Uploads and device configuration ----
 * Over HTTP and HTTPS. `auth` is as for LD_Play. Files ending in ".exe" or ".dat" are refused with -1. `errorInfo` is
 * the server's own text. What goes wrong with a transfer has a number, which polls report as the status and waiting
 * calls, with a minus, as `errorCode`: 1 failed, 2 an address, log-in or header that cannot be sent, 3 cannot connect, 4
 * certificate not trusted, 5 log-in refused, 6 not found, 7 refused by the server, 8 error of the server, 9 time-out, 10
 * line cut, 11 the file cannot be read or written, 12 redirected too often, 13 the device reports a failure. */

/* Starts the one upload in the background; a second start gives up the first.
 * in:  uploadUrl, statusUrl, auth  text
 *      filepath  text   a dialog asks when it is empty
 *      pReserve  text;  iReserve  int
 * out: null, or {"errorModule": "startAsynUpload", "errorCode": negative} */
LUMEN_DECK_API QJsonDocument* LD_StartAsynUpload(const QJsonDocument* args);

/* `args` are not read. Always null. */
LUMEN_DECK_API QJsonDocument* LD_StopAsynUpload(const QJsonDocument* args);

/* Sends a configuration to a device and waits for it.
 * in:  uploadUrl, auth  text
 *      filename  text   the file; a dialog asks when it is empty
 * out: {"errorModule": "ImportDeviceConfig", "errorCode": 0 for success} */
LUMEN_DECK_API QJsonDocument* LD_ImportDeviceConfig(const QJsonDocument* args);

/* Fetches the configuration of a device into a file that the user chooses.
 * in:  downloadUrl, auth  text
 *      filename  text   proposed in the dialog;  fileType  int, 1 for "*.xls"
 * out: null for success; {"errorModule": "ExportDeviceConfig", "errorCode": 0, "ret": 1} when cancelled; else
 *      "errorCode" negative, "ret" 0 */
LUMEN_DECK_API QJsonDocument* LD_ExportDeviceConfig(const QJsonDocument* args);

/* Lets the user choose a file; the engine has no export of logs, so none is written.
 * in:  fileType  int   0 "*.txt", 1 "*.xls", 2 both; else no dialog and `filename` stands
 *      filename, logXml  text
 * out: {"errorModule": "ExportDeviceLog", "errorCode": 0, "ret": 1} when cancelled, else "errorCode" -1, "ret" 0 */
LUMEN_DECK_API QJsonDocument* LD_ExportDeviceLog(const QJsonDocument* args);

/* Sends a file and waits for it.
 * in:  uploadUrl, auth, contentType  text
 *      filepath  text   a dialog asks when it is empty;  iReserve  int, 1 for PUT
 * out: null, or {"errorModule": "UploadFile", "errorCode": negative, "errorInfo": text} */
LUMEN_DECK_API QJsonDocument* LD_UploadFile(const QJsonDocument* args);

/* With `method` (int) 2 a general export, which the engine does not have and which answers as LD_ExportDeviceLog under
 * "ExportFile"; else LD_ExportDeviceConfig.
 * out: as there; {"errorModule": "Download", "errorCode": -1, "errorInfo": ""} for an empty document */
LUMEN_DECK_API QJsonDocument* LD_Download(const QJsonDocument* args);

/* What went wrong with the background upload, and with the last LD_ImportDeviceConfig. `args` are not read.
 * out: {"errorInfo": text, "errorModule": "", "errorCode": 0}; the first is null after LD_StopAsynUpload */
LUMEN_DECK_API QJsonDocument* LD_GetUploadErrorInfo(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetIpcImportErrorInfo(const QJsonDocument* args);

/* ---- Downloads and upgrade ----
 * Both go on in the background, and the host polls. Numbers in answers of polls are decimal texts. A status of 0 is in
 * order, with a progress of 0 to 100; every other has failed. */

/* Sends firmware to a device; one upgrade at a time.
 * in:  upgradeUrl, statusUrl, auth, pReserve, upgradeFlag  text
 *      filepath  text   a dialog asks when it is empty; not ".exe" nor ".dat"
 * out: null, or {"errorModule": "StartUpgrade", "errorCode": number} */
LUMEN_DECK_API QJsonDocument* LD_StartUpgrade(const QJsonDocument* args);

/* The three do not read `args`.
 * out: LD_StopUpgrade      null
 *      LD_UpgradeStatus    {"upgradeStatus": "0", "errorModule": "", "errorCode": 0}, or "errorModule" "UpgradeStatus"
 *                          and the status as a text in "errorCode"
 *      LD_UpgradeProgress  {"upgradeProgress": text, "upgradeStatus": "0", "errorModule": "", "errorCode": 0}, or
 *                          "UpgradeProgress" and the engine's error code */
LUMEN_DECK_API QJsonDocument* LD_StopUpgrade(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_UpgradeStatus(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_UpgradeProgress(const QJsonDocument* args);

/* Starts a download, one of any number, into FOLDER/yyyy-MM-dd/filename.
 * in:  downloadUrl, auth  text
 *      downloadXml  text   sent as the body of the request
 *      filename     text   a name that leads out of the folder is refused
 *      fileType     text   FOLDER is ROOT/Web/ViewPics for "snapmachine", ROOT/Web/InteligentFaceFiles for "faceSnap",
 *                          with the device's address as a further level there, and else the setting `downloadPath`
 *      packageType  int    handed to the server when it is 5
 * out: {"errorModule": "startAsyncDownload", "errorCode": 0, "downloadId": id, "errorInfo": text}; "errorCode" -3 when
 *      the folder cannot be made; {"downloadId": negative, "errorCode": the same, "errorInfo": text} when it does not
 *      start */
LUMEN_DECK_API QJsonDocument* LD_StartDownload(const QJsonDocument* args);

/* in:  downloadId  int
 * out: null, or {"errorModule": "StopDownload", "errorCode": -1} */
LUMEN_DECK_API QJsonDocument* LD_StopDownload(const QJsonDocument* args);

/* in:  downloadId  int
 * out: LD_GetDownloadProgress  {"downloadProgress": text}, only while the status is 0
 *      LD_GetDownloadStatus    {"downloadStatus": text}, whatever it is
 *      LD_GetDownloadInfo      {"downloadStatus": text, "downloadProgress": text}
 *      or {"errorModule": "GetDownloadProgress", "GetDownloadStatus", "GetDownloadInfo"; "errorCode": negative} */
LUMEN_DECK_API QJsonDocument* LD_GetDownloadProgress(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetDownloadStatus(const QJsonDocument* args);
LUMEN_DECK_API QJsonDocument* LD_GetDownloadInfo(const QJsonDocument* args);

} // extern "C"
