#include "ProcessSetup.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string_view>

namespace VX
{

namespace
{

constexpr std::size_t alternateStackSize = 65536;

/// Only what is safe at any moment: no allocation, no lock, no stream.
extern "C" void reportCrash(int /*signal*/)
{
    constexpr std::string_view text = "The STEP file is damaged: its geometry cannot be converted.\n";
    const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
    _exit(written < 0 ? EXIT_FAILURE + 1 : EXIT_FAILURE);
}

} // namespace

void reportCrashesInOneSentence()
{
    // A stack that overflowed is no place for a handler.
    static std::array<char, alternateStackSize> stack;
    stack_t alternate = {};
    alternate.ss_sp = stack.data();
    alternate.ss_size = stack.size();
    sigaltstack(&alternate, nullptr);
    struct sigaction action = {};
    action.sa_handler = reportCrash;
    action.sa_flags = SA_ONSTACK;
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
        sigaction(signal, &action, nullptr);
}

void silenceLibraryOutput()
{
    if (const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC); nowhere >= 0)
    {
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    std::cout.rdbuf(nullptr);
    std::cerr.rdbuf(nullptr);
}

} // namespace VX
