#include "engine/protect/SecretKey.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <algorithm>

namespace tide {

namespace {

constexpr std::uint64_t kScryptCost = 1 << 15;
constexpr std::uint64_t kScryptBlock = 8;
constexpr std::uint64_t kScryptLanes = 1;
constexpr std::uint64_t kScryptMemory = 64 << 20;
constexpr std::size_t kMaxKept = 8;

bool scrypt(const std::string& secret, const Salt& salt, CipherKey& key)
{
    return EVP_PBE_scrypt(secret.data(), secret.size(), salt.data(), salt.size(), kScryptCost, kScryptBlock,
                          kScryptLanes, kScryptMemory, key.data(), key.size()) == 1;
}

} // namespace

SecretKey& SecretKey::instance()
{
    static SecretKey* const key = new SecretKey; // never destroyed: threads of the host may call until the very end
    return *key;
}

bool SecretKey::set(int keyType, const std::string& key)
{
    Salt salt{};
    if (RAND_bytes(salt.data(), static_cast<int>(salt.size())) != 1)
        return false;
    const std::lock_guard lock(lock_);
    OPENSSL_cleanse(secret_.data(), secret_.size());
    secret_ = std::to_string(keyType) + ":" + key;
    ownSalt_ = salt;
    derived_.clear();
    return true;
}

std::optional<SecretKey::Derived> SecretKey::own()
{
    Salt salt{};
    {
        const std::lock_guard lock(lock_);
        salt = ownSalt_;
    }
    const auto key = derive(salt);
    return key ? std::optional(Derived{salt, *key}) : std::nullopt;
}

std::optional<CipherKey> SecretKey::derive(const Salt& salt)
{
    std::string secret;
    {
        const std::lock_guard lock(lock_);
        if (const auto key = kept(salt))
            return key;
        secret = secret_;
    }
    Derived derived{salt, {}};
    if (secret.empty() || !scrypt(secret, salt, derived.key))
        return std::nullopt;
    const std::lock_guard lock(lock_);
    if (secret == secret_) {
        derived_.push_front(derived);
        derived_.resize(std::min(derived_.size(), kMaxKept));
    }
    OPENSSL_cleanse(secret.data(), secret.size());
    return derived.key;
}

std::optional<CipherKey> SecretKey::kept(const Salt& salt) const
{
    const auto found =
        std::find_if(derived_.begin(), derived_.end(), [&](const Derived& entry) { return entry.salt == salt; });
    return found != derived_.end() ? std::optional(found->key) : std::nullopt;
}

} // namespace tide
