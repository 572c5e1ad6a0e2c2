#pragma once

#include <string>

namespace VX::Test
{

/// Starts the program sharedMemoryPeer.
/// @param input, output  file descriptors that become its standard input and output; -1: those of the test
/// @return its process id
[[nodiscard]] int startPeer(const std::string& role, const std::string& channel, int input, int output);

/// Kills it with SIGKILL and waits until it is gone.
void killPeer(int id);

} // namespace VX::Test
