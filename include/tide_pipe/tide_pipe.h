/* libtide_pipe: the stream engine. Plain C11 and C++17; x86-64 System V calling convention.
 *
 * It opens streams, decodes them, draws them into X11 windows, plays their sound, records them and runs transfers. A
 * host names everything by numbers:
 *
 *     TP_InitLib(".");
 *     TP_SetMessageHandler(onMessage, NULL);
 *     int id = TP_Play("rtsp://camera/1", "user:password", 0, window, "", "", 0, NULL, NULL, -1);
 *     ...
 *     TP_Stop(id);
 *
 * What holds for every function unless it says otherwise:
 *
 *  - Threads. Any thread may call, several at once, also from inside a callback. No function waits for the network, for
 *    a decoder or for the disk.
 *  - Failure. An int result is 0 or more for success and -1 for failure; TP_GetLastError then says why. A failed call
 *    has changed nothing. Null pointers, unknown ids and values out of range are failures, never more.
 *  - Text is zero-terminated, UTF-8 (paths: as the file system takes them), and read during the call only. A null text
 *    is an empty one.
 *  - Pointers that are passed in stay the caller's. Pointers that a callback gets are valid until it returns.
 *  - Ids. Play ids and view ids come from one counter, start at 1 and are not used again. Talks, uploads, downloads,
 *    upgrades and listeners have ids of kinds of their own.
 *  - Windows. A stream of which no window can be seen is read, recorded and heard on, but hardly decoded. Its picture is
 *    back as soon as a window is seen again.
 *  - Callbacks. Messages and data records come on one thread of the engine, draw hooks on its render thread. A callback
 *    that takes long delays the callbacks, or the drawing, of all streams; it does not stop the decoding.
 */
#ifndef TIDE_PIPE_H
#define TIDE_PIPE_H

#ifndef __cplusplus
#include <stdbool.h>
#endif

#define TIDE_PIPE_API __attribute__((visibility("default")))

