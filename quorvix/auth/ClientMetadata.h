#pragma once

#include <json/value.h>

namespace VX
{

/// What the identity service is told of the program and its computer: an object of texts. "platform" and "version" are
/// always there; "os", "cpu" (with the number of threads), "gpu", "gl_version", "ram", "width", "height",
/// "scaling_percent" and "num_monitors" where `GetSystemInfoJson` knows them. The size of the largest monitor comes
/// whole or not at all, and the number of monitors only where there is one.
/// @threads any
[[nodiscard]] Json::Value clientMetadata();

} // namespace VX
