#pragma once

#include <chrono>
#include <string>

namespace tide {

// How the engine meets servers: from the environment of the process, read at each use.
struct HttpSettings
{
    bool verifiesTls = true;           // TIDE_PIPE_TLS_VERIFY, "off" trusts anybody
    std::string authorities;           // TIDE_PIPE_CA_FILE, a PEM file in place of the system's authorities
    std::chrono::seconds patience{30}; // TIDE_PIPE_HTTP_TIMEOUT, seconds without a byte until a line counts as dead
};

HttpSettings httpSettings();

} // namespace tide
