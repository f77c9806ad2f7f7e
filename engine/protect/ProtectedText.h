#pragma once

#include "engine/core/Failure.h"

#include <cstddef>
#include <string>

namespace tide {

// A protected text is base64 of: version, salt, nonce, cipher text (AES-256-GCM), tag. The version, the salt and the
// type of the text are authenticated with it.
constexpr std::size_t kProtectedBuffer = 1024; // with its zero, what hosts make room for
constexpr std::size_t kMaxProtected = 720;     // bytes of plain text that fit

Failure protect(int type, const std::string& text, std::string& out);
Failure recover(int type, const std::string& text, std::string& out);

} // namespace tide
