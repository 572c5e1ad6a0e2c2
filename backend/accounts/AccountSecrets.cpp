#include "AccountSecrets.h"

#include <fmt/format.h>

#include <sodium.h>

#include <array>
#include <cstdint>
#include <cstdlib>

namespace VX
{

namespace
{

const unsigned char* bytes(std::string_view text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

} // namespace

AccountSecrets::AccountSecrets(const SigningSecret& secret)
{
    // Without the library's source of random numbers no secret is one.
    if (sodium_init() < 0)
        std::abort();
    static_assert(std::tuple_size_v<SigningSecret> == crypto_kdf_KEYBYTES);
    crypto_kdf_derive_from_key(key_.data(), key_.size(), 1, "accounts", secret.data());
}

std::string AccountSecrets::randomToken()
{
    std::array<unsigned char, 32> random{};
    randombytes_buf(random.data(), random.size());
    constexpr int variant = sodium_base64_VARIANT_URLSAFE_NO_PADDING;
    std::array<char, sodium_base64_ENCODED_LEN(std::tuple_size_v<decltype(random)>, variant)> text{};
    sodium_bin2base64(text.data(), text.size(), random.data(), random.size(), variant);
    return text.data();
}

std::string AccountSecrets::randomCode()
{
    return fmt::format("{:06}", randombytes_uniform(1'000'000));
}

std::string AccountSecrets::hash(std::string_view purpose, std::string_view value) const
{
    crypto_generichash_state state;
    crypto_generichash_init(&state, key_.data(), key_.size(), crypto_generichash_BYTES);
    // The length keeps a purpose and a value apart from others that make the same text together.
    const std::string head = fmt::format("{}:{}", purpose.size(), purpose);
    crypto_generichash_update(&state, bytes(head), head.size());
    crypto_generichash_update(&state, bytes(value), value.size());
    std::array<unsigned char, crypto_generichash_BYTES> digest{};
    crypto_generichash_final(&state, digest.data(), digest.size());
    std::array<char, 2 * crypto_generichash_BYTES + 1> text{};
    sodium_bin2hex(text.data(), text.size(), digest.data(), digest.size());
    return text.data();
}

bool AccountSecrets::equal(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && sodium_memcmp(a.data(), b.data(), a.size()) == 0;
}

} // namespace VX
