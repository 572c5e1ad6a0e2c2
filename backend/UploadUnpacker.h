#pragma once

#include <VXMesh/Progress.h>

#include <tl/expected.hpp>

#include <cstdint>
#include <filesystem>
#include <string>

namespace VX
{

/// Unpacks an uploaded archive, which holds one file named "input" and nothing else, into the new `folder`.
/// @param maxBytes  that the file may have
/// @param progress  asked to go on every now and then
/// @return the unpacked file; what `decompressZip` says of a damaged or too large archive; `The uploaded archive must
///         hold one file named "input" and nothing else.`; or "Operation was canceled"
/// @threads any
[[nodiscard]] tl::expected<std::filesystem::path, std::string> unpackUpload(const std::filesystem::path& archive,
                                                                            const std::filesystem::path& folder,
                                                                            std::uint64_t maxBytes,
                                                                            ProgressCallback progress);

} // namespace VX
