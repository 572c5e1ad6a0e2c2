#pragma once

#include "EnvironmentVariable.h"
#include "TempDir.h"

#include <string>

namespace VX::Test
{

/// Until the end of the scope the user's folders (UserFolders.h), and so the settings and the log, lie in a temporary
/// folder, empty at first, under the application name given.
class TempConfig
{
public:
    explicit TempConfig(const std::string& applicationName = "QuorvixTest");
    ~TempConfig();

    TempConfig(const TempConfig&) = delete;
    TempConfig& operator=(const TempConfig&) = delete;

    /// Holds "config", "data", "state" and "run", what the XDG variables name.
    [[nodiscard]] const TempDir& folder() const { return folder_; }

private:
    TempDir folder_;
    EnvironmentVariable config_;
    EnvironmentVariable data_;
    EnvironmentVariable state_;
    EnvironmentVariable runtime_;
};

} // namespace VX::Test
