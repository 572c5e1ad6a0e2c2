#include "BackgroundTasks.h"

#include <VXViewer/Clock.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/Viewer.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <utility>

namespace VX
{

namespace
{

/// Files that load at once: more would only share the processor and the memory.
constexpr std::size_t maxWorkers = 4;

/// How long the end of the program waits for files that are being written.
constexpr std::chrono::seconds writingPatience{20};

enum class TaskKind
{
    Reading,
    Writing
};

class OrderedTask
{
public:
    OrderedTask(std::uint64_t taskId, TaskKind taskKind, std::string taskTitle, ProgressBar::Finish whenCanceled)
        : id(taskId)
        , kind(taskKind)
        , title(std::move(taskTitle))
        , canceledFunction(std::move(whenCanceled))
    {
    }

    const std::uint64_t id;
    const TaskKind kind;
    const std::string title;
    const double startTime = monotonicSeconds();
    std::atomic<float> fraction = 0;
    std::atomic<bool> begun = false;
    bool ended = false;                   ///< guarded by OrderedTasks
    ProgressBar::Finish canceledFunction; ///< touched on the UI thread only

    /// @return false where it is too late
    bool cancel()
    {
        const MutexLock lock(mutex_);
        canceled_ = canceled_ || !committing_;
        return canceled_;
    }

    /// Takes in how far the task is. @return false where it is to stop
    bool advance(float done)
    {
        fraction = std::clamp(done, 0.0F, 1.0F);
        const MutexLock lock(mutex_);
        committing_ = committing_ || (kind == TaskKind::Writing && done >= 1 && !canceled_);
        return !canceled_;
    }

    [[nodiscard]] bool isCanceled() const
    {
        const MutexLock lock(mutex_);
        return canceled_;
    }

    void setName(std::string name)
    {
        const MutexLock lock(mutex_);
        name_ = std::move(name);
    }

    [[nodiscard]] std::string name() const
    {
        const MutexLock lock(mutex_);
        return name_;
    }

private:
    mutable Mutex mutex_;
    std::string name_ VX_GUARDED_BY(mutex_);
    bool canceled_ VX_GUARDED_BY(mutex_) = false;
    bool committing_ VX_GUARDED_BY(mutex_) = false; ///< it puts its file into place
};

using TaskPtr = std::shared_ptr<OrderedTask>;

/// The task of the current worker thread; null on any other thread.
TaskPtr& currentTask()
{
    thread_local TaskPtr task;
    return task;
}

/// All tasks that were ordered and neither finished nor cancelled.
class OrderedTasks
{
public:
    static OrderedTasks& instance()
    {
        static OrderedTasks tasks;
        return tasks;
    }

    [[nodiscard]] TaskPtr add(TaskKind kind, std::string title, ProgressBar::Finish canceled)
    {
        const MutexLock lock(mutex_);
        tasks_.push_back(std::make_shared<OrderedTask>(++lastId_, kind, std::move(title), std::move(canceled)));
        return tasks_.back();
    }

    /// @return the task; null where it is not there any more
    [[nodiscard]] TaskPtr find(std::uint64_t id) const
    {
        const MutexLock lock(mutex_);
        const auto found = std::find_if(tasks_.begin(), tasks_.end(), [&](const TaskPtr& t) { return t->id == id; });
        return found == tasks_.end() ? nullptr : *found;
    }

    /// The worker is done with it.
    void noteEnd(OrderedTask& task)
    {
        {
            const MutexLock lock(mutex_);
            task.ended = true;
        }
        ended_.notify_all();
    }

    /// Waits until the workers are done with all tasks, for as long as files may take.
    void waitForEnds()
    {
        const auto end = std::chrono::steady_clock::now() + writingPatience;
        MutexLock lock(mutex_);
        while (std::any_of(tasks_.begin(), tasks_.end(), [](const TaskPtr& task) { return !task->ended; }))
        {
            if (ended_.wait_until(lock, end) == std::cv_status::timeout)
                return;
        }
    }

