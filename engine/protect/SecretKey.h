#pragma once

#include <array>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>

namespace tide {

using Salt = std::array<std::uint8_t, 16>;
using CipherKey = std::array<std::uint8_t, 32>;

// The secret that strings are protected with. A cipher key is derived from it with scrypt and a salt, which costs a few
// tens of milliseconds and 32 MiB each; the keys of the salts last used are kept. Any thread may call.
class SecretKey
{
public:
    static SecretKey& instance();

    bool set(int keyType, const std::string& key); // false: the random generator has no salt to give

    struct Derived
    {
        Salt salt{};
        CipherKey key{};
    };
    std::optional<Derived> own();                      // of the salt that new texts are protected with
    std::optional<CipherKey> derive(const Salt& salt); // nothing before a secret is set

private:
    std::optional<CipherKey> kept(const Salt& salt) const;

    mutable std::mutex lock_; // guards what follows; free while a key is derived
    std::string secret_;      // empty before set
    Salt ownSalt_{};
    std::list<Derived> derived_; // the newest first
};

} // namespace tide
