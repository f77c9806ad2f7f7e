#pragma once

#include <string>
#include <type_traits>
#include <vector>

namespace engine_double {

int answerCall(const char* name, std::vector<std::string> arguments, bool answersId);

template <class T> std::string asText(T value)
{
    if constexpr (std::is_same_v<T, const char*>)
        return value ? value : "null";
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

} // namespace engine_double
