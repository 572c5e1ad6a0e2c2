#pragma once

#include <filesystem>

namespace VX
{

/// True when `path` can be opened and is a font that text can be drawn with.
/// @threads any
[[nodiscard]] bool isFontFile(const std::filesystem::path& path);

} // namespace VX
