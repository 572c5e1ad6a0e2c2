#pragma once

#include "tests/support/TempConfig.h"

#include <string>
#include <vector>

namespace VX::Test
{

/// How a run of the program ended.
struct ProgramResult
{
    int status = -1; ///< the exit status; 128 and the signal where one ended it
    std::string output;
    std::string errors;
};

/// The real program with user folders of its own, without a display.
class ProgramRun
{
public:
    [[nodiscard]] ProgramResult run(const std::vector<std::string>& arguments) const;

    /// For files of the test, and where the outputs lie.
    [[nodiscard]] const TempDir& folder() const { return folder_; }

private:
    TempConfig config_{"Quorvix"};
    EnvironmentVariable display_{"DISPLAY", std::nullopt};
    EnvironmentVariable wayland_{"WAYLAND_DISPLAY", std::nullopt};
    TempDir folder_;
};

} // namespace VX::Test
