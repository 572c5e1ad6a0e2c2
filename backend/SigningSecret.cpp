#include "SigningSecret.h"

#include <VXMesh/AtomicFile.h>
#include <VXMesh/StringConvert.h>

#include <fmt/format.h>

#include <sodium.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <optional>
#include <system_error>

namespace VX
{

namespace
{

using MaybeSecret = tl::expected<std::optional<SigningSecret>, std::string>;

/// @return nothing where there is no such file
MaybeSecret readSecret(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
    {
        const std::error_code reason(errno, std::generic_category());
        if (reason == std::errc::no_such_file_or_directory)
            return std::nullopt;
        return tl::unexpected(fmt::format("The key for links cannot be read: {}.", reason.message()));
    }
    const std::string bytes(std::istreambuf_iterator<char>(stream), {});
    SigningSecret secret;
    if (bytes.size() != secret.size())
        return tl::unexpected(
            fmt::format("The key for links is damaged: remove the file \"{}\" and start the service again.",
                        utf8string(file.filename())));
    std::ranges::copy(bytes, secret.begin());
    return secret;
}

/// Puts a new secret there unless another process was faster: unlike a rename, a hard link replaces nothing.
tl::expected<void, std::string> createSecret(const std::filesystem::path& file)
{
    if (sodium_init() < 0)
        return tl::unexpected(std::string("The key for links cannot be written: no source of random numbers."));
    SigningSecret secret;
    randombytes_buf(secret.data(), secret.size());

    auto temporary = AtomicFile::create(file, privateFileMode);
    if (!temporary)
        return tl::unexpected(std::move(temporary.error()));
    std::ofstream stream(temporary->temporaryPath(), std::ios::binary);
    std::ranges::copy(secret, std::ostreambuf_iterator<char>(stream));
    stream.close();
    std::error_code error(stream ? 0 : EIO, std::generic_category());
    if (stream)
        std::filesystem::create_hard_link(temporary->temporaryPath(), file, error);
    if (error && error != std::errc::file_exists)
        return tl::unexpected(fmt::format("The key for links cannot be written: {}.", error.message()));
    return {};
}

} // namespace

tl::expected<SigningSecret, std::string> loadOrCreateSecret(const std::filesystem::path& file)
{
    MaybeSecret found = readSecret(file);
    if (found && !found->has_value())
    {
        if (auto created = createSecret(file); !created)
            return tl::unexpected(std::move(created.error()));
        found = readSecret(file);
    }
    if (!found)
        return tl::unexpected(std::move(found.error()));
    const std::optional<SigningSecret>& secret = *found;
    if (!secret)
        return tl::unexpected(std::string("The key for links cannot be read: it was removed again."));
    return *secret;
}

} // namespace VX
