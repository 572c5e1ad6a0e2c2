#pragma once

#include <tl/expected.hpp>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace VX
{

/// Files under keys such as "uploads/NAME": a folder name, a slash and a file name, each of letters, digits, "-" and
/// ".", and not beginning with a dot. A blob appears under its key when it is complete.
/// @threads any; several processes at once
class BlobStore
{
public:
    /// Creates `folder` (mode 0700) where it is missing.
    /// @return `The folder for the stored files cannot be created: REASON.`
    [[nodiscard]] static tl::expected<BlobStore, std::string> open(std::filesystem::path folder);

    /// Whether `key` is a name that a blob may have.
    [[nodiscard]] static bool isKey(std::string_view key);

    /// The name of a new file, not there yet, to write a blob into before `put`.
    [[nodiscard]] std::filesystem::path incomingFile() const;

    /// Makes the complete `file` the blob `key`, in place of an older one; `file` must lie on the same file system.
    /// @return `diskFullText()`; or `The file cannot be stored: REASON.`
    [[nodiscard]] tl::expected<void, std::string> put(const std::filesystem::path& file, const std::string& key) const;

    /// Where the blob lies; its file is there as long as nobody removes the blob.
    [[nodiscard]] std::filesystem::path path(const std::string& key) const;

    /// @return bytes; nothing where there is no such blob
    [[nodiscard]] std::optional<std::uint64_t> size(const std::string& key) const;

    void remove(const std::string& key) const;

    /// Removes the blobs, and what was never completed, last written before `time`.
    /// @return how many files it removed
    [[nodiscard]] std::size_t removeOlderThan(std::filesystem::file_time_type time) const;

    /// Bytes that the disk has left for this user; nothing where the system does not say.
    [[nodiscard]] std::optional<std::uint64_t> freeSpace() const;

private:
    explicit BlobStore(std::filesystem::path folder);

    std::filesystem::path folder_;
};

} // namespace VX
