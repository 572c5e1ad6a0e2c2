#pragma once

#include <VXViewer/Export.h>

#include <tl/expected.hpp>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

/// Starts `program` (looked up in PATH where it has no slash) with `arguments`, without a shell, and lets it go: it
/// outlives this process and is not waited for.
/// @param onFailure  called on another thread where the program ends within ten seconds with a status other than 0
/// @return why it cannot be started
/// @threads any
[[nodiscard]] tl::expected<void, std::string> startDetached(const std::string& program,
                                                            const std::vector<std::string>& arguments,
                                                            const std::function<void()>& onFailure = {});

/// A program that is started, and read to its end.
class VXVIEWER_API ChildProcess
{
public:
    /// How it ended.
    struct Result
    {
        int exitCode = -1;  ///< -1: it was killed
        std::string output; ///< all that it wrote to standard output
    };

    /// @return the running program, or why it cannot be started
    [[nodiscard]] static tl::expected<std::unique_ptr<ChildProcess>, std::string>
    start(const std::filesystem::path& program, const std::vector<std::string>& arguments);

    /// Ends the program and waits for it.
    ~ChildProcess();

    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Waits for the end. Once, on any one thread.
    [[nodiscard]] Result wait();

    /// Asks the program to end.
    /// @threads any, also during `wait`
    void terminate();

private:
    struct State;
    explicit ChildProcess(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

} // namespace VX
