#include "engine/core/Failure.h"
#include "engine/protect/ProtectedText.h"
#include "engine/protect/SecretKey.h"
#include "include/tide_pipe/tide_pipe.h"

#include <string>

using namespace tide;

namespace {

constexpr std::size_t kMaxKey = 4096;

int deliver(Failure failure, const std::string& text, char* out, int* outLength)
{
    if (failure != Failure::None)
        return fail(failure);
    out[text.copy(out, kProtectedBuffer - 1)] = '\0';
    if (outLength)
        *outLength = static_cast<int>(text.size());
    return 0;
}

} // namespace

int TP_SetSecretKey(int keyType, const char* key)
{
    const std::string secret = key ? key : "";
    if (secret.empty())
        return fail(Failure::BadArgument);
    if (secret.size() > kMaxKey)
        return fail(Failure::TooLong);
    return SecretKey::instance().set(keyType, secret) ? 0 : fail(Failure::Crypto);
}

int TP_Encrypt(int type, const char* text, char* out, int* outLength, int, bool encrypted)
{
    if (!text || !out)
        return fail(Failure::BadArgument);
    std::string plain = text;
    if (std::string inner; encrypted && recover(type, plain, inner) == Failure::None)
        plain = inner;
    std::string result;
    const Failure failure = protect(type, plain, result);
    return deliver(failure, result, out, outLength);
}

int TP_Decrypt(int type, const char* text, char* out, int* outLength, int, bool)
{
    if (!text || !out)
        return fail(Failure::BadArgument);
    std::string result;
    const Failure failure = recover(type, text, result);
    return deliver(failure, result, out, outLength);
}
