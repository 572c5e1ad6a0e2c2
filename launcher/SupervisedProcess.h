#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

/// A process that is started again whenever it ends before its time, until this object goes: then it is asked to end
/// and, if it does not within two seconds, killed. Restarts wait longer and longer while the process keeps failing.
class SupervisedProcess
{
public:
    struct Command
    {
        std::filesystem::path executable;
        std::vector<std::string> arguments;
        /// Open in the process as descriptor 3; owned by the caller, who keeps it open as long as this object lives.
        int inheritedFd = -1;
        /// What the process writes to its standard error is appended here (mode 0600); empty: it goes to this
        /// process's own. The folder exists.
        std::filesystem::path logFile;
        /// Called on a thread of its own whenever the process could not be started, or ended without being asked to:
        /// with one sentence where it gave up by itself (what it wrote last, where that is known), with an empty text
        /// where something else ended it. May be empty.
        std::function<void(const std::string& reason)> ended;
        /// It reads nothing from standard input, and what it writes to standard output is lost: they are this process's
        /// own.
        bool silent = false;
        /// It may end for good: after status 0 it is not started again.
        bool mayFinish = false;
    };

    /// Starts the process on a thread of its own and returns at once; failures to start are logged and tried again.
    explicit SupervisedProcess(Command command);
    ~SupervisedProcess();

    SupervisedProcess(const SupervisedProcess&) = delete;
    SupervisedProcess& operator=(const SupervisedProcess&) = delete;

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace VX
