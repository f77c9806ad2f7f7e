#pragma once

#include "include/tide_pipe/tide_pipe.h"

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

// How the 67 functions record a call and find their answer.
namespace engine_double {

int answerCall(const char* name, std::vector<std::string> arguments, bool answersId);
std::vector<double> given(const char* name);
void copyText(const char* name, char* buffer); // nothing when the test gave no text
unsigned scriptedError();

std::string bytesAsText(const void* record, std::size_t size); // hexadecimal, "null" for a null pointer

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

std::string asText(const _TP_REGION* region);
std::string asText(const _TP_FISHEYEPARAM* param);
std::string asText(const _TP_PTZPARAM* point);
std::string asText(const _TP_SRTRANSFER* transfer);

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
    const std::vector<double> numbers = given(name);
    std::size_t next = 0;
    ((next < numbers.size() ? void(*out = static_cast<Out>(numbers[next++])) : void()), ...);
}

// The streams and views that live, with the hooks that the library has registered.
int opened(int playId, int parent = -1); // answers playId; -1 is no stream
int closed(int playId, int result);      // answers the result; a refused stop closes nothing
void setDrawHook(int playId, std::function<void(void* drawContext)> hook);
void setMessageHandler(TP_MessageHandler handler, void* user);
void setFishMessageHandler(TP_FishMsgFun handler);
void closeAll();

} // namespace engine_double
