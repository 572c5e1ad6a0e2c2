#pragma once

#include "tests/support/TempConfig.h"
#include "tests/system/RunningProgram.h"

#include <string>
#include <vector>

namespace VX::Test
{

/// The real program with user folders of its own, without a display.
class ProgramRun
{
public:
    /// @param program  another copy of it than the one that was built
    explicit ProgramRun(std::filesystem::path program = QX_BIN_DIR "/Quorvix");

    /// Runs it until it ends.
    [[nodiscard]] ProgramResult run(const std::vector<std::string>& arguments) const;

    [[nodiscard]] RunningProgram start(const std::vector<std::string>& arguments) const;

    /// For files of the test, and where the outputs lie.
    [[nodiscard]] const TempDir& folder() const { return folder_; }

    /// Where the user's folders lie: "config", "data", "state" and "run".
    [[nodiscard]] const TempDir& userFolder() const { return config_.folder(); }

private:
    std::filesystem::path program_;
    TempConfig config_{"Quorvix"};
    EnvironmentVariable display_{"DISPLAY", std::nullopt};
    EnvironmentVariable wayland_{"WAYLAND_DISPLAY", std::nullopt};
    TempDir folder_;
};

} // namespace VX::Test
