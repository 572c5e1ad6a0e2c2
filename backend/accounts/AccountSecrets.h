#pragma once

#include "backend/SigningSecret.h"

#include <string>
#include <string_view>

namespace VX
{

/// Makes the secrets of accounts, and what of them may be stored.
/// @threads any
class AccountSecrets
{
public:
    /// @param secret  of the data folder; the key of this object is derived from it
    explicit AccountSecrets(const SigningSecret& secret);

    /// 256 random bits: 43 letters, digits, "-" and "_".
    [[nodiscard]] static std::string randomToken();

    /// Six random digits.
    [[nodiscard]] static std::string randomCode();

    /// The hash of `value`, 64 hexadecimal digits: BLAKE2b with a key that is in no database, so that not even six
    /// digits can be guessed from their hash. Equal values of different `purpose` have different hashes.
    [[nodiscard]] std::string hash(std::string_view purpose, std::string_view value) const;

    /// Takes the same time wherever two texts of one length differ.
    [[nodiscard]] static bool equal(std::string_view a, std::string_view b);

private:
    SigningSecret key_{};
};

} // namespace VX
