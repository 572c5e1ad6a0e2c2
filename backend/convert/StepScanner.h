#pragma once

#include "StepFile.h"

#include <tl/expected.hpp>

#include <string>
#include <string_view>

namespace VX
{

/// Splits the text of an ISO 10303-21 file into its instances: finds the sections, the ends of the statements (strings
/// and comments respected), and of each instance the number and the type. What is no instance in a data section is
/// passed over, so that a file with a few damaged lines still opens.
/// @param text  the whole file; the result points into it
/// @return the instances of all data sections; or one sentence for the user:
///   "The file is empty."
///   "The file is not a STEP file: it does not begin with ISO-10303-21."
///   "The STEP file is cut off: it ends before its data. Save or download it again."
///   "The STEP file is cut off or damaged: its data has no end. Save or download it again."
///   "The STEP file holds no data."
///   "The STEP file has more than four billion entities."
/// @threads any; uses the TBB pool
[[nodiscard]] tl::expected<StepFile, std::string> scanStepFile(std::string_view text);

} // namespace VX
