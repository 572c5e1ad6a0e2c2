#include "PasswordHash.h"

#include "AccountSecrets.h"

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
    static const std::string hash = hashPassword(AccountSecrets::randomToken()).value_or(std::string());
    return hash;
}

} // namespace VX
