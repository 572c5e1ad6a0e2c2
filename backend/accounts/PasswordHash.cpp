#include "PasswordHash.h"

#include <sodium.h>

#include <array>

namespace VX
{

tl::expected<std::string, std::string> hashPassword(std::string_view password)
{
    std::array<char, crypto_pwhash_STRBYTES> hash{};
    if (sodium_init() < 0 ||
        crypto_pwhash_str(hash.data(), password.data(), password.size(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                          crypto_pwhash_MEMLIMIT_INTERACTIVE) != 0)
        return tl::unexpected(std::string("The service is short of memory: try again."));
    return std::string(hash.data());
}

bool isPasswordOf(const std::string& hash, std::string_view password)
{
    return sodium_init() >= 0 && crypto_pwhash_str_verify(hash.c_str(), password.data(), password.size()) == 0;
}

const std::string& hashOfNobody()
{
    // The form of libsodium with the limits of hashPassword: version, memory, passes, threads, salt, hash.
    static const std::string hash =
        "$argon2id$v=19$m=65536,t=2,p=1$" + std::string(22, 'A') + '$' + std::string(43, 'A');
    return hash;
}

} // namespace VX
