#include "engine/stream/Address.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

namespace tide {

namespace {

constexpr std::size_t kMaxLength = 8192;

struct KnownScheme
{
    const char* name;
    Scheme scheme;
    bool hasHost;
};

constexpr KnownScheme kSchemes[] = {
    {"file", Scheme::File, false}, {"http", Scheme::Http, true},  {"https", Scheme::Http, true},
    {"rtsp", Scheme::Rtsp, true},  {"rtsps", Scheme::Rtsp, true}, {"test", Scheme::Test, false},
};

// 0 and 1 are TCP and UDP as everywhere; 4 and 5 are the tunnels through HTTP and HTTPS.
constexpr std::array<const char*, 6> kTransports = {"tcp", "udp", "udp_multicast", "udp+tcp", "http", "https"};

bool hasControl(const std::string& text)
{
    return std::any_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; });
}

// The letters before a colon that stands before any slash, in small letters; empty for a plain path.
std::string schemeOf(const std::string& url)
{
    const auto colon = url.find_first_of(":/?#");
    if (colon == std::string::npos || url[colon] != ':' || colon == 0)
        return {};
    std::string scheme = url.substr(0, colon);
    std::transform(scheme.begin(), scheme.end(), scheme.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return scheme;
}

std::string unescaped(const std::string& text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string digits = text.substr(i, 3).substr(text[i] == '%' ? 1 : 0);
        const bool escape = text[i] == '%' && digits.size() == 2 &&
                            std::all_of(digits.begin(), digits.end(), [](unsigned char c) { return std::isxdigit(c); });
        out += escape ? static_cast<char>(std::stoi(digits, nullptr, 16)) : text[i];
        i += escape ? 2 : 0;
    }
    return out;
}

std::string escaped(const std::string& text)
{
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) || std::strchr("-._~", c)) {
            out += c;
        } else {
            out += '%';
            out += kHex[byte >> 4];
            out += kHex[byte & 15];
        }
    }
    return out;
}

// "file:/a b", "file:a" and "file://host/a%20b": only the last form is a real url with escapes.
std::string filePath(const std::string& rest)
{
    if (rest.compare(0, 2, "//") != 0)
        return rest;
    const auto slash = rest.find('/', 2);
    return slash == std::string::npos ? std::string() : unescaped(rest.substr(slash));
}

// Takes "user:password@" out of the url into the credential.
std::optional<Address> networkAddress(Scheme scheme, const std::string& url)
{
    const auto start = url.find("://");
    if (start == std::string::npos)
        return std::nullopt;
    const auto host = start + 3;
    const std::string authority = url.substr(host, url.find_first_of("/?#", host) - host);
    const auto at = authority.rfind('@');
    const auto hostLength = authority.size() - (at == std::string::npos ? 0 : at + 1);
    if (hostLength == 0)
        return std::nullopt;
    Address address{scheme, url, {}};
    if (at != std::string::npos) {
        const auto colon = std::min(authority.find(':'), at);
        address.credential.user = unescaped(authority.substr(0, colon));
        address.credential.password =
            colon < at ? unescaped(authority.substr(colon + 1, at - colon - 1)) : std::string();
        address.location.erase(host, at + 1);
    }
    return address;
}

} // namespace

std::optional<Address> parseAddress(const std::string& url)
{
    if (url.empty() || url.size() > kMaxLength || hasControl(url))
        return std::nullopt;
    const std::string name = schemeOf(url);
    if (name.empty())
        return Address{Scheme::File, url, {}};
    const auto known =
        std::find_if(std::begin(kSchemes), std::end(kSchemes), [&](const KnownScheme& s) { return name == s.name; });
    if (known == std::end(kSchemes))
        return std::nullopt;
    if (known->hasHost)
        return networkAddress(known->scheme, name + url.substr(name.size()));
    const std::string rest = url.substr(name.size() + 1);
    if (known->scheme == Scheme::File)
        return filePath(rest).empty() ? std::nullopt : std::optional(Address{Scheme::File, filePath(rest), {}});
    if (rest != "pattern" && rest.compare(0, 8, "pattern?") != 0)
        return std::nullopt;
    return Address{Scheme::Test, rest.size() > 8 ? rest.substr(8) : std::string(), {}};
}

const char* rtspTransport(int protocol)
{
    const auto index = static_cast<std::size_t>(protocol);
    return index < kTransports.size() ? kTransports[index] : kTransports[0];
}

bool wantsHttps(int protocol)
{
    return protocol == 5;
}

std::string urlWithCredential(const std::string& url, const Credential& credential)
{
    const auto start = url.find("://");
    if (start == std::string::npos || (credential.user.empty() && credential.password.empty()))
        return url;
    std::string out = url;
    return out.insert(start + 3, escaped(credential.user) + ":" + escaped(credential.password) + "@");
}

std::map<std::string, std::string> parseQuery(const std::string& query)
{
    std::map<std::string, std::string> values;
    for (std::size_t start = 0; start < query.size();) {
        const auto end = std::min(query.find('&', start), query.size());
        const std::string part = query.substr(start, end - start);
        const auto equals = std::min(part.find('='), part.size());
        values[unescaped(part.substr(0, equals))] =
            equals < part.size() ? unescaped(part.substr(equals + 1)) : std::string();
        start = end + 1;
    }
    return values;
}

std::string withQuery(const std::string& url, const std::string& key, const std::string& value)
{
    return url + (url.find('?') == std::string::npos ? '?' : '&') + key + '=' + escaped(value);
}

} // namespace tide
