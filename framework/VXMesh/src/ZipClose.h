#pragma once

#include "ZipHandle.h"

#include <VXMesh/Progress.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <string>

namespace VX
{

/// Writes an archive out and closes it.
/// @param shownPath  the file that messages name
/// @return `Cannot write "NAME": REASON.` or "Operation was canceled"; the archive is as it was then
[[nodiscard]] tl::expected<void, std::string> closeZip(ZipHandle zip, const std::filesystem::path& shownPath,
                                                       const ProgressCallback& progress);

} // namespace VX
