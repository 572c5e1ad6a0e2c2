#pragma once

#include <tl/expected.hpp>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <span>
#include <string>

namespace VX
{

/// The bytes that a request sends: a text in memory, or a file of the size that it had when it was opened.
/// @threads one at a time
class UploadSource
{
public:
    /// No bytes.
    UploadSource() = default;

    explicit UploadSource(std::string text);

    /// Overwrites the text, which may hold a password.
    ~UploadSource();

    UploadSource(UploadSource&&) = default;
    UploadSource& operator=(UploadSource&&) = default;

    /// @return `Cannot open "NAME": REASON.`
    [[nodiscard]] static tl::expected<UploadSource, std::string> open(const std::filesystem::path& file);

    [[nodiscard]] std::uint64_t size() const { return size_; }

    /// @return the bytes put into the front of `out`, 0 only at the end; `Cannot read "NAME": REASON.`, also where the
    /// file has become shorter
    [[nodiscard]] tl::expected<std::size_t, std::string> read(std::span<char> out);

    /// Goes to a byte, as a request that is sent once more needs it.
    [[nodiscard]] bool seek(std::uint64_t position);

private:
    std::string text_;
    std::filesystem::path path_;
    std::optional<std::ifstream> file_;
    std::uint64_t size_ = 0;
    std::uint64_t position_ = 0;
};

} // namespace VX
