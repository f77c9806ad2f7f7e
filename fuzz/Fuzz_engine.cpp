// The engine's C face: calls one after the other, a byte for the function, then its arguments. Addresses are test patterns
// and files of the fuzzer's own folder; nothing leaves the machine.

#include "fuzz/Input.h"
#include "include/tide_pipe/tide_pipe.h"

#include <X11/Xlib.h>

#include <deque>
#include <tuple>
#include <unistd.h>
#include <vector>

namespace {

using fuzz::Input;

unsigned long g_window = 0; // on the display, where there is one
std::vector<int> g_ids;     // that calls of this input have answered

// What an input's arguments point to, while its calls run.
std::deque<std::string> g_texts;
std::deque<std::vector<char>> g_records;

template <class... Arguments> void doNothing(Arguments...) {}

// An id of this input, a small number or any.
long long takeNumber(Input& input)
{
    const auto kind = input.take<std::uint8_t>();
    if (kind % 3 == 0)
        return g_ids.empty() ? 0 : g_ids[kind / 3 % g_ids.size()];
    return kind % 3 == 1 ? kind / 3 - 2 : input.take<std::int32_t>();
}

// No path leaves the folder, no address names a host.
const char* takeText(Input& input)
{
    std::string text = input.takeUntil('\0');
    if (text == "null")
        return nullptr;
    std::replace(text.begin(), text.end(), '/', '_');
    return g_texts.emplace_back(std::move(text)).c_str();
}

// Room for any record or buffer of the interface, filled from the input; or null.
void* takeRecord(Input& input)
{
    const auto filled = input.take<std::uint8_t>();
    if (filled == 255)
        return nullptr;
    std::vector<char>& record = g_records.emplace_back(110'000);
    for (std::size_t i = 0; i < filled; ++i)
        record[i] = input.take<char>();
    return record.data();
}

template <class Argument> Argument take(Input& input)
{
    if constexpr (std::is_same_v<Argument, const char*>)
        return takeText(input);
    else if constexpr (std::is_function_v<std::remove_pointer_t<Argument>>)
        return input.take<bool>() ? static_cast<Argument>(doNothing) : nullptr;
    else if constexpr (std::is_same_v<Argument, TP_WId>)
        return input.take<std::uint8_t>() < 200 ? g_window : static_cast<TP_WId>(takeNumber(input));
    else if constexpr (std::is_pointer_v<Argument>)
        return static_cast<Argument>(takeRecord(input));
    else if constexpr (std::is_floating_point_v<Argument>)
        return input.take<Argument>();
    else
        return static_cast<Argument>(takeNumber(input));
}

template <class Result, class... Arguments> void call(Result (*function)(Arguments...), Input& input)
{
    const std::tuple<Arguments...> arguments{take<Arguments>(input)...}; // in their order
    const Result result = std::apply(function, arguments);
    if constexpr (std::is_same_v<Result, int>) {
        if (result > 0)
            g_ids.push_back(result);
    }
}

void call(void (*function)(Input&), Input& input)
{
    function(input);
}

// A transfer record points on, and must point to something.
void rotate(Input& input)
{
    _TP_SRTRANSFERELEMENT element{input.take<float>(), input.take<float>(), input.take<float>(), input.take<float>()};
    const _TP_SRTRANSFER transfer{input.take<bool>() ? &element : nullptr, 0};
    TP_SR_Rotate(static_cast<int>(takeNumber(input)), &transfer);
}

template <auto... kFunctions> void callOneOf(Input& input)
{
    constexpr void (*calls[])(Input&) = {[](Input& from) { call(kFunctions, from); }...};
    calls[input.take<std::uint8_t>() % std::size(calls)](input);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    std::string folder = "/tmp/fuzz-engine-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr || chdir(folder.c_str()) != 0)
        return 1;
    static Display* const display = XOpenDisplay(nullptr);
    if (display) {
        g_window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 320, 240, 0, 0, 0);
        XMapWindow(display, g_window);
        XSync(display, False);
    }
    TP_SetSecretKey(1, "secret");
    return TP_InitLib("");
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    while (input)
        callOneOf<TP_Play, TP_ReversePlay, TP_Stop, TP_Pause, TP_Resume, TP_Fast, TP_Slow, TP_FrameForward, TP_GetScale,
                  TP_GetPictureSize, TP_SetReconnectInfo, TP_SetDisplayRegion, TP_SetDisplayBuf, TP_WndResolutionChange,
                  TP_RigisterDrawFun, TP_EnableIVS, TP_RenderPrivateDataEx, TP_SetOverlayPriInfoFlag, TP_RegAdditionFun,
                  TP_JPEGCapture, TP_BMPCapture, TP_GetOSDTime, TP_StartSave, TP_StopSave, TP_SwitchFile,
                  TP_GetRecordFileSize, TP_OpenSound, TP_CloseSound, TP_SetVolume, TP_GetVolume, TP_FEC_Play,
                  TP_FECRigisterDrawFun, TP_FEC_GetParam, TP_FEC_UpDateParam, TP_FEC_SetDrawType, TP_FEC_SetFinshDraw,
                  TP_FEC_IsInFinshDraw, TP_FEC_PTZ2WindowEx, TP_FEC_TestScan, TP_FEC_CapturePIC, TP_StartFishListener,
                  TP_StopFishListener, TP_SetFishMsgCallBack, rotate, TP_StartAsynUpload, TP_StopAsynUpload,
                  TP_GetUploadErrorInfo, TP_Upload, TP_StartDownload, TP_StopDownload, TP_GetDownloadStatus,
                  TP_StartVoiceTalk, TP_StopVoiceTalk, TP_Encrypt, TP_Decrypt>(input);
    for (const int id : g_ids)
        TP_Stop(id);
    g_ids.clear();
    g_texts.clear();
    g_records.clear();
    return 0;
}
