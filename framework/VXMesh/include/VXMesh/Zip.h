#pragma once

#include <VXMesh/Export.h>
#include <VXMesh/Progress.h>

#include <tl/expected.hpp>

#include <cstdint>
#include <filesystem>
#include <string>

namespace VX
{

/// How `compressZip` works.
struct CompressZipSettings
{
    /// 1 is fast, 9 is small.
    int compressionLevel = 1;
    ProgressCallback progress;
};

/// What `decompressZip` accepts.
struct DecompressZipSettings
{
    /// Of all entries together, uncompressed.
    std::uint64_t maxBytes = std::uint64_t{4} << 30U;
    /// Files and folders.
    std::uint64_t maxEntries = 10'000;
    /// Uncompressed bytes for each byte of the archive, beyond the first megabyte.
    std::uint64_t maxRatio = 200;
    ProgressCallback progress;
};

/// Packs all files and folders below `sourceFolder` into `zipFile`, under their names relative to it.
/// The archive (mode 0600) takes its name when it is complete: after an error there is none, or still the old one.
/// @return one sentence that names the file and what went wrong with it; or "Operation was canceled"
/// @threads any
[[nodiscard]] VXMESH_API tl::expected<void, std::string> compressZip(const std::filesystem::path& zipFile,
                                                                     const std::filesystem::path& sourceFolder,
                                                                     const CompressZipSettings& settings);

/// Unpacks `zipFile` into `targetFolder`, which is created where it is missing. Refused are archives with more than
/// the settings allow, absolute names, names with "..", "\" or a control character, symbolic links and other special
/// files, and names that exist already. After an error everything that it wrote is removed again.
/// @return one sentence that names the archive and what is wrong with it; or "Operation was canceled"
/// @threads any
[[nodiscard]] VXMESH_API tl::expected<void, std::string> decompressZip(const std::filesystem::path& zipFile,
                                                                       const std::filesystem::path& targetFolder,
                                                                       const DecompressZipSettings& settings);

} // namespace VX
