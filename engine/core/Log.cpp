#include "engine/core/Log.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <regex>
#include <string>

extern "C" {
#include <libavutil/log.h>
}

namespace tide {

namespace {

struct Level
{
    const char* name;
    int value;
};

constexpr Level kLevels[] = {{"error", AV_LOG_ERROR}, {"info", AV_LOG_INFO}, {"debug", AV_LOG_DEBUG}};

std::string withoutCredentials(const std::string& line)
{
    static const std::regex inUrl(R"(://[^/@\s]*@)");
    static const std::regex inHeader(R"((authorization:)[^\r\n]*)", std::regex::icase);
    return std::regex_replace(std::regex_replace(line, inUrl, "://***@"), inHeader, "$1 ***");
}

void write(void* context, int level, const char* format, va_list arguments)
{
    if (level > av_log_get_level())
        return;
    std::array<char, 2048> line{};
    int prefix = 1;
    av_log_format_line2(context, level, format, arguments, line.data(), static_cast<int>(line.size()), &prefix);
    std::fputs(withoutCredentials(line.data()).c_str(), stderr);
}

int wantedLevel()
{
    const char* wish = std::getenv("TIDE_PIPE_LOG");
    for (const Level& level : kLevels) {
        if (wish && std::string(wish) == level.name)
            return level.value;
    }
    return AV_LOG_QUIET;
}

} // namespace

void quietFfmpeg()
{
    av_log_set_level(wantedLevel());
    av_log_set_callback(write);
}

} // namespace tide
