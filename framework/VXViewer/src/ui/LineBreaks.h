#pragma once

#include <VXViewer/Export.h>

#include <functional>
#include <string>

namespace VX
{

/// `text` with line ends where a line of it would be wider than `width`. Words stay whole where they fit into a line;
/// between Chinese and Japanese signs a line may end anywhere, but for what must not begin or end one (commas,
/// brackets, small kana). @param text  UTF-8
/// @param advance  the width of a sign, in the unit of `width`
/// @threads any
[[nodiscard]] VXVIEWER_API std::string withLineEnds(const std::string& text, float width,
                                                    const std::function<float(char32_t)>& advance);

/// True where `text` has Chinese or Japanese signs: only spaces end a line of others.
/// @threads any
[[nodiscard]] VXVIEWER_API bool hasWideSigns(const std::string& text);

} // namespace VX
