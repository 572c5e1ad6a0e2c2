#pragma once

#include <VXViewer/Export.h>

#include <optional>
#include <string>
#include <string_view>

namespace VX
{

/// `text` (UTF-8) as the search compares it: lower case, without the accents of Latin letters.
/// @threads any
[[nodiscard]] VXVIEWER_API std::u32string foldedText(std::string_view text);

/// How well `text` has the characters of `pattern` in their order, both of `foldedText`: more for characters that
/// begin words or follow one another, and for a text with little else.
/// @return nothing where it has not; 0 for an empty pattern
/// @threads any
[[nodiscard]] VXVIEWER_API std::optional<int> fuzzyScore(std::u32string_view pattern, std::u32string_view text);

/// True when a word of `text` begins with `pattern`, both of `foldedText`.
/// @threads any
[[nodiscard]] VXVIEWER_API bool hasWordPrefix(std::u32string_view pattern, std::u32string_view text);

} // namespace VX
