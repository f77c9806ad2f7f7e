#pragma once

#include <optional>
#include <string>

namespace tide {

// What a host gives as `auth`. Never written to a log.
struct Credential
{
    std::string user;
    std::string password;
    std::string header; // a whole header line without its line end, in place of user and password

    bool isEmpty() const { return user.empty() && password.empty() && header.empty(); }
};

// Understands "user:password", a flat JSON object with "user" (or "username", "userName") and "password", and a header
// line "Authorization: ...". Empty text is the empty credential; text with control characters is refused.
std::optional<Credential> parseCredential(const std::string& auth);

} // namespace tide
