#include "engine/core/Credential.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>
#include <vector>

extern "C" {
#include <libavutil/base64.h>
}

namespace tide {

namespace {

constexpr std::size_t kMaxLength = 8192;
constexpr char kHeaderName[] = "authorization:";

bool isControl(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

std::string trimmed(const std::string& text)
{
    const auto first = text.find_first_not_of(" \t\r\n");
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

void appendUtf8(std::string& out, unsigned code)
{
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xc0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3f));
    } else {
        out += static_cast<char>(0xe0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3f));
        out += static_cast<char>(0x80 | (code & 0x3f));
    }
}

// Reads a JSON object whose values are texts; anything else in it makes it unreadable.
class FlatObject
{
public:
    explicit FlatObject(const std::string& text)
        : text_(text)
    {
    }

    std::optional<std::map<std::string, std::string>> read()
    {
        std::map<std::string, std::string> members;
        if (!accept('{'))
            return std::nullopt;
        do {
            std::string key, value;
            if (!readText(key) || !accept(':') || !readText(value))
                return std::nullopt;
            members[key] = value;
        } while (accept(','));
        if (!accept('}') || peek() != '\0')
            return std::nullopt;
        return members;
    }

private:
    char peek()
    {
        while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_])))
            ++at_;
        return at_ < text_.size() ? text_[at_] : '\0';
    }

    bool accept(char c)
    {
        if (peek() != c)
            return false;
        ++at_;
        return true;
    }

    bool readText(std::string& out)
    {
        if (!accept('"'))
            return false;
        while (at_ < text_.size() && text_[at_] != '"') {
            const char c = text_[at_++];
            if (c != '\\')
                out += c;
            else if (!readEscape(out))
                return false;
        }
        return accept('"');
    }

    bool readEscape(std::string& out)
    {
        static const std::map<char, char> simple{{'"', '"'},  {'\\', '\\'}, {'/', '/'},  {'b', '\b'},
                                                 {'f', '\f'}, {'n', '\n'},  {'r', '\r'}, {'t', '\t'}};
        const char c = at_ < text_.size() ? text_[at_++] : '\0';
        if (const auto found = simple.find(c); found != simple.end()) {
            out += found->second;
            return true;
        }
        return c == 'u' && readCode(out);
    }

    bool readCode(std::string& out)
    {
        const std::string digits = text_.substr(std::min(at_, text_.size()), 4);
        if (digits.size() != 4 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
            return false;
        at_ += 4;
        appendUtf8(out, static_cast<unsigned>(std::stoul(digits, nullptr, 16)));
        return true;
    }

    const std::string& text_;
    std::size_t at_ = 0;
};

Credential fromPair(const std::string& text)
{
    const auto colon = text.find(':');
    if (colon == std::string::npos)
        return {text, {}, {}};
    return {text.substr(0, colon), text.substr(colon + 1), {}};
}

std::optional<Credential> fromJson(const std::string& text)
{
    const auto members = FlatObject(text).read();
    if (!members)
        return std::nullopt;
    Credential credential;
    for (const char* key : {"user", "username", "userName"}) {
        if (const auto found = members->find(key); found != members->end())
            credential.user = found->second;
    }
    if (const auto found = members->find("password"); found != members->end())
        credential.password = found->second;
    return credential;
}

// A basic header is taken apart, since RTSP answers a server's challenge itself and needs user and password.
std::optional<Credential> fromHeader(const std::string& line)
{
    const std::string value = trimmed(line.substr(sizeof(kHeaderName) - 1));
    if (lowered(value.substr(0, 6)) != "basic ")
        return Credential{{}, {}, "Authorization: " + value};
    std::vector<std::uint8_t> bytes(value.size());
    const int length = av_base64_decode(bytes.data(), trimmed(value.substr(6)).c_str(), static_cast<int>(bytes.size()));
    if (length < 0)
        return std::nullopt;
    return fromPair({bytes.begin(), bytes.begin() + length});
}

bool hasControl(const Credential& credential)
{
    const std::string all = credential.user + credential.password + credential.header;
    return std::any_of(all.begin(), all.end(), isControl);
}

std::optional<Credential> parse(const std::string& text)
{
    if (text.empty())
        return Credential{};
    if (text.front() == '{')
        return fromJson(text);
    if (lowered(text.substr(0, sizeof(kHeaderName) - 1)) == kHeaderName)
        return fromHeader(text);
    return fromPair(text);
}

} // namespace

std::optional<Credential> parseCredential(const std::string& auth)
{
    if (auth.size() > kMaxLength)
        return std::nullopt;
    auto credential = parse(trimmed(auth));
    if (credential && hasControl(*credential))
        return std::nullopt;
    return credential;
}

} // namespace tide
