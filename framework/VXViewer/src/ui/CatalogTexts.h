#pragma once

#include <VXViewer/Export.h>

#include <filesystem>
#include <string>

namespace VX
{

/// All translations in a gettext catalogue (.mo, of this machine's byte order), one after the other; what cannot be
/// read of it is left out.
/// @threads any
[[nodiscard]] VXVIEWER_API std::string translationsIn(const std::filesystem::path& catalog);

} // namespace VX
