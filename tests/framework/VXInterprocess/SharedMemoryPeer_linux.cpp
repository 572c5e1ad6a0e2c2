// A process for the tests to kill: sharedMemoryPeer ROLE CHANNEL. It tells what happens by single bytes on its standard
// output, and ends with the test.
#include "tests/framework/VXInterprocess/ActionCounts.h"

#include <VXInterprocess/SharedMemory.h>

#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <map>
#include <new>
#include <string>
#include <thread>

namespace
{

using VX::SharedMemory;
using VX::Test::ActionCounts;

void tell(char event)
{
    if (::write(STDOUT_FILENO, &event, 1) != 1)
        std::_Exit(1);
}

// "r" when it can be notified, then "c" for each callback.
void listen(const std::string& name)
{
    SharedMemory memory(name, true);
    tell('r');
    memory.wait([] { tell('c'); });
}

// "a" in the action, which does not end.
void hold(const std::string& name)
{
    SharedMemory memory(name, false);
    memory.notify(
        []
        {
            tell('a');
            while (true)
                ::pause();
        });
}

// "c" in the callback, which does not end.
void stick(const std::string& name)
{
    SharedMemory memory(name, true);
    tell('r');
    memory.wait(
        []
        {
            tell('c');
            while (true)
                ::pause();
        });
}

// "n" when it has notified.
void notifyOnce(const std::string& name)
{
    SharedMemory(name, false).notify([] {});
    tell('n');
}

// Notifies for ever, mostly through one object, and counts in the file on standard input.
void flood(const std::string& name)
{
    void* memory = ::mmap(nullptr, sizeof(ActionCounts), PROT_READ | PROT_WRITE, MAP_SHARED, STDIN_FILENO, 0);
    if (memory == MAP_FAILED)
        std::_Exit(1);
    auto& counts = *static_cast<ActionCounts*>(memory);
    tell('r');
    while (true)
    {
        SharedMemory channel(name, false);
        for (int i = 0; i < 20; ++i)
        {
            // In two steps: actions that run at the same time would lose some.
            channel.notify([&] { counts.started = counts.started + 1; });
            ++counts.returned;
        }
    }
}

// Opens and closes the channel for ever, "o" for each time that two objects have met in it.
void churn(const std::string& name)
{
    while (true)
    {
        SharedMemory owner(name, true);
        std::thread notifier([&] { SharedMemory(name, false).notify([] {}); });
        owner.wait([&] { owner.stop(); });
        notifier.join();
        tell('o');
    }
}

// Stops, for the test to trace it from here on.
void beginSteps()
{
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::raise(SIGSTOP);
}

void endSteps()
{
    ::raise(SIGSTOP);
}

void stepNotify(const std::string& name)
{
    // On its own, so that the functions that it calls are loaded.
    SharedMemory(name + "-none", false).notify([] {});
    SharedMemory memory(name, false);
    beginSteps();
    memory.notify([] {});
    endSteps();
}

// Opens, notifies, listens and closes.
void stepOwner(const std::string& name)
{
    beginSteps();
    {
        SharedMemory memory(name, true);
        memory.notify([] {});
        memory.wait([&] { memory.stop(); });
    }
    endSteps();
}

} // namespace

int main(int argc, char** argv)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::map<std::string, void (*)(const std::string&)> roles{
        {"listen", listen}, {"hold", hold},   {"stick", stick},           {"notify", notifyOnce},
        {"flood", flood},   {"churn", churn}, {"stepNotify", stepNotify}, {"stepOwner", stepOwner},
    };
    const auto role = argc == 3 ? roles.find(argv[1]) : roles.end();
    if (role == roles.end())
        return 2;
    role->second(argv[2]);
    return 0;
}
