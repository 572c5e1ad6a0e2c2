#pragma once

#include <string>
#include <vector>

namespace VX::Test
{

/// The number of this process.
[[nodiscard]] int ownProcess();

/// The number of the process that started it.
[[nodiscard]] int parentProcess();

/// Kills a process, of ours or not.
void killProcess(int id);

/// The numbers of the running processes that `parent` has started.
[[nodiscard]] std::vector<int> childrenOf(int parent);

/// The numbers of the running processes in whose environment, as they were started with, `text` occurs.
[[nodiscard]] std::vector<int> processesWithEnvironment(const std::string& text);

[[nodiscard]] bool isRunning(int id);

/// Programs that this thread starts from now on may read no more than the modes of the files allow, whoever the user
/// is.
/// @return false where the system does not allow it
[[nodiscard]] bool renounceReadingEveryFile();

} // namespace VX::Test
