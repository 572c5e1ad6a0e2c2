#pragma once

#include "SigningSecret.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace VX
{

/// Signs links to blobs, so that who holds one may do one thing with one blob for a while, without an account.
/// The signature is HMAC-SHA256 over method, key, expiry and size limit.
/// @threads any
class PresignedUrl
{
public:
    /// A time at which no link has expired.
    static constexpr auto anyTime = std::chrono::system_clock::time_point::min();

    /// What a link allows.
    struct Grant
    {
        std::string method; ///< "PUT", or "GET", which allows HEAD too
        std::string key;
        std::chrono::sys_seconds expiry;
        std::uint64_t limit = 0; ///< bytes that may be uploaded
    };

    explicit PresignedUrl(const SigningSecret& secret);

    /// @return path and query of the link: "/storage/KEY?expires=SECONDS&limit=BYTES&signature=HEX"
    [[nodiscard]] std::string sign(const Grant& grant) const;

    /// @param method  of the request
    /// @param path    of the request, percent-decoded
    /// @param query   of the request, percent-decoded
    /// @return what the link allows; nothing where it is forged, damaged, for another method, or expired at `now`
    [[nodiscard]] std::optional<Grant> verify(std::string_view method, std::string_view path,
                                              const std::map<std::string, std::string>& query,
                                              std::chrono::system_clock::time_point now) const;

private:
    using Signature = std::array<unsigned char, 32>;
    [[nodiscard]] Signature signature_(const Grant& grant) const;

    SigningSecret secret_;
};

} // namespace VX
