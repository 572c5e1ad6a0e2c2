#pragma once

#include <VXMesh/Object.h>
#include <VXViewer/Export.h>

#include <string>
#include <vector>

namespace VX
{

/// What of `root` and all below it a file with this extension (in lower case with its dot) does not keep: a sentence
/// each, for agents.
/// @threads the UI thread
[[nodiscard]] VXVIEWER_API std::vector<std::string> saveLosses(const Object& root, const std::string& extension);

} // namespace VX
