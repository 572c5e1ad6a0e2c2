#include "Processes.h"
#include "TempDir.h"

#include <fmt/format.h>

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <utility>

namespace VX::Test
{

namespace
{

/// The letter of the process's state and the number of its parent; a zero where there is no such process.
std::pair<char, int> stateOf(int id)
{
    std::ifstream stream(fmt::format("/proc/{}/stat", id));
    std::string line;
    std::getline(stream, line);
    const auto name = line.rfind(") ");
    if (name == std::string::npos)
        return {};
    return {line[name + 2], std::atoi(line.c_str() + name + 4)};
}

std::vector<int> runningProcesses(const std::function<bool(int)>& isWanted)
{
    std::vector<int> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc"))
    {
        const int id = std::atoi(entry.path().filename().c_str());
        if (id > 0 && isWanted(id) && isRunning(id))
            found.push_back(id);
    }
    return found;
}

} // namespace

int ownProcess()
{
    return ::getpid();
}

int parentProcess()
{
    return ::getppid();
}

void killProcess(int id)
{
    kill(id, SIGKILL);
    waitpid(id, nullptr, 0);
}

std::vector<int> childrenOf(int parent)
{
    return runningProcesses([parent](int id) { return stateOf(id).second == parent; });
}

std::vector<int> processesWithEnvironment(const std::string& text)
{
    return runningProcesses(
        [&](int id)
        { return id != getpid() && readFile(fmt::format("/proc/{}/environ", id)).find(text) != std::string::npos; });
}

bool isRunning(int id)
{
    const char state = stateOf(id).first;
    return state != 0 && state != 'Z' && state != 'X';
}

bool renounceReadingEveryFile()
{
    if (geteuid() != 0)
        return true;
    return prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0) == 0 &&
           prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0) == 0;
}

} // namespace VX::Test
