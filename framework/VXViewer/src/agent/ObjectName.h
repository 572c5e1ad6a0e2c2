#pragma once

#include <VXViewer/Export.h>

#include <tl/expected.hpp>

#include <string>
#include <string_view>

namespace VX
{

// The names that agents give to objects: something to read, in one line, of 255 characters at most.
// @threads any

/// The name that `text` gives: without the blanks around it.
/// @return what is wrong with it and what to do
[[nodiscard]] VXVIEWER_API tl::expected<std::string, std::string> objectNameOf(std::string_view text);

/// `name`, which ends in a number as that of a copy does, with less in front of the number where it is too long.
[[nodiscard]] VXVIEWER_API std::string shortenedName(const std::string& name);

} // namespace VX
