#include "LoopWaker.h"
#include "QuietCommand.h"

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/Viewer.h>

#include <algorithm>
#include <thread>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

struct Command
{
    std::function<void()> run;
    StartPosition position;
    bool quiet = false;
};

struct CommandQueue
{
    Mutex mutex;
    std::vector<Command> commands VX_GUARDED_BY(mutex);
};

CommandQueue& queue()
{
    static CommandQueue instance;
    return instance;
}

/// The library is loaded by the thread that goes on to run `main`.
const std::thread::id mainThread = std::this_thread::get_id();

} // namespace

void CommandLoop::appendCommand(std::function<void()> command, StartPosition position)
{
    {
        const MutexLock lock(queue().mutex);
        queue().commands.push_back({std::move(command), position});
    }
    getViewerInstance().postEmptyEvent();
}

void appendQuietCommand(std::function<void()> command)
{
    {
        const MutexLock lock(queue().mutex);
        queue().commands.push_back({std::move(command), StartPosition::LoopStart, true});
    }
    LoopWaker::instance().wake();
}

bool CommandLoop::processCommands(StartPosition reached)
{
    std::vector<Command> due;
    {
        const MutexLock lock(queue().mutex);
        for (Command& command : std::exchange(queue().commands, {}))
            (command.position > reached ? queue().commands : due).push_back(std::move(command));
    }
    for (const Command& command : due)
        command.run();
    return std::ranges::any_of(due, [](const Command& command) { return !command.quiet; });
}

void CommandLoop::clear()
{
    // Destroyed without the lock: what a command owns may append another one.
    std::vector<Command> dropped;
    {
        const MutexLock lock(queue().mutex);
        dropped.swap(queue().commands);
    }
}

bool CommandLoop::isEmpty()
{
    const MutexLock lock(queue().mutex);
    return queue().commands.empty();
}

bool CommandLoop::isOnUiThread()
{
    return std::this_thread::get_id() == mainThread;
}

} // namespace VX
