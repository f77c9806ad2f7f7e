#include "engine/transfer/HttpSettings.h"

#include <cstdlib>

namespace tide {

namespace {

constexpr long kLongestPatience = 3600;

std::string variable(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

HttpSettings httpSettings()
{
    HttpSettings settings;
    settings.verifiesTls = variable("TIDE_PIPE_TLS_VERIFY") != "off";
    settings.authorities = variable("TIDE_PIPE_CA_FILE");
    const long seconds = std::strtol(variable("TIDE_PIPE_HTTP_TIMEOUT").c_str(), nullptr, 10);
    if (seconds > 0 && seconds <= kLongestPatience)
        settings.patience = std::chrono::seconds(seconds);
    return settings;
}

} // namespace tide
