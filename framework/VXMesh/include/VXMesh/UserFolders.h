#pragma once

#include <VXMesh/Export.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <string>

namespace VX
{

/// The folders of the current user and the current application name (`Config::reset`), after the XDG Base Directory
/// Specification. None is created by asking for it. Where no home folder is known and the variable is not set either,
/// they lie in a private temporary folder (mode 0700) that is removed when the process ends; a warning says so once.
/// @threads any

/// Settings: $XDG_CONFIG_HOME/APPLICATION, else ~/.config/APPLICATION.
[[nodiscard]] VXMESH_API std::filesystem::path getUserConfigDir();

/// Data: $XDG_DATA_HOME/APPLICATION, else ~/.local/share/APPLICATION.
[[nodiscard]] VXMESH_API std::filesystem::path getUserDataDir();

/// Logs and the like: $XDG_STATE_HOME/APPLICATION, else ~/.local/state/APPLICATION.
[[nodiscard]] VXMESH_API std::filesystem::path getUserStateDir();

/// What lives as long as the login: $XDG_RUNTIME_DIR/application (lower case), else the folder "run" of the state.
[[nodiscard]] VXMESH_API std::filesystem::path getUserRuntimeDir();

/// Creates `folder` and those above it that are missing, for this user alone (mode 0700). One that exists is left as
/// it is.
/// @return `Cannot create "NAME": REASON.`
/// @threads any
[[nodiscard]] VXMESH_API tl::expected<void, std::string> createUserFolder(const std::filesystem::path& folder);

} // namespace VX
