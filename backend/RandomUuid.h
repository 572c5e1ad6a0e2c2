#pragma once

#include <string>

namespace VX
{

/// A random UUID (version 4) from the system's secure source, in its usual form of 36 characters.
/// @threads any
std::string randomUuid();

} // namespace VX
