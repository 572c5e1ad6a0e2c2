#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/ObjectFile.h>

#include <tl/expected.hpp>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace VX
{

class MappedFile;

/// The bytes of a file that a reader takes apart, and the name that messages give it.
class VXMESH_API Source
{
public:
    /// @param path  names the content; nothing is read from there
    /// @param file  the mapping that `bytes` belong to, if they do
    Source(std::span<const std::byte> bytes, std::filesystem::path path, const MappedFile* file = nullptr);

    [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }

    /// The same as characters, without the byte order mark that text may begin with.
    [[nodiscard]] std::string_view text() const;

    [[nodiscard]] std::size_t size() const { return bytes_.size(); }

    /// The file's name without folder and extension, in UTF-8: what a single object is called.
    [[nodiscard]] std::string stem() const;

    /// `Cannot open "NAME": REASON`
    [[nodiscard]] tl::unexpected<std::string> error(std::string_view reason) const;

    /// `"NAME" was written by a newer version of Quorvix (format N); update to open it.`
    [[nodiscard]] tl::unexpected<std::string> newerVersionError(int format) const;

    /// `"NAME": REMARK`
    [[nodiscard]] std::string warning(std::string_view remark) const;

    /// Says that these bytes are done with, so that the pages of a large file do not pile up in memory.
    void release(std::size_t offset, std::size_t size) const;

    /// The same for a part of `text()`.
    void release(std::string_view part) const;

private:
    std::span<const std::byte> bytes_;
    std::filesystem::path path_;
    const MappedFile* file_;
};

using SourceReader =
    std::function<tl::expected<LoadedObjects, std::string>(const Source& source, const ProgressCallback& progress)>;

/// Maps `path` and hands it to `reader`.
/// @return what `reader` returns; or why the file cannot be opened; or "Operation was canceled"
[[nodiscard]] tl::expected<LoadedObjects, std::string>
readMapped(const std::filesystem::path& path, const ProgressCallback& progress, const SourceReader& reader);

} // namespace VX
