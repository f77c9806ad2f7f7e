// The engine's C face: calls one after the other, a byte for the function, then its arguments. Addresses are test patterns
// and files of the fuzzer's own folder; nothing leaves the machine.

#include "fuzz/Input.h"
#include "include/tide_pipe/tide_pipe.h"

#include <X11/Xlib.h>

#include <array>
#include <cstdlib>
#include <deque>
#include <functional>
#include <type_traits>
#include <unistd.h>
#include <vector>

namespace {

using fuzz::Input;

unsigned long g_window = 0; // on the display, where there is one
std::vector<int> g_ids;     // that calls of this input have answered

// What an input's arguments point to, while its calls run.
std::deque<std::string> g_texts;
std::deque<std::vector<char>> g_records;

void drawNothing(int /*playId*/, void* /*drawContext*/, void* /*user*/) {}
void drawNoView(void* /*user*/, unsigned, unsigned, void* /*drawContext*/, unsigned, unsigned) {}
void hearNothing(int /*playId*/, TP_ADDITION_DATA_INFO* /*info*/, void* /*user*/) {}
void hearNoFish(int, int, void* /*data*/, unsigned /*length*/) {}

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
    else if constexpr (std::is_same_v<Argument, TP_DrawFun>)
        return input.take<bool>() ? drawNothing : nullptr;
    else if constexpr (std::is_same_v<Argument, TP_FECDrawFun>)
        return input.take<bool>() ? drawNoView : nullptr;
    else if constexpr (std::is_same_v<Argument, TP_AdditionFun>)
        return input.take<bool>() ? hearNothing : nullptr;
    else if constexpr (std::is_same_v<Argument, TP_FishMsgFun>)
        return input.take<bool>() ? hearNoFish : nullptr;
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

#define LUMEN_FUZZ_CALL(function) [](Input& input) { call(function, input); }

// A transfer record points on, and must point to something.
void rotate(Input& input)
{
    _TP_SRTRANSFERELEMENT element{input.take<float>(), input.take<float>(), input.take<float>(), input.take<float>()};
    const _TP_SRTRANSFER transfer{input.take<bool>() ? &element : nullptr, 0};
    TP_SR_Rotate(static_cast<int>(takeNumber(input)), &transfer);
}

constexpr void (*kCalls[])(Input&) = {
    LUMEN_FUZZ_CALL(TP_Play),
    LUMEN_FUZZ_CALL(TP_ReversePlay),
    LUMEN_FUZZ_CALL(TP_Stop),
    LUMEN_FUZZ_CALL(TP_Pause),
    LUMEN_FUZZ_CALL(TP_Resume),
    LUMEN_FUZZ_CALL(TP_Fast),
    LUMEN_FUZZ_CALL(TP_Slow),
    LUMEN_FUZZ_CALL(TP_FrameForward),
    LUMEN_FUZZ_CALL(TP_GetScale),
    LUMEN_FUZZ_CALL(TP_GetPictureSize),
    LUMEN_FUZZ_CALL(TP_SetReconnectInfo),
    LUMEN_FUZZ_CALL(TP_SetDisplayRegion),
    LUMEN_FUZZ_CALL(TP_SetDisplayBuf),
    LUMEN_FUZZ_CALL(TP_WndResolutionChange),
    LUMEN_FUZZ_CALL(TP_RigisterDrawFun),
    LUMEN_FUZZ_CALL(TP_EnableIVS),
    LUMEN_FUZZ_CALL(TP_RenderPrivateDataEx),
    LUMEN_FUZZ_CALL(TP_SetOverlayPriInfoFlag),
    LUMEN_FUZZ_CALL(TP_RegAdditionFun),
    LUMEN_FUZZ_CALL(TP_JPEGCapture),
    LUMEN_FUZZ_CALL(TP_BMPCapture),
    LUMEN_FUZZ_CALL(TP_GetOSDTime),
    LUMEN_FUZZ_CALL(TP_StartSave),
    LUMEN_FUZZ_CALL(TP_StopSave),
    LUMEN_FUZZ_CALL(TP_SwitchFile),
    LUMEN_FUZZ_CALL(TP_GetRecordFileSize),
    LUMEN_FUZZ_CALL(TP_OpenSound),
    LUMEN_FUZZ_CALL(TP_CloseSound),
    LUMEN_FUZZ_CALL(TP_SetVolume),
    LUMEN_FUZZ_CALL(TP_GetVolume),
    LUMEN_FUZZ_CALL(TP_FEC_Play),
    LUMEN_FUZZ_CALL(TP_FECRigisterDrawFun),
    LUMEN_FUZZ_CALL(TP_FEC_GetParam),
    LUMEN_FUZZ_CALL(TP_FEC_UpDateParam),
    LUMEN_FUZZ_CALL(TP_FEC_SetDrawType),
    LUMEN_FUZZ_CALL(TP_FEC_SetFinshDraw),
    LUMEN_FUZZ_CALL(TP_FEC_IsInFinshDraw),
    LUMEN_FUZZ_CALL(TP_FEC_PTZ2WindowEx),
    LUMEN_FUZZ_CALL(TP_FEC_TestScan),
    LUMEN_FUZZ_CALL(TP_FEC_CapturePIC),
    LUMEN_FUZZ_CALL(TP_StartFishListener),
    LUMEN_FUZZ_CALL(TP_StopFishListener),
    LUMEN_FUZZ_CALL(TP_SetFishMsgCallBack),
    rotate,
    LUMEN_FUZZ_CALL(TP_StartAsynUpload),
    LUMEN_FUZZ_CALL(TP_StopAsynUpload),
    LUMEN_FUZZ_CALL(TP_GetUploadErrorInfo),
    LUMEN_FUZZ_CALL(TP_Upload),
    LUMEN_FUZZ_CALL(TP_StartDownload),
    LUMEN_FUZZ_CALL(TP_StopDownload),
    LUMEN_FUZZ_CALL(TP_GetDownloadStatus),
    LUMEN_FUZZ_CALL(TP_StartVoiceTalk),
    LUMEN_FUZZ_CALL(TP_StopVoiceTalk),
    LUMEN_FUZZ_CALL(TP_Encrypt),
    LUMEN_FUZZ_CALL(TP_Decrypt),
};

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
        kCalls[input.take<std::uint8_t>() % std::size(kCalls)](input);
    for (const int id : g_ids)
        TP_Stop(id);
    g_ids.clear();
    g_texts.clear();
    g_records.clear();
    return 0;
}
