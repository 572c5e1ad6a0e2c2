#pragma once

#include <filesystem>

namespace VX
{

/// Removes what a conversion of `input` that failed left in `outputDirectory`, its packed and its converted file, and
/// the working folders there of all conversions that are over for a day. What belongs to others stays; nothing is
/// reported.
/// @threads any, while no conversion of an input with this stem runs
void removeConversionFiles(const std::filesystem::path& outputDirectory, const std::filesystem::path& input);

} // namespace VX
