#pragma once

#include <filesystem>
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

/// A program in a process of its own, killed at the latest at the end of the scope.
class RunningProgram
{
public:
    /// Starts it.
    /// @param folder  for the files that take what it writes
    RunningProgram(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                   std::filesystem::path folder);
    ~RunningProgram();

    RunningProgram(RunningProgram&& other) noexcept;
    RunningProgram& operator=(RunningProgram&& other) = delete;

    [[nodiscard]] int id() const { return id_; }

    void send(int signal) const;

    /// Waits until it ends.
    ProgramResult wait();

private:
    std::filesystem::path folder_;
    int id_ = -1; ///< -1 once it has ended
};

} // namespace VX::Test
