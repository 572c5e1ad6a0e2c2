#pragma once

#include <VXMesh/Export.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <filesystem>
#include <optional>
#include <string>

namespace VX
{

/// Answers that tests put in the place of the machine's own; what has no value is asked of the machine.
struct SystemFacts
{
    std::optional<std::string> version;        ///< GetVXVersionString
    std::optional<std::string> osNoSpaces;     ///< getOSNoSpaces
    std::optional<std::string> detailedOsName; ///< GetDetailedOSName
    std::optional<std::string> cpuId;          ///< GetCpuId
    std::optional<Json::Value> systemInfo;     ///< GetSystemInfoJson, before the contributor
    std::optional<tl::expected<std::filesystem::path, std::string>> executablePath; ///< SystemPath::getExecutablePath
};

/// From now on `facts` are answered; an empty record ends it.
/// @threads any
VXMESH_API void overrideSystemFacts(const SystemFacts& facts);

/// What `overrideSystemFacts` set.
/// @threads any
[[nodiscard]] VXMESH_API SystemFacts overriddenSystemFacts();

} // namespace VX
