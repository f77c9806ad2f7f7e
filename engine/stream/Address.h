#pragma once

#include "engine/core/Credential.h"

#include <map>
#include <optional>
#include <string>

namespace tide {

enum class Scheme
{
    File,
    Http,
    Rtsp,
    Test
};

// Where a stream comes from. Only these schemes are known, so that no address makes libavformat read what it should
// not.
struct Address
{
    Scheme scheme = Scheme::File;
    std::string location;  // a path, a url without user and password, or the query of a test pattern
    Credential credential; // from the url itself
};

std::optional<Address> parseAddress(const std::string& url);

// A transport code of TP_Play turned into what libavformat is told. Unknown codes count as 0.
const char* rtspTransport(int protocol);
bool wantsHttps(int protocol);

// The url that libavformat opens: with the credential in it. Must not be logged.
std::string urlWithCredential(const std::string& url, const Credential& credential);

// "a=1&b=2"; percent escapes are resolved, a later key replaces an earlier one.
std::map<std::string, std::string> parseQuery(const std::string& query);
std::string withQuery(const std::string& url, const std::string& key, const std::string& value);

} // namespace tide
