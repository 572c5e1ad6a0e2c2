#pragma once

#include <filesystem>

namespace VX
{

/// The program beside this one that does what needs the desktop's toolkit: file dialogs, pictures on the clipboard.
/// @return empty where it is not installed
/// @threads any
[[nodiscard]] std::filesystem::path helperProgram();

} // namespace VX