#ifdef __cplusplus
#define TIDE_PIPE_SIZE(type, bytes) static_assert(sizeof(type) == (bytes), #type)
extern "C" {
#else
#define TIDE_PIPE_SIZE(type, bytes) _Static_assert(sizeof(type) == (bytes), #type)
#endif

/* An X11 window, as QWidget::winId() gives it. */
typedef unsigned long TP_WId;

/* ---- records ----
 * Their layout is fixed. Bytes named r are written as 0 and not read. */

/* A position in the round picture of a fisheye lens, or a point of a window: 0 to 1 each way from the top left. */
struct _TP_PTZPARAM
{
    float x, y;
};
TIDE_PIPE_SIZE(struct _TP_PTZPARAM, 8);

/* The state of one dewarped view. `mask` says which fields an update applies: 2 the zoom, 4 the angle, 8 the position,
 * 16 the colour. Other bits mean nothing. */
struct _TP_FISHEYEPARAM
{
    unsigned mask;
    unsigned char r0[4];
    float x, y; /* where the view's axis meets the round picture, see TP_FEC_Play; kept inside the circle */
    unsigned char r1[16];
    float z; /* the zoom, kept from -0.05, 90 degrees along the window's longer side, to 0.55; 0.025 takes a tenth off */
    float angle; /* radians by which a circle or a panorama is turned to the right; kept from -pi to pi */
    unsigned char color[4]; /* of the view's box: red, green, blue, alpha; alpha 0 is white, as before any was set */
    unsigned char r2[60];
};
TIDE_PIPE_SIZE(struct _TP_FISHEYEPARAM, 104);

struct _TP_SRTRANSFERELEMENT
{
    float e0, e1, e2, e3;
};
TIDE_PIPE_SIZE(struct _TP_SRTRANSFERELEMENT, 16);

struct _TP_SRTRANSFER
{
    struct _TP_SRTRANSFERELEMENT* element;
    long long reserved;
};
TIDE_PIPE_SIZE(struct _TP_SRTRANSFER, 16);

/* A part of the picture in its pixels; right and bottom are exclusive. */
struct _TP_REGION
{
    long long left, top, right, bottom;
};
TIDE_PIPE_SIZE(struct _TP_REGION, 32);

/* Local time; month 1 to 12. */
struct _TP_OSDTIME
{
    int year, month, day, hour, minute, second;
};
TIDE_PIPE_SIZE(struct _TP_OSDTIME, 24);

/* A record that travels beside the pictures. Type 2049, people count: `data` is 16 unsigned 32-bit numbers,
 * thousandths. */
struct TP_ADDITION_DATA_INFO
{
    long long type;
    long long r0, r1;
    int length; /* of data, in bytes */
    int r2;
    void* data;
};
TIDE_PIPE_SIZE(struct TP_ADDITION_DATA_INFO, 40);

/* What a transcoding server should send. `resolution`: 0 as the source, 1 to 255 the server's own codes; `bitrate`:
 * kbit a second, 0 as the source; `frameRate`: pictures a second, 0 as the source. */
struct _TP_TRANSPARAM
{
    unsigned char r0;
    unsigned char resolution;
    unsigned char r1[2];
    unsigned bitrate, frameRate;
    unsigned char r2[16];
};
TIDE_PIPE_SIZE(struct _TP_TRANSPARAM, 28);

/* What TP_Play is told of an eagle-eye stream, whose picture is a whole sphere: longitude across, latitude down. */
struct _TP_EAGLEEYEPARAM
{
    bool flag;      /* false: an ordinary stream */
    int mode;       /* accepted */
    int expandType; /* 1 shows it flat, going round as it turns; others show a perspective view out of its middle */
};
TIDE_PIPE_SIZE(struct _TP_EAGLEEYEPARAM, 12);

/* What a fisheye device reports to its listener. */
struct _TP_FISHMESSAGE
{
    int box, kind; /* `kind` is a TP_FishKind */
    int length;    /* of the payload, in bytes */
    int r0;
    void* payload; /* valid until the function returns */
    unsigned char r1[64];
};
TIDE_PIPE_SIZE(struct _TP_FISHMESSAGE, 88);

/* ---- codes ---- */

/* What TP_GetLastError answers. */
enum TP_Error
{
    TP_ERROR_NONE = 0,
    TP_ERROR_BAD_ARGUMENT = 1,
    TP_ERROR_NO_SUCH_ID = 2,
    TP_ERROR_NOT_SUPPORTED = 3, /* not in this build */
    TP_ERROR_WRONG_STATE = 4,   /* for instance a change of speed of a live stream */
    TP_ERROR_NO_WINDOW = 5,     /* no such window, or not the stream's */
    TP_ERROR_NO_DISPLAY = 6,
    TP_ERROR_OPEN_FAILED = 7,
    TP_ERROR_NO_PICTURE = 8, /* none has come yet, or none comes any more */
    TP_ERROR_WRITE_FAILED = 9,
    TP_ERROR_SOUND_FAILED = 10,
    TP_ERROR_HTTP = 11, /* TP_GetHTTPErrorInfo has the server's words */
    TP_ERROR_AUTHENTICATION = 12,
    TP_ERROR_TIMEOUT = 13,
    TP_ERROR_CRYPTO = 14,
    TP_ERROR_TOO_LONG = 15,
    TP_ERROR_OUT_OF_MEMORY = 16,
    TP_ERROR_INTERNAL = 17
};

/* What happens to a stream later than in the call that caused it; see TP_SetMessageHandler. 21 is never used: it
 * belongs to the library above the engine. */
enum TP_Message
{
    TP_MESSAGE_OPENED = 1,          /* the first picture (of a stream without pictures: the first sound) is there */
    TP_MESSAGE_OPEN_FAILED = 2,     /* the source cannot be opened or is no media; network sources are tried again */
    TP_MESSAGE_AUTH_FAILED = 3,     /* the source refuses the credential; waits for TP_SetReconnectInfo */
    TP_MESSAGE_ENDED = 4,           /* the end of the source or the stop time; the last picture stays on show */
    TP_MESSAGE_LOST = 5,            /* a network source broke off or fell silent; it is tried again */
    TP_MESSAGE_RESTORED = 6,        /* after LOST: pictures come again */
    TP_MESSAGE_STANDING_STILL = 7,  /* no new picture for three seconds though the stream should move */
    TP_MESSAGE_MOVING_AGAIN = 8,    /* after STANDING_STILL, when the connection itself did not break */
    TP_MESSAGE_SIZE_CHANGED = 9,    /* the picture has another size than before */
    TP_MESSAGE_NOT_DECODABLE = 10,  /* no decoder for the pictures of this source */
    TP_MESSAGE_NOT_REVERSIBLE = 11, /* the source cannot be played backwards: live, or without an index */
    TP_MESSAGE_RECORD_FAILED = 30,  /* the disk ended a recording; what was written until then is good */

    /* 1000 to 1999: the picture on show of a live stream is so many tenths of a second, past 1000, older than what has
     * come from the source. A stream begins with 0; told when it has changed by half a second or more, so not at all of
     * a stream that is in time. Of one that falls back more than half a second, pictures are left out. */
    TP_MESSAGE_DELAY = 1000,
    TP_MESSAGE_DELAY_MOST = 1999
};

/* The kinds of a _TP_FISHMESSAGE. */
enum TP_FishKind
{
    TP_FISH_BOX = 2, /* where the box with the number `box` is: a _TP_PTZPARAM */
    TP_FISH_MODE = 3 /* how the device counts its boxes: one byte; `box` is 0 */
};

/* ---- callbacks ---- */

/* `message` is a TP_Message. Comes on the engine's notification thread. */
typedef void (*TP_MessageHandler)(int playId, unsigned message, void* user);

/* Comes on the render thread after the picture was drawn into the stream's window and before it is shown. The window's
 * GL context (compatibility profile) is current and its viewport is the window; the engine restores what the hook
 * changes. `drawContext` means something to the engine only. */
typedef void (*TP_DrawFun)(int playId, void* drawContext, void* user);

/* The same for a dewarped view. The numbers are 0. */
typedef void (*TP_FECDrawFun)(void* user, unsigned, unsigned, void* drawContext, unsigned, unsigned);

/* Comes on the engine's notification thread. */
typedef void (*TP_AdditionFun)(int playId, struct TP_ADDITION_DATA_INFO* info, void* user);

/* `data` is a _TP_FISHMESSAGE, `length` its size. The numbers are the listener's id and the kind of the message. Comes
 * on the listener's thread: those of two listeners may come at the same time. */
typedef void (*TP_FishMsgFun)(int, int, void* data, unsigned length);

/* ---- life, errors, messages ---- */

/* Prepares the engine. Once in a process is enough, more do no harm, and a play without it works as well. `dir` is the
 * host's program folder; nothing is read there. */
TIDE_PIPE_API int TP_InitLib(const char* dir);

/* Why the last call that failed on this thread did so: a TP_Error. Calls that succeed leave it as it is. */
TIDE_PIPE_API unsigned TP_GetLastError(void);

/* The one handler for the messages of all streams; null takes it off. A handler that already runs is not waited for. */
TIDE_PIPE_API int TP_SetMessageHandler(TP_MessageHandler handler, void* user);

/* The host has changed the size of a window that shows a stream. The engine sees most changes by itself; this makes the
 * next picture have the new size for certain. Unknown windows are ignored. */
TIDE_PIPE_API int TP_WndResolutionChange(TP_WId window);

/* ---- streams ---- */

/* How many decoded pictures may wait to be shown, in the streams played from now on: 1 to 50, others are brought into
 * that range; 6 at the start. More is smoother, fewer is closer to the present. */
TIDE_PIPE_API int TP_SetDisplayBuf(int frames);

/* Shows a stream in a window. Returns its play id at once; all that happens later is told by messages.
 *
 * url        a path or "file:" url; "http:", "https:"; "rtsp:", "rtsps:"; or a generated picture:
 *                test:pattern?size=704x576&rate=25&gop=25&seconds=0&sound=440&people=1
 *            with `size` (48 to 4096 each way, even), `rate` (1 to 120 pictures a second), `gop` (pictures from one key
 *            picture to the next), `seconds` (length; 0, as when it is left out, is an endless live source), `sound` (a
 *            tone in Hz) and `people` (people-count records a second). It shows colour bars, the time, and the number
 *            of the picture, which also stands in 24 black and white cells along the top edge, highest bit first. No
 *            other scheme is opened, nor does an opened source lead to one.
 * auth       empty, "user:password", a JSON object with the texts "user" and "password", or a line
 *            "Authorization: ..." (for RTSP only of the kind Basic). Goes before what stands in the url. Never logged.
 * protocol   how RTSP travels: 0 TCP, 1 UDP, 2 UDP multicast, 3 UDP and then TCP, 4 through HTTP, 5 through HTTPS;
 *            with 5 an "http:" url is fetched by HTTPS as well. Others count as 0.
 * window     where the picture is drawn; the whole window, keeping no ratio. It must exist, else TP_ERROR_NO_WINDOW.
 *            Two streams may not share a window.
 * startTime, stopTime
 *            empty, or from the beginning of the source "90", "90.5", "00:01:30.5", or a date
 *            "2026-05-01T10:00:00Z", "2026-05-01 10:00:00", "20260501T100000Z", "20260501100000" (with "Z" UTC, with
 *            "+02:00" so far from it, else local time). A date counts from the creation time that the file tells;
 *            where it tells none, the start time is its beginning. For RTSP a date goes to the server as "starttime="
 *            and "endtime=" in the url, unless the url has them. Live sources are not cut.
 * correctionType
 *            accepted; the window shows the picture as it is, and TP_FEC_Play shows views of it in others.
 * transParam null or a _TP_TRANSPARAM. Accepted; what a transcoding server sends is settled by the url.
 * eagleEye   null or a _TP_EAGLEEYEPARAM; see TP_SR_Rotate.
 * playGroup  1 for streams of one group, -1 for others. Accepted; each stream plays by its own clock.
 *
 * A network source that cannot be opened, breaks off or falls silent is tried again until TP_Stop, after half a second
 * at first and at most every 15 seconds. One that refuses the credential waits for TP_SetReconnectInfo. */
TIDE_PIPE_API int TP_Play(const char* url, const char* auth, int protocol, TP_WId window, const char* startTime,
                          const char* stopTime, int correctionType, const void* transParam, const void* eagleEye,
                          int playGroup);

/* The same backwards, from the stop time or the end to the start time or the beginning, without sound. For files, also
 * on HTTP. What cannot be played backwards gives TP_MESSAGE_NOT_REVERSIBLE. */
TIDE_PIPE_API int TP_ReversePlay(const char* url, const char* auth, int reserved, TP_WId window, const char* startTime,
                                 const char* stopTime);

/* Ends a stream or a view; of a stream its views as well. After it returns no draw hook of the id runs and no message
 * of it is begun; a message handler that runs already is not waited for. May be called from inside any callback. */
TIDE_PIPE_API int TP_Stop(int playId);

/* The picture stands; drawing on it goes on. A live source is read on, so that TP_Resume goes on with the present. */
TIDE_PIPE_API int TP_Pause(int playId);
TIDE_PIPE_API int TP_Resume(int playId);

/* One step along 1/8, 1/4, 1/2, 1, 2, 4, 8 times; at either end it stays there. There is sound at 1 only. Live streams
 * answer TP_ERROR_WRONG_STATE. */
TIDE_PIPE_API int TP_Fast(int playId);
TIDE_PIPE_API int TP_Slow(int playId);

/* Pauses and shows the next picture. TP_ERROR_NO_PICTURE at the end. */
TIDE_PIPE_API int TP_FrameForward(int playId);

/* The speed, 1 for normal. 0 for an unknown id. */
TIDE_PIPE_API float TP_GetScale(int playId);

/* The size of the picture on show in its own pixels. Before the first one TP_ERROR_NO_PICTURE; nothing is written then.
 */
TIDE_PIPE_API int TP_GetPictureSize(int playId, int* width, int* height);

/* The credential, as TP_Play takes it, for the next time the source is connected. A stream that waits for one tries
 * again at once. */
TIDE_PIPE_API int TP_SetReconnectInfo(int playId, const char* auth);

/* The part of the picture that fills the window. Works on a standing picture too; a new play starts whole.
 * region     pixels of the picture, wholly inside it and not empty, else TP_ERROR_BAD_ARGUMENT; null: the whole picture
 * window     0, or the stream's own window, which means the same
 * enable     0: the whole picture, whatever the region */
TIDE_PIPE_API int TP_SetDisplayRegion(int playId, int reserved, const struct _TP_REGION* region, TP_WId window,
                                      int enable);

/* The draw hook of a stream, one; null takes it off. After the call the one before does not run any more. */
TIDE_PIPE_API int TP_RigisterDrawFun(int playId, TP_DrawFun fn, void* user);

/* Switches for what a device draws into or sends along with its pictures. They are kept with the stream; one without
 * such data shows none.
 *
 * selector   1 and 2 moving objects and rules, 4 position text, 8 picture text, 16 fire, 32 temperature
 * part       of 16: 1 box, 2 highest temperature, 4 its place, 8 distance; of 32: 1 box, 2 line, 4 point
 * enable     0 off, else on */
TIDE_PIPE_API int TP_EnableIVS(int playId, int selector, int enable);
TIDE_PIPE_API int TP_RenderPrivateDataEx(int playId, int selector, int part, int enable);

/* Whether pictures that are saved show the overlay. */
TIDE_PIPE_API int TP_SetOverlayPriInfoFlag(int playId, int selector, int enable);

/* The function that gets a stream's records of one type, one a type; null takes it off, and it is not begun any more.
 * The only type there is comes from a test pattern: 2049, people count. */
TIDE_PIPE_API int TP_RegAdditionFun(int playId, int type, TP_AdditionFun fn, void* user);

/* ---- capture, on-screen time, record ---- */

/* Writes the picture on show, at its own size, to a new or emptied file. Of a stream of which nobody sees a window that
 * is its last key picture. TP_ERROR_NO_PICTURE, TP_ERROR_WRITE_FAILED. */
TIDE_PIPE_API int TP_JPEGCapture(int playId, const char* path);
TIDE_PIPE_API int TP_BMPCapture(int playId, const char* path);

/* The time of the picture on show, in local time: of a live stream its wall clock, of a file its start plus position.
 */
TIDE_PIPE_API int TP_GetOSDTime(int playId, struct _TP_OSDTIME* time);

/* Records the stream, as it comes, to an MP4 file that plays up to its last group of pictures even when the process is
 * killed. One recording a stream. `packageType` is accepted. */
TIDE_PIPE_API int TP_StartSave(int playId, const char* path, int packageType);

/* Returns when the file is complete, after ten seconds at the latest (TP_ERROR_TIMEOUT). TP_ERROR_WRONG_STATE when nothing
 * records; a recording that the disk has ended counts as one. */
TIDE_PIPE_API int TP_StopSave(int playId);

/* Goes on in a new file, which is opened inside the call, from the next key picture on; no picture is lost. */
TIDE_PIPE_API int TP_SwitchFile(int playId, const char* path);

/* Bytes of the file that is being written; 0 until its first packet. */
TIDE_PIPE_API int TP_GetRecordFileSize(int playId);

/* ---- sound, voice talk ---- */

/* One stream sounds at a time: opening one closes the other. Without a sound device the call succeeds silently. */
TIDE_PIPE_API int TP_OpenSound(int playId);
TIDE_PIPE_API int TP_CloseSound(void);

/* 0 to 65535 (full, at the start); kept while the stream is silent. */
TIDE_PIPE_API int TP_SetVolume(int playId, unsigned short volume);
TIDE_PIPE_API int TP_GetVolume(int playId);

/* What a talk speaks, both ways. */
enum TP_AudioType
{
    TP_AUDIO_A_LAW = 0,  /* G.711, a byte a sample */
    TP_AUDIO_MU_LAW = 1, /* G.711, a byte a sample */
    TP_AUDIO_AAC = 2     /* with ADTS headers */
};

/* Opens a two-way talk: PUT to `openUrl`, then the microphone in the endless body of a PUT to `dataUrl` and the device's
 * sound in the endless answer to a GET of it, until TP_StopVoiceTalk PUTs to `closeUrl`. An empty openUrl or closeUrl is
 * left out. `auth` as for TP_Play. `sampleRate` 8000 to 48000 Hz (usual: 8000, AAC 16000), `soundChannel` 1 or 2 channels
 * (usual: 1), `bitRate` in bit a second, of AAC; 0 or less is the usual. `deviceCastChannelNum` is accepted. Waits for
 * the device's answers (with time-outs), since they are the result: a talk id, at least 1, or -1. A line that breaks
 * later is tried again until the talk is stopped. TP_ERROR_BAD_ARGUMENT, TP_ERROR_AUTHENTICATION, TP_ERROR_TIMEOUT,
 * TP_ERROR_HTTP. */
TIDE_PIPE_API int TP_StartVoiceTalk(const char* openUrl, const char* closeUrl, const char* dataUrl, const char* auth,
                                    int audioType, int bitRate, int sampleRate, int soundChannel,
                                    int deviceCastChannelNum);

/* Returns at once; the device is told on another thread. TP_ERROR_NO_SUCH_ID. */
TIDE_PIPE_API int TP_StopVoiceTalk(int talkId);

/* ---- fisheye, eagle eye ---- */

/* A dewarped view of a stream in a window of its own; any number of them for a stream, whose pictures are decoded and
 * uploaded once for all. Returns the view's id. A stream whose own window is never mapped costs its decoding alone.
 *
 * The lens is taken as equidistant, with half the scene in its circle, which is the largest one that fits into the
 * middle of the picture. Positions are points of that round picture: 0 to 1 across the square round the circle, whatever
 * lies beside it.
 *
 * param       start values; what its mask leaves out is the middle, the widest view, no turn and a white box
 * placeType   how the camera is mounted: 1 on a wall, 2 on the floor, 3 on the ceiling. What is upright in the room is
 *             upright in a view. On the floor and the ceiling the horizon is the rim.
 * correctType 0      the circle as it is
 *             0x100  a view with pan, tilt and zoom; straight lines are straight
 *             0x200  a panorama as on a cylinder: uprights keep their shape; ends 70 degrees off the horizon, on a wall 60
 *             0x300  a panorama of the whole circle, rows of the same angle each
 *             0x400  the whole picture of a camera on a wall, whatever the placeType
 *             Panoramas go all the way round; on a wall they are the half turn that the lens sees.
 *
 * A view's id is good for the functions of streams as well: TP_Stop ends the view, a draw hook, a region (of what the view
 * shows, in the picture's pixels) and a capture are the view's own, everything else is the stream's. Messages of the stream
 * come for its views as well. */
TIDE_PIPE_API int TP_FEC_Play(int realPlayId, TP_WId window, const struct _TP_FISHEYEPARAM* param, int placeType,
                              int correctType);

/* The draw hook of a view; rules as for TP_RigisterDrawFun. */
TIDE_PIPE_API int TP_FECRigisterDrawFun(int realPlayId, int viewId, TP_FECDrawFun fn, void* user);

/* The present values, with the mask of all. */
TIDE_PIPE_API int TP_FEC_GetParam(int realPlayId, int viewId, struct _TP_FISHEYEPARAM* param);

/* Applies the fields that the mask names, and shows them at once. Numbers are brought into range; infinite ones and NaN
 * are TP_ERROR_BAD_ARGUMENT. */
TIDE_PIPE_API int TP_FEC_UpDateParam(int realPlayId, int viewId, const struct _TP_FISHEYEPARAM* param);

/* Outlines, on circles and panoramas, what the 0x100 views of the stream show, each in its view's colour: 0 none, as at
 * the start, 1 with thin lines, for many views, 2 with wider ones. */
TIDE_PIPE_API int TP_FEC_SetDrawType(int realPlayId, int drawType);

/* The view that is worked with: the box of a 0x100 view is drawn stronger until another is named; a view of another kind
 * is the one that TP_FEC_IsInFinshDraw asks about. */
TIDE_PIPE_API int TP_FEC_SetFinshDraw(int realPlayId, int viewId);

/* The view whose box lies under a point of the circle or the panorama that TP_FEC_SetFinshDraw has named last (before
 * that: of the first one), drawn or not; of several the one whose middle is nearest. Without one TP_ERROR_NO_SUCH_ID,
 * and *viewId stays. */
TIDE_PIPE_API int TP_FEC_IsInFinshDraw(int realPlayId, int* viewId, float x, float y);

/* Turns a move of the pointer over the window of `ownViewId` from `from` to `to`, begun when the 0x100 view `viewId` stood
 * at `start`, into that view's new position. The view itself does not move.
 *
 *  - With viewId as ownViewId the scene is grabbed: what was under `from` will be under `to`, as near as an upright view
 *    inside the circle comes to it.
 *  - A move from exactly (0.5, 0.5) along one axis by at most 0.003 is a step of the view, the way the move goes: to the
 *    left it turns the view to the left, up it turns it up.
 *  - With another ownViewId the view's box is moved there, as far as the pointer moved. */
TIDE_PIPE_API int TP_FEC_PTZ2WindowEx(int realPlayId, int viewId, int ownViewId, const struct _TP_PTZPARAM* start,
                                      const struct _TP_PTZPARAM* from, const struct _TP_PTZPARAM* to, float* x,
                                      float* y);

/* The next position of a scan of a 0x100 view that began at *x, *y. As long as that stays the same the scan goes on from
 * where the view stands; the view itself does not move. On the floor and the ceiling it goes round to the right at its
 * height, on a wall to and fro, 60 degrees to each side. `step` is in half turns, -1 to 1; below 0 it goes the other way. */
TIDE_PIPE_API int TP_FEC_TestScan(int realPlayId, int viewId, float* x, float* y, int placeType, float step);

/* Writes what a view shows, without boxes, in the height of the stream's picture and the proportions of the window; BMP
 * when `isBmp` is not 0, else JPEG. Bends the picture inside the call. */
TIDE_PIPE_API int TP_FEC_CapturePIC(int isBmp, int playId, int viewId, const char* path);

/* Listens to the reports of a fisheye device. Returns a listener id at once, at least 1.
 *
 * url        http or https, else TP_ERROR_BAD_ARGUMENT. The request stays open and the device answers it with a line
 *            of JSON a report, as long as it likes:
 *                {"box": 3, "x": 0.4, "y": 0.5}      box 0 to 65535; x and y 0 to 1 of the fisheye picture
 *                {"mode": 1}                         0 to 255
 *            A line may say both; the mode is told first. Members of other names are passed over, as long as they are
 *            no objects or arrays. Blank lines keep the line open. A line that says none of this, or is longer than
 *            4096 bytes, is passed over.
 * auth       as for TP_Play; basic and digest log-ins are answered. Never logged.
 * extData    empty: the request is a GET. Else its body, sent by POST, as application/json where it begins like JSON,
 *            application/xml where it begins like XML, else text/plain.
 *
 * A line that breaks, ends or brings no byte for TIDE_PIPE_HTTP_TIMEOUT (see transfers, where certificates and redirects
 * stand as well) is opened again, after half a second at first and at most every 15 seconds, until TP_StopFishListener.
 * A device that refuses the credential is not asked again. */
TIDE_PIPE_API int TP_StartFishListener(const char* url, const char* auth, const char* extData);

/* After it returns the function does not run for this listener, unless the call came from inside the function: then it
 * may be under way, on this thread or on another listener's. TP_ERROR_NO_SUCH_ID. */
TIDE_PIPE_API int TP_StopFishListener(int listenerId);

/* The one function for the reports of all listeners; null takes it off. Reports without a function are dropped. After
 * the call the one before does not run any more, with the same exception. */
TIDE_PIPE_API int TP_SetFishMsgCallBack(TP_FishMsgFun fn);

/* Turns the picture of an eagle-eye stream; TP_ERROR_WRONG_STATE for a stream that was played without its block. e0 turns
 * to the right and e1 up, in radians, at most 1000; e2 means nothing; e3 narrows the view by that power of e, from 90
 * degrees to a tenth.
 *
 * Pointers tell their whole travel since the press each time, so an element that lies nearer to the one before it than
 * to zero takes that one's place; else it begins a new travel. An element along one axis alone that is one to seven times
 * 0.0026 pi (e0) or 0.0013 pi (e1) is a step by itself and adds to what is there. */
TIDE_PIPE_API int TP_SR_Rotate(int playId, const struct _TP_SRTRANSFER* transfer);

/* ---- string protection ----
 * Texts are protected with AES-256-GCM under a key that scrypt derives from the secret of the process, with a fresh
 * nonce each time. A protected text is base64 of at most 1023 characters. Any thread may call. */

/* Sets the secret for all that follows, 1 to 4096 bytes. The secret is `keyType` and `key` together: a text is
 * recovered under the pair that it was protected under; which numbers a host uses for `keyType` is its own choice. 0,
 * or -1. */
TIDE_PIPE_API int TP_SetSecretKey(int keyType, const char* key);

/* Protects `text`, at most 720 bytes; a longer one is refused, never cut. `out` has room for 1024 bytes and gets the
 * text with its zero, `outLength` (may be null) its length. `type` names what the text is for, any number: it is
 * recovered under the same number only. With `encrypted` set, a text that is a protected one already is protected anew
 * instead of a second time. `reserved` is not read. 0, or -1 with `out` untouched: no secret set, text too long. The
 * first call under a secret takes some 0.1 s, the derivation of the key. */
TIDE_PIPE_API int TP_Encrypt(int type, const char* text, char* out, int* outLength, int reserved, bool encrypted);

/* Recovers a text that TP_Encrypt has protected, whether `encrypted` is set or not; otherwise as there. -1 with `out`
 * untouched for another secret or type and for a text that is not to the last bit what TP_Encrypt wrote. */
TIDE_PIPE_API int TP_Decrypt(int type, const char* text, char* out, int* outLength, int reserved, bool encrypted);

/* ---- transfers ----
 * Addresses are http or https; every other scheme and every control character is refused. `auth` is as for TP_Play;
 * basic and digest log-ins are answered. Redirects are followed, five at most, from https to https only; a credential
 * does not follow to another server. No proxy is asked. Null texts count as empty, but an address and a path have to be
 * there.
 *
 * Certificates are verified. The environment of the process decides, at each request:
 *
 *  - TIDE_PIPE_CA_FILE: a PEM file of authorities, in place of the system's.
 *  - TIDE_PIPE_TLS_VERIFY: "off" accepts any certificate; whoever sits on the line can then read and change everything.
 *  - TIDE_PIPE_HTTP_TIMEOUT: seconds without a byte until a line counts as dead, 1 to 3600; 30 when it is not set. A
 *    server that does not take the connection is given up after 10 seconds at the latest.
 *
 * Uploads, downloads and upgrades that TP_Start... begins run beside the host; ids are above 1000. A call that begins
 * one looks at its arguments and its file and never waits for the network. An id is known until its TP_Stop..., of jobs
 * that ended by themselves only the newest 256; 16 jobs run at a time, 256 more may wait. TP_Stop... of an unknown id
 * answers -1; after it has returned nothing of the job runs. TP_Upload, TP_ImportDeviceConfig and TP_ExportDeviceConfig
 * do their work inside the call, which takes at most twenty times the time-out.
 *
 * Failures: a negative TP_TransferStatus where a job cannot begin or a call that waits has failed; the status itself
 * from TP_GetDownloadStatus and TP_UpgradeStatus. Any thread may call. */
enum TP_TransferStatus
{
    TP_TRANSFER_OK = 0,             /* waiting, running or, at progress 100, done */
    TP_TRANSFER_FAILED = 1,         /* a failure without a name of its own; stopped; too many at a time */
    TP_TRANSFER_BAD_REQUEST = 2,    /* an address, a credential or a header text that cannot be sent */
    TP_TRANSFER_CANNOT_CONNECT = 3, /* no such host, nobody listens there, no TLS */
    TP_TRANSFER_NOT_TRUSTED = 4,    /* the server's certificate does not hold */
    TP_TRANSFER_UNAUTHORIZED = 5,   /* HTTP 401, 403, 407 */
    TP_TRANSFER_NOT_FOUND = 6,      /* HTTP 404, 410 */
    TP_TRANSFER_REFUSED = 7,        /* every other HTTP status below 500 that is no success */
    TP_TRANSFER_SERVER_ERROR = 8,   /* HTTP 500 and above */
    TP_TRANSFER_TIMEOUT = 9,        /* nothing came for too long, or a device made no progress */
    TP_TRANSFER_LINE_CUT = 10,      /* the line broke and could not be taken up again */
    TP_TRANSFER_FILE_ERROR = 11,    /* the local file cannot be read or written; another download writes it */
    TP_TRANSFER_REDIRECTED_TOO_OFTEN = 12,
    TP_TRANSFER_DEVICE_FAILED = 13 /* the device took the file and says that it failed with it */
};

/* Values of `iReserve`; any other sends with POST. */
enum TP_UploadMethod
{
    TP_UPLOAD_POST = 0,
    TP_UPLOAD_PUT = 1
};

/* Sends the file at `path` as the body of one request, with `pReserve` as its content type (empty: octet-stream). With
 * a `statusUrl`, that address is then asked twice a second until the device is done: it answers with a number for
 * "progress" (0 to 100) and one for "status" (0 in order), as JSON, XML or "name=value" lines; an answer without a
 * progress means done. The id, negative on failure. */
TIDE_PIPE_API int TP_StartAsynUpload(const char* uploadUrl, const char* statusUrl, const char* auth, const char* path,
                                     const char* pReserve, int iReserve);
TIDE_PIPE_API int TP_StopAsynUpload(int uploadId);

/* Why an upload has failed, in the server's words where it has any; empty while it runs and when it is done. `buffer`
 * has room for 102,400 bytes; what is longer is cut between two characters. 0, or -1 and an empty text for an unknown
 * id. */
TIDE_PIPE_API int TP_GetUploadErrorInfo(int uploadId, char* buffer);

/* The same for the last TP_ImportDeviceConfig of the process, on whatever thread it ran. */
TIDE_PIPE_API int TP_GetIpcImportErrorInfo(char* buffer);

/* The same for the last call of this thread that began a transfer, waited for one or asked for its status, in a buffer
 * of `size` bytes. 0, or -1 when there is no room even for a zero. */
TIDE_PIPE_API int TP_GetHTTPErrorInfo(char* buffer, int size);

/* Posts the file at `path` as a device's configuration. 0 or a negative TP_TransferStatus. */
TIDE_PIPE_API int TP_ImportDeviceConfig(const char* uploadUrl, const char* auth, const char* path);

/* Gets a device's configuration into `path`, as TP_StartDownload does. 0 or a negative TP_TransferStatus. */
TIDE_PIPE_API int TP_ExportDeviceConfig(const char* downloadUrl, const char* auth, const char* path);

/* Sends the file at `path`. 0 or a negative TP_TransferStatus. */
TIDE_PIPE_API int TP_Upload(const char* uploadUrl, const char* auth, const char* path, const char* contentType,
                            int iReserve);

/* Gets a file into `path`, with GET or, where there is a `downloadXml`, by posting that. The file is written as
 * "<path>.part" and takes its name, in place of whatever has it, when it is whole; the part of a failed or stopped
 * download is removed, that of a killed process is taken over by the next download to this path. A line that breaks
 * after the first bytes is tried again, up to four times without a new byte, from where it broke if the server can. The
 * id, negative on failure. */
TIDE_PIPE_API int TP_StartDownload(const char* downloadUrl, const char* auth, const char* path,
                                   const char* downloadXml);

/* The same, and tells the server `packageType` in the header "Package-Type". */
TIDE_PIPE_API int TP_StartDownloadEx(const char* downloadUrl, const char* auth, const char* path, int packageType,
                                     const char* downloadXml);
TIDE_PIPE_API int TP_StopDownload(int downloadId);

/* `progress` is percent: 0 while the length is not known, 100 when the file is there. 0, or -1 for an unknown id. */
TIDE_PIPE_API int TP_GetDownloadStatus(int downloadId, int* status, int* progress);

/* Sends the file at `path` to a device and follows what it does with it, as TP_StartAsynUpload. `upgradeFlag` is told
 * to the device in the header "Upgrade-Flag", `pReserve` is the content type. With a `statusUrl` the first half of the
 * progress is the sending and the second half the device's own; a device that shows no progress for twenty time-outs
 * has failed. */
TIDE_PIPE_API int TP_StartUpgrade(const char* upgradeUrl, const char* statusUrl, const char* auth, const char* path,
                                  const char* upgradeFlag, const char* pReserve);
TIDE_PIPE_API int TP_StopUpgrade(int upgradeId);
TIDE_PIPE_API int TP_UpgradeStatus(int upgradeId, int* status, int* progress);

#ifdef __cplusplus
}
#endif

#endif
