#pragma once

#include <tl/expected.hpp>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

class StopEvent;

/// What the system lets a process use.
struct ProcessLimits
{
    std::uint64_t memory = 0;        ///< bytes that it may allocate; 0: no limit
    std::chrono::seconds cpuTime{0}; ///< of all its threads together; 0: no limit
};

/// How a process ended.
struct ProcessEnd
{
    int exitCode = 0;             ///< where `signal` is 0
    int signal = 0;               ///< what killed it
    bool cpuTimeOver = false;     ///< it was killed for its processor time
    std::uint64_t peakMemory = 0; ///< bytes that it had in memory at most
    std::string errorOutput{};    ///< the last 16 KiB of what it wrote to standard error
};

/// A process that ends with its owner at the latest: with this object, with the thread that started it, or with the
/// whole program, whatever ends that. It runs in a process group of its own, with default signals, nothing on its
/// standard input, its standard output thrown away, and none of our descriptors.
/// @threads one, the one that started it
class ChildProcess
{
public:
    /// The exit code of a process that could not run `program`.
    static constexpr int cannotRun = 127;

    /// Starts `program`, whose argument list begins with its own path followed by `arguments`. That the file is missing
    /// or no program shows as a process that ends with `cannotRun`.
    /// @return `The process cannot be started: REASON.`
    [[nodiscard]] static tl::expected<ChildProcess, std::string>
    start(const std::filesystem::path& program, const std::vector<std::string>& arguments, const ProcessLimits& limits);

    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&&) = delete;

    /// Kills what is still running, and waits until it is gone.
    ~ChildProcess();

    /// Waits until the process ends, `until` has come or `stop` is set. Once it has returned an end, nothing is left
    /// to wait for.
    [[nodiscard]] std::optional<ProcessEnd> wait(std::chrono::steady_clock::time_point until, const StopEvent& stop);

private:
    ChildProcess() = default;
    [[nodiscard]] ProcessEnd reap_();
    void readErrors_();

    int pid_ = -1; ///< -1 once it is gone
    int processDescriptor_ = -1;
    int errorPipe_ = -1;
    std::string errorOutput_;
};

} // namespace VX
