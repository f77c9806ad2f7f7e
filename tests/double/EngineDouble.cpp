#include "tests/double/EngineDouble.h"

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <iterator>
#include <map>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>

namespace engine_double {

namespace {

struct Script
{
    std::vector<Call> calls;
    std::map<std::string, int> answers;
    std::map<std::string, std::function<void()>> actions;
    std::map<std::string, std::vector<double>> numbers;
    std::map<std::string, std::string> texts;
    int failIn = 0;
};

struct Stream
{
    int parent = -1;
    std::function<void(void*)> draw;
    int running = 0; // hooks that run now
};

struct Double : Script
{
    std::mutex mutex; // guards everything; never held while an action or a hook runs
    std::condition_variable left;
    std::map<int, std::shared_ptr<Stream>> live;
    std::pair<TP_MessageHandler, void*> messageHandler;
    TP_FishMsgFun fishHandler = nullptr;
    int nextId = 100;
};

Double& instance()
{
    static auto* const made = new Double;
    return *made;
}

template <class Use> auto locked(Use use)
{
    const std::lock_guard lock(instance().mutex);
    return use(instance());
}

template <class Value> Value lookUp(std::map<std::string, Value> Script::*table, const char* name)
{
    return locked([&](Double& s) {
        const auto found = (s.*table).find(name);
        return found != (s.*table).end() ? found->second : Value();
    });
}

template <class Value> void tell(std::map<std::string, Value> Script::*table, const std::string& name, Value value)
{
    locked([&](Double& s) { (s.*table)[name] = std::move(value); });
}

template <class Number> std::string joined(std::initializer_list<Number> numbers)
{
    std::string text;
    for (const Number number : numbers)
        text += (text.empty() ? "" : ",") + std::to_string(number);
    return text;
}

int answerCall(const char* name, std::vector<std::string> arguments, bool answersId)
{
    locked([&](Double& s) { s.calls.push_back({name, std::move(arguments)}); });
    if (const auto action = lookUp(&Script::actions, name))
        action();
    return locked([&](Double& s) {
        if (s.failIn > 0 && name != std::string("TP_GetLastError") && --s.failIn == 0)
            return -1;
        if (const auto told = s.answers.find(name); told != s.answers.end())
            return told->second;
        return answersId ? s.nextId++ : 0;
    });
}

void copyText(const char* name, char* buffer)
{
    const std::string text = lookUp(&Script::texts, name);
    if (!text.empty())
        std::memcpy(buffer, text.c_str(), text.size() + 1);
}

std::string bytesAsText(const void* record, std::size_t size)
{
    if (!record)
        return "null";
    const auto* bytes = static_cast<const unsigned char*>(record);
    std::string text;
    for (std::size_t i = 0; i < size; ++i) {
        text += "0123456789abcdef"[bytes[i] >> 4];
        text += "0123456789abcdef"[bytes[i] & 15];
    }
    return text;
}

std::string asText(const _TP_REGION* region)
{
    return region ? joined({region->left, region->top, region->right, region->bottom}) : "null";
}

std::string asText(const _TP_FISHEYEPARAM* p)
{
    if (!p)
        return "null";
    return "mask " + std::to_string(p->mask) + " at " + joined({p->x, p->y, p->z, p->angle}) + " color " +
           bytesAsText(p->color, sizeof p->color);
}

std::string asText(const _TP_PTZPARAM* point)
{
    return point ? joined({point->x, point->y}) : "null";
}

std::string asText(const _TP_SRTRANSFER* transfer)
{
    if (!transfer || !transfer->element)
        return "null";
    const _TP_SRTRANSFERELEMENT& e = *transfer->element;
    return joined({e.e0, e.e1, e.e2, e.e3});
}

template <class T> std::string asText(T value)
{
    if constexpr (std::is_same_v<T, const char*>)
        return value ? value : "null";
    else if constexpr (std::is_same_v<T, std::string>)
        return value;
    else if constexpr (std::is_pointer_v<T>)
        return value ? "pointer" : "null";
    else
        return std::to_string(value);
}

template <class... Arguments> int record(const char* name, Arguments... arguments)
{
    return answerCall(name, {asText(arguments)...}, false);
}

template <class... Arguments> int recordId(const char* name, Arguments... arguments)
{
    return answerCall(name, {asText(arguments)...}, true);
}

// Puts the numbers that the test gave into the out parameters, in order.
template <class... Out> void fill(const char* name, Out*... out)
{
    const std::vector<double> numbers = lookUp(&Script::numbers, name);
    std::size_t next = 0;
    ((next < numbers.size() ? void(*out = static_cast<Out>(numbers[next++])) : void()), ...);
}

int opened(int playId, int parent = -1)
{
    if (playId != -1)
        locked([=](Double& s) { s.live[playId] = std::make_shared<Stream>(Stream{parent, {}}); });
    return playId;
}

// A stream takes its views along, and waits until the hooks have left.
int closed(int playId, int result)
{
    Double& s = instance();
    std::unique_lock lock(s.mutex);
    std::vector<std::shared_ptr<Stream>> ended;
    for (auto at = s.live.begin(); result >= 0 && playId >= 0 && at != s.live.end();) {
        const bool ends = at->first == playId || at->second->parent == playId;
        if (ends)
            ended.push_back(at->second);
        at = ends ? s.live.erase(at) : std::next(at);
    }
    for (const auto& stream : ended)
        s.left.wait(lock, [&] { return stream->running == 0; });
    return result;
}

void setDrawHook(int playId, std::function<void(void*)> hook)
{
    locked([&](Double& s) {
        if (const auto found = s.live.find(playId); found != s.live.end())
            found->second->draw = std::move(hook);
    });
}

} // namespace

void reset()
{
    for (const int playId : livePlays())
        closed(playId, 0);
    locked([](Double& s) { static_cast<Script&>(s) = Script(); });
}

std::vector<Call> calls()
{
    return locked([](const Double& s) { return s.calls; });
}

std::vector<Call> calls(const std::string& name)
{
    std::vector<Call> found;
    const std::vector<Call> all = calls();
    std::copy_if(all.begin(), all.end(), std::back_inserter(found), [&](const Call& c) { return c.name == name; });
    return found;
}

void answer(const std::string& name, int result)
{
    tell(&Script::answers, name, result);
}

void onCall(const std::string& name, std::function<void()> action)
{
    tell(&Script::actions, name, std::move(action));
}

void give(const std::string& name, std::vector<double> numbers)
{
    tell(&Script::numbers, name, std::move(numbers));
}

void giveText(const std::string& name, std::string text)
{
    tell(&Script::texts, name, std::move(text));
}

void failCall(int nth)
{
    locked([=](Double& s) { s.failIn = nth; });
}

void emitMessage(int playId, unsigned message)
{
    const auto [handler, user] = locked([](const Double& s) { return s.messageHandler; });
    if (handler)
        handler(playId, message, user);
}

void emitFishMessage(void* data, unsigned length)
{
    if (const auto handler = locked([](const Double& s) { return s.fishHandler; }))
        handler(0, 0, data, length);
}

// The stop of the stream waits meanwhile.
bool drawFrame(int playId, void* drawContext)
{
    Double& s = instance();
    std::unique_lock lock(s.mutex);
    const auto found = s.live.find(playId);
    if (found == s.live.end() || !found->second->draw)
        return false;
    const std::shared_ptr<Stream> stream = found->second;
    const auto draw = stream->draw;
    ++stream->running;
    lock.unlock();
    draw(drawContext);
    lock.lock();
    --stream->running;
    s.left.notify_all();
    return true;
}

std::vector<int> livePlays()
{
    return locked([](const Double& s) {
        std::vector<int> ids;
        for (const auto& stream : s.live)
            ids.push_back(stream.first);
        return ids;
    });
}

} // namespace engine_double

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
    return static_cast<unsigned>(record("TP_GetLastError"));
}

int TP_SetMessageHandler(TP_MessageHandler handler, void* user)
{
    const int result = record("TP_SetMessageHandler", handler, user);
    if (result == 0)
        locked([=](Double& s) { s.messageHandler = {handler, user}; });
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
    locked([=](Double& s) { s.fishHandler = fn; });
    return record("TP_SetFishMsgCallBack", fn);
}
