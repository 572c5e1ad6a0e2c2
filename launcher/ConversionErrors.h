#pragma once

#include <filesystem>
#include <string>

namespace VX
{

/// The error of a conversion as it is shown: `error` itself and, where it is the bare number of a system error
/// ("errno 28"), below it what that means and what to do next.
/// @param outputDirectory  where the conversion keeps its files; when it is missing, the text holds the command that
///                         creates it
/// @threads any
[[nodiscard]] std::string explainConversionError(const std::string& error,
                                                 const std::filesystem::path& outputDirectory);

} // namespace VX
