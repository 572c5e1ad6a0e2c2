#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/RibbonSearch.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

/// The words that are searched for.
/// @param text  in UTF-8
/// @threads any
[[nodiscard]] VXVIEWER_API std::vector<std::u32string> searchWords(std::string_view text);

/// How well `command` fits `words`: each is found in the caption, else in a keyword, the path or as the beginning of a
/// word of the tooltip, which count for less.
/// @return nothing where a word is not found at all
/// @threads any
[[nodiscard]] VXVIEWER_API std::optional<int> commandScore(const std::vector<std::u32string>& words,
                                                           const RibbonSearchCommand& command);

} // namespace VX
