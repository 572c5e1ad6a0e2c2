#pragma once

#include <VXViewer/Export.h>

#include <functional>

namespace VX
{

/// From when on a command may run while the program starts. Once the loop runs, all have been reached.
enum class StartPosition
{
    LoopStart = 0,  ///< in the first turn of the loop
    MenuReady = 1,  ///< after those of the loop's start
    FirstFrame = 2, ///< once the window shows its first picture
    SetupDone = 3   ///< once the start-up is over
};

/// What other threads, and later moments of this one, have to do on the UI thread.
class VXVIEWER_API CommandLoop
{
public:
    CommandLoop() = delete;

    /// Runs `command` once on the UI thread, after those appended before it that may run as early; wakes the loop.
    /// Before there is a loop the command waits for it.
    /// @threads any
    static void appendCommand(std::function<void()> command, StartPosition position = StartPosition::LoopStart);

    /// Runs the commands that wait and may run at `reached`, in order. One appended meanwhile waits for the next call.
    /// @return true when there was one
    /// @threads the UI thread; the loop does it, tests without a loop do it themselves
    static bool processCommands(StartPosition reached = StartPosition::SetupDone);

    /// Forgets the commands that wait.
    /// @threads any
    static void clear();

    /// @threads any
    [[nodiscard]] static bool isEmpty();

    /// True on the thread that runs `main`, the loop and everything of the interface.
    /// @threads any
    [[nodiscard]] static bool isOnUiThread();
};

} // namespace VX
