#pragma once

#include <VXMesh/StringConvert.h>

#include <string>

namespace VX
{

/// The words of another library as the end of a sentence: "Permission denied" becomes "permission denied".
[[nodiscard]] inline std::string startLower(const std::string& text)
{
    return toLower(text.substr(0, 1)) + (text.empty() ? text : text.substr(1));
}

} // namespace VX
