#pragma once

#include <json/value.h>

namespace VX
{

class Viewer;

/// What agents want to know of the viewer first.
/// @threads the UI thread
[[nodiscard]] Json::Value viewerStatus(const Viewer& viewer);

/// The schema of that.
[[nodiscard]] Json::Value viewerStatusSchema();

} // namespace VX
