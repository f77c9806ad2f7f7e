#include "engine/protect/ProtectedText.h"

#include "engine/protect/SecretKey.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace tide {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kVersion = 1;
constexpr std::size_t kNonceSize = 12;
constexpr std::size_t kTagSize = 16;
constexpr std::size_t kSaltAt = 1;
constexpr std::size_t kNonceAt = kSaltAt + sizeof(Salt);
constexpr std::size_t kTextAt = kNonceAt + kNonceSize;

struct CipherDeleter
{
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using CipherPtr = std::unique_ptr<EVP_CIPHER_CTX, CipherDeleter>;

std::string toBase64(const Bytes& bytes)
{
    Bytes out(4 * ((bytes.size() + 2) / 3) + 1);
    const int length = EVP_EncodeBlock(out.data(), bytes.data(), static_cast<int>(bytes.size()));
    return {out.begin(), out.begin() + length};
}

// Only the one form that toBase64 writes; nothing, where it is another.
Bytes fromBase64(const std::string& text)
{
    Bytes bytes(text.size());
    const int length = EVP_DecodeBlock(bytes.data(), reinterpret_cast<const unsigned char*>(text.data()),
                                       static_cast<int>(text.size()));
    const auto padding = std::count(text.begin(), text.end(), '=');
    bytes.resize(static_cast<std::size_t>(std::max<std::ptrdiff_t>(0, length - padding)));
    return toBase64(bytes) == text ? bytes : Bytes();
}

// What the tag covers beside the text.
Bytes associatedData(int type, const Bytes& message)
{
    Bytes data(message.begin(), message.begin() + kNonceAt);
    const std::string word = std::to_string(type);
    data.insert(data.end(), word.begin(), word.end());
    return data;
}

enum class Direction
{
    Decrypt = 0,
    Encrypt = 1
};

// Begins with the nonce and the associated data of a message.
CipherPtr beginCipher(Direction direction, const CipherKey& key, int type, const Bytes& message)
{
    CipherPtr cipher(EVP_CIPHER_CTX_new());
    const Bytes covered = associatedData(type, message);
    int length = 0;
    const bool isReady =
        cipher &&
        EVP_CipherInit_ex(cipher.get(), EVP_aes_256_gcm(), nullptr, key.data(), message.data() + kNonceAt,
                          static_cast<int>(direction)) == 1 &&
        EVP_CipherUpdate(cipher.get(), nullptr, &length, covered.data(), static_cast<int>(covered.size())) == 1;
    return isReady ? std::move(cipher) : nullptr;
}

Bytes newMessage(const Salt& salt, std::size_t textSize)
{
    Bytes message(kTextAt + textSize + kTagSize);
    message[0] = kVersion;
    std::copy(salt.begin(), salt.end(), message.begin() + kSaltAt);
    const bool isFresh = RAND_bytes(message.data() + kNonceAt, kNonceSize) == 1;
    return isFresh ? message : Bytes();
}

} // namespace

Failure protect(int type, const std::string& text, std::string& out)
{
    if (text.size() > kMaxProtected)
        return Failure::TooLong;
    const auto derived = SecretKey::instance().own();
    if (!derived)
        return Failure::WrongState;
    Bytes message = newMessage(derived->salt, text.size());
    const CipherPtr cipher = message.empty() ? nullptr : beginCipher(Direction::Encrypt, derived->key, type, message);
    int length = 0;
    if (!cipher ||
        EVP_CipherUpdate(cipher.get(), message.data() + kTextAt, &length,
                         reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size())) != 1 ||
        EVP_CipherFinal_ex(cipher.get(), message.data() + kTextAt + length, &length) != 1 ||
        EVP_CIPHER_CTX_ctrl(cipher.get(), EVP_CTRL_AEAD_GET_TAG, kTagSize, &*(message.end() - kTagSize)) != 1)
        return Failure::Crypto;
    out = toBase64(message);
    return Failure::None;
}

Failure recover(int type, const std::string& text, std::string& out)
{
    if (text.size() >= kProtectedBuffer)
        return Failure::TooLong;
    Bytes message = fromBase64(text);
    if (message.size() < kTextAt + kTagSize || message[0] != kVersion)
        return Failure::Crypto;
    Salt salt{};
    std::copy_n(message.begin() + kSaltAt, salt.size(), salt.begin());
    const auto key = SecretKey::instance().derive(salt);
    if (!key)
        return Failure::WrongState;
    const CipherPtr cipher = beginCipher(Direction::Decrypt, *key, type, message);
    const std::size_t size = message.size() - kTextAt - kTagSize;
    Bytes plain(size + 1);
    int length = 0;
    if (!cipher ||
        EVP_CipherUpdate(cipher.get(), plain.data(), &length, message.data() + kTextAt, static_cast<int>(size)) != 1 ||
        EVP_CIPHER_CTX_ctrl(cipher.get(), EVP_CTRL_AEAD_SET_TAG, kTagSize, &*(message.end() - kTagSize)) != 1 ||
        EVP_CipherFinal_ex(cipher.get(), plain.data() + length, &length) != 1)
        return Failure::Crypto;
    out.assign(plain.begin(), plain.begin() + static_cast<std::ptrdiff_t>(size));
    return Failure::None;
}

} // namespace tide
