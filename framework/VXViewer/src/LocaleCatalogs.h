#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace VX
{

/// The gettext catalogues (.mo) of the language in use, of all domains; none in English.
/// @threads any
[[nodiscard]] std::vector<std::filesystem::path> catalogsInUse();

/// Another number after every change of what `catalogsInUse` returns.
/// @threads any
[[nodiscard]] std::uint64_t catalogsRevision();

} // namespace VX
