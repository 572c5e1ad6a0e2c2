#pragma once

#include <cstdlib>
#include <string>

namespace VX
{

/// The environment variable `name`; empty where it is not set.
[[nodiscard]] inline std::string environmentVariable(const char* name)
{
    const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nothing sets variables once threads run
    return value ? value : "";
}

} // namespace VX
