#include "PresignedUrl.h"

#include "BlobStore.h"

#include <fmt/format.h>

#include <sodium.h>

#include <cassert>
#include <charconv>
#include <system_error>

namespace VX
{

namespace
{

constexpr std::string_view storagePath = "/storage/";

static_assert(std::tuple_size_v<SigningSecret> == crypto_auth_hmacsha256_KEYBYTES);

template <typename Number>
std::optional<Number> parseNumber(const std::map<std::string, std::string>& query, const std::string& name)
{
    const auto found = query.find(name);
    if (found == query.end())
        return std::nullopt;
    const std::string& text = found->second;
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// What is signed; the parts hold no line end.
std::string signedText(const PresignedUrl::Grant& grant)
{
    return fmt::format("{}\n{}\n{}\n{}", grant.method, grant.key, grant.expiry.time_since_epoch().count(), grant.limit);
}

} // namespace

PresignedUrl::PresignedUrl(const SigningSecret& secret)
    : secret_(secret)
{
    [[maybe_unused]] const int ready = sodium_init();
    assert(ready >= 0);
}

PresignedUrl::Signature PresignedUrl::signature_(const Grant& grant) const
{
    const std::string text = signedText(grant);
    Signature signature;
    // The library takes text as bytes.
    crypto_auth_hmacsha256(signature.data(), reinterpret_cast<const unsigned char*>(text.data()), text.size(),
                           secret_.data());
    return signature;
}

std::string PresignedUrl::sign(const Grant& grant) const
{
    assert(BlobStore::isKey(grant.key));
    const Signature signature = signature_(grant);
    std::array<char, 2 * std::tuple_size_v<Signature> + 1> hex;
    sodium_bin2hex(hex.data(), hex.size(), signature.data(), signature.size());
    return fmt::format("{}{}?expires={}&limit={}&signature={}", storagePath, grant.key,
                       grant.expiry.time_since_epoch().count(), grant.limit, hex.data());
}

std::optional<PresignedUrl::Grant> PresignedUrl::verify(std::string_view method, std::string_view path,
                                                        const std::map<std::string, std::string>& query,
                                                        std::chrono::system_clock::time_point now) const
{
    const auto expires = parseNumber<std::chrono::seconds::rep>(query, "expires");
    const auto limit = parseNumber<std::uint64_t>(query, "limit");
    const auto hex = query.find("signature");
    if (!path.starts_with(storagePath) || !expires || !limit || hex == query.end())
        return std::nullopt;

    Grant grant{.method = std::string(method == "HEAD" ? "GET" : method),
                .key = std::string(path.substr(storagePath.size())),
                .expiry = std::chrono::sys_seconds(std::chrono::seconds(*expires)),
                .limit = *limit};
    Signature given{};
    std::size_t size = 0;
    if (sodium_hex2bin(given.data(), given.size(), hex->second.data(), hex->second.size(), nullptr, &size, nullptr) !=
            0 ||
        size != given.size())
        return std::nullopt;
    const Signature expected = signature_(grant);
    if (sodium_memcmp(given.data(), expected.data(), expected.size()) != 0)
        return std::nullopt;
    if (!BlobStore::isKey(grant.key) || now >= grant.expiry)
        return std::nullopt;
    return grant;
}

} // namespace VX
