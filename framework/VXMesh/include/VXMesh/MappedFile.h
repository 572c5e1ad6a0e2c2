#pragma once

#include <VXMesh/Export.h>

#include <tl/expected.hpp>

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace VX
{

/// A file mapped into memory for reading, until the object dies. Movable; the bytes stay where they are.
/// Another program that shortens the file while it is mapped ends the process, as with every mapping.
class VXMESH_API MappedFile
{
public:
    /// Maps all of `path`; an empty file gives no bytes.
    /// @return `Cannot open "NAME": REASON.` where the file is missing, cannot be read or is not a regular file
    /// @threads any
    [[nodiscard]] static tl::expected<MappedFile, std::string> open(const std::filesystem::path& path);

    MappedFile() = default;
    MappedFile(MappedFile&& other) noexcept;
    MappedFile& operator=(MappedFile&& other) noexcept;
    ~MappedFile();

    /// @threads any
    [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }

    /// The same bytes as characters.
    [[nodiscard]] std::string_view text() const
    {
        return {reinterpret_cast<const char*>(bytes_.data()), bytes_.size()};
    }

    /// Takes the whole pages of `offset` to `offset + size` out of the process's memory, which a reader does with what
    /// it has read; looked at again, they come back from the file.
    /// @threads any
    void release(std::size_t offset, std::size_t size) const;

private:
    std::span<const std::byte> bytes_;
};

} // namespace VX
