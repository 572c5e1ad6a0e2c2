#include "BlobStore.h"

#include "DiskFull.h"
#include "RandomUuid.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>

namespace VX
{

namespace
{

constexpr const char* incomingFolder = "incoming";
constexpr const char* folders[] = {incomingFolder, "uploads", "results"};

bool isName(std::string_view name)
{
    const auto isLetterOrDigit = [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); };
    return !name.empty() && isLetterOrDigit(name.front()) &&
           std::ranges::all_of(name, [&](char c) { return isLetterOrDigit(c) || c == '-' || c == '.'; });
}

} // namespace

tl::expected<BlobStore, std::string> BlobStore::open(std::filesystem::path folder)
{
    std::error_code error;
    for (const char* name : folders)
    {
        std::filesystem::create_directories(folder / name, error);
        if (!error)
            std::filesystem::permissions(folder / name, std::filesystem::perms::owner_all, error);
        if (error)
            return tl::unexpected(
                fmt::format("The folder for the stored files cannot be created: {}.", error.message()));
    }
    return BlobStore(std::move(folder));
}

BlobStore::BlobStore(std::filesystem::path folder)
    : folder_(std::move(folder))
{
}

bool BlobStore::isKey(std::string_view key)
{
    const auto slash = key.find('/');
    return slash != std::string_view::npos && isName(key.substr(0, slash)) && isName(key.substr(slash + 1)) &&
           key.substr(0, slash) != incomingFolder;
}

std::filesystem::path BlobStore::incomingFile() const
{
    return folder_ / incomingFolder / randomUuid();
}

tl::expected<void, std::string> BlobStore::put(const std::filesystem::path& file, const std::string& key) const
{
    std::error_code error;
    std::filesystem::rename(file, path(key), error);
    if (!error)
        return {};
    if (isDiskFull(error))
        return tl::unexpected(diskFullText());
    return tl::unexpected(fmt::format("The file cannot be stored: {}.", error.message()));
}

std::filesystem::path BlobStore::path(const std::string& key) const
{
    return folder_ / key;
}

std::optional<std::uint64_t> BlobStore::size(const std::string& key) const
{
    std::error_code error;
    const std::uint64_t bytes = std::filesystem::file_size(path(key), error);
    return error ? std::nullopt : std::optional(bytes);
}

void BlobStore::remove(const std::string& key) const
{
    std::error_code ignored;
    std::filesystem::remove(path(key), ignored);
}

std::size_t BlobStore::removeOlderThan(std::filesystem::file_time_type time) const
{
    std::size_t removed = 0;
    for (const char* name : folders)
    {
        // Another process may remove the same files meanwhile, so no error matters here.
        std::error_code error;
        for (std::filesystem::directory_iterator file(folder_ / name, error), end; !error && file != end;
             file.increment(error))
        {
            std::error_code gone;
            const auto written = std::filesystem::last_write_time(file->path(), gone);
            if (!gone && written < time && std::filesystem::remove(file->path(), gone))
                ++removed;
        }
    }
    return removed;
}

std::optional<std::uint64_t> BlobStore::freeSpace() const
{
    std::error_code error;
    const auto space = std::filesystem::space(folder_, error);
    return error ? std::nullopt : std::optional<std::uint64_t>(space.available);
}

} // namespace VX
