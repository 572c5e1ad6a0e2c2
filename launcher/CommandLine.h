#pragma once

#include <tl/expected.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

/// What the user asked for on the command line.
struct CommandLine
{
    struct Size
    {
        int width = 0;
        int height = 0;
    };

    bool help = false;
    bool version = false;
    bool hidden = false;
    std::optional<Size> size;
    std::optional<std::filesystem::path> deployment;
    std::optional<std::filesystem::path> uiDocument;  ///< what the interface is to look like
    std::optional<std::filesystem::path> credentials; ///< e-mail address and password to sign in with
    bool noTelemetry = false;
    std::optional<int> mcpPort; ///< where agents are served
    std::optional<int> parent;  ///< the process that this one is not to outlive
    bool mcpStdio = false;      ///< passes the protocol of agents on between standard input and a running program
    std::optional<std::filesystem::path> screenshot; ///< picture of the scene alone
    std::optional<std::filesystem::path> windowShot; ///< picture of the whole window
    std::optional<std::string> sceneInfo;            ///< a path, or "-" for standard output
    std::vector<std::filesystem::path> files;

    /// Whether the program leaves by itself once its files are open.
    [[nodiscard]] bool isBatch() const { return screenshot || windowShot || sceneInfo; }

    /// Whether it is the viewer alone that runs, without an account.
    [[nodiscard]] bool isPlain() const { return screenshot || sceneInfo; }
};

/// Turns a leading "--" of each argument into "-", so that nobody after it meets both spellings.
[[nodiscard]] std::vector<std::string> normalizeArguments(int argc, const char* const* argv);

/// Reads normalised arguments without the program's name.
/// @return one sentence that names the argument which cannot be used
[[nodiscard]] tl::expected<CommandLine, std::string> parseCommandLine(const std::vector<std::string>& arguments);

/// The text of -help, one option a line.
[[nodiscard]] std::string commandLineHelp();

} // namespace VX