    /// @return the task; null where it is not there any more
    TaskPtr take(std::uint64_t id)
    {
        const MutexLock lock(mutex_);
        const auto found = std::find_if(tasks_.begin(), tasks_.end(), [&](const TaskPtr& t) { return t->id == id; });
        if (found == tasks_.end())
            return nullptr;
        TaskPtr task = *found;
        tasks_.erase(found);
        return task;
    }

    [[nodiscard]] std::vector<TaskPtr> all() const
    {
        const MutexLock lock(mutex_);
        return tasks_;
    }

    [[nodiscard]] TaskPtr named() const
    {
        if (currentTask())
            return currentTask();
        const MutexLock lock(mutex_);
        return tasks_.empty() ? nullptr : tasks_.front();
    }

    BackgroundTasks workers{maxWorkers};

private:
    mutable Mutex mutex_;
    std::condition_variable_any ended_;
    std::vector<TaskPtr> tasks_ VX_GUARDED_BY(mutex_);
    std::uint64_t lastId_ VX_GUARDED_BY(mutex_) = 0;
};

void runTask(const TaskPtr& ordered, const ProgressBar::Task& task)
{
    if (ordered->isCanceled())
        return;
    currentTask() = ordered;
    ordered->begun = true;
    ProgressBar::Finish finish = task([ordered](float fraction) { return ordered->advance(fraction); });
    currentTask() = nullptr;
    CommandLoop::appendCommand(
        [id = ordered->id, finish = std::move(finish)]
        {
            if (OrderedTasks::instance().take(id) && finish)
                finish();
        });
}

std::uint64_t orderTask(TaskKind kind, std::string title, ProgressBar::Task task, ProgressBar::Finish canceled)
{
    OrderedTasks& tasks = OrderedTasks::instance();
    const TaskPtr ordered = tasks.add(kind, std::move(title), std::move(canceled));
    tasks.workers.start(
        [ordered, task = std::move(task)]
        {
            runTask(ordered, task);
            OrderedTasks::instance().noteEnd(*ordered);
        });
    getViewerInstance().postEmptyEvent();
    return ordered->id;
}

} // namespace

std::uint64_t ProgressBar::order(std::string title, Task task, Finish canceled)
{
    return orderTask(TaskKind::Reading, std::move(title), std::move(task), std::move(canceled));
}

std::uint64_t ProgressBar::orderWriting(std::string title, Task task, Finish canceled)
{
    return orderTask(TaskKind::Writing, std::move(title), std::move(task), std::move(canceled));
}

bool ProgressBar::isOrdered()
{
    return !OrderedTasks::instance().all().empty();
}

void ProgressBar::forceSetTaskName(std::string name)
{
    if (const TaskPtr task = OrderedTasks::instance().named())
        task->setName(std::move(name));
}

void ProgressBar::resetTaskName()
{
    forceSetTaskName({});
}

std::vector<ProgressInfo> ProgressBar::tasks()
{
    std::vector<ProgressInfo> infos;
    const double now = monotonicSeconds();
    for (const TaskPtr& task : OrderedTasks::instance().all())
        infos.push_back({task->id, task->title, task->name(), task->fraction, now - task->startTime, !task->begun});
    return infos;
}

void ProgressBar::cancel(std::uint64_t id)
{
    OrderedTasks& tasks = OrderedTasks::instance();
    const TaskPtr task = tasks.find(id);
    if (!task || !task->cancel())
        return;
    tasks.take(id);
    if (const Finish canceled = std::exchange(task->canceledFunction, {}))
        canceled();
}

void ProgressBar::shutdown()
{
    OrderedTasks& tasks = OrderedTasks::instance();
    for (const TaskPtr& task : tasks.all())
    {
        if (task->kind == TaskKind::Reading && task->cancel())
            tasks.take(task->id);
    }
    tasks.waitForEnds();
    for (const TaskPtr& task : tasks.all())
    {
        task->cancel();
        tasks.take(task->id);
    }
    tasks.workers.stop();
}

} // namespace VX
