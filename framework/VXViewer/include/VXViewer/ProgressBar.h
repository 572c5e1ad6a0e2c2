#pragma once

#include <VXMesh/Progress.h>
#include <VXViewer/Export.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace VX
{

/// A task that runs, as the progress panel shows it.
struct ProgressInfo
{
    std::uint64_t id = 0;
    std::string title;    ///< "Open part.step"
    std::string taskName; ///< what it does now; may be empty
    float fraction = 0;   ///< 0 to 1
    double elapsed = 0;   ///< seconds since it was ordered
    bool waiting = false; ///< it has not begun
};

/// Long work in the background, shown in a modal panel with its name, how far it is, for how long it runs, and Cancel.
/// Several tasks run at once. Works without a window too.
class VXVIEWER_API ProgressBar
{
public:
    /// Runs on the UI thread with what the task made.
    using Finish = std::function<void()>;
    /// Runs on a worker thread; reports through the callback, which returns false when it is to stop.
    using Task = std::function<Finish(const ProgressCallback&)>;

    ProgressBar() = delete;

    /// Starts `task` on a worker. What it returns runs on the UI thread, unless the user cancelled meanwhile: then
    /// `canceled` runs instead, at once, and the worker's result is dropped when it comes.
    /// @param title  for the user, translated
    /// @return the task's `ProgressInfo::id`
    /// @threads the UI thread
    static std::uint64_t order(std::string title, Task task, Finish canceled = {});

    /// The same for a task that writes what the user wants to keep. Once it has reported 1 it is about to put its file
    /// into place and cannot be cancelled any more; the end of the program waits for it.
    /// @threads the UI thread
    static std::uint64_t orderWriting(std::string title, Task task, Finish canceled = {});

    /// True while a task runs or waits that was not cancelled.
    /// @threads any
    [[nodiscard]] static bool isOrdered();

    /// Shows `name` as what is done now: by the task on whose worker thread this is called, elsewhere by the one that
    /// was ordered first. Does nothing while there is none.
    /// @threads any
    static void forceSetTaskName(std::string name);

    /// Takes such a name away.
    /// @threads any
    static void resetTaskName();

    /// The tasks of the panel, in the order in which they were ordered.
    /// @threads any
    [[nodiscard]] static std::vector<ProgressInfo> tasks();

    /// Frees the panel of the task at once; the worker ends by itself. One that has finished is left alone, and one
    /// that has written its file.
    /// @threads the UI thread
    static void cancel(std::uint64_t id);

    /// Cancels all and waits until the workers have ended; `canceled` functions do not run. Files that are being
    /// written get 20 seconds to become complete first.
    /// @threads the UI thread
    static void shutdown();
};

} // namespace VX
