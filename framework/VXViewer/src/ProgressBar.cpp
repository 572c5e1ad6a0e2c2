#include "BackgroundTasks.h"

#include <VXViewer/Clock.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/Viewer.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>

namespace VX
{

namespace
{

/// Files that load at once: more would only share the processor and the memory.
constexpr std::size_t maxWorkers = 4;

class OrderedTask
{
public:
    OrderedTask(std::uint64_t taskId, std::string taskTitle, ProgressBar::Finish whenCanceled)
        : id(taskId)
        , title(std::move(taskTitle))
        , canceledFunction(std::move(whenCanceled))
    {
    }

    const std::uint64_t id;
    const std::string title;
    const double startTime = monotonicSeconds();
    std::atomic<float> fraction = 0;
    std::atomic<bool> begun = false;
    std::atomic<bool> canceled = false;
    ProgressBar::Finish canceledFunction; ///< touched on the UI thread only

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

    [[nodiscard]] TaskPtr add(std::string title, ProgressBar::Finish canceled)
    {
        const MutexLock lock(mutex_);
        tasks_.push_back(std::make_shared<OrderedTask>(++lastId_, std::move(title), std::move(canceled)));
        return tasks_.back();
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
    std::vector<TaskPtr> tasks_ VX_GUARDED_BY(mutex_);
    std::uint64_t lastId_ VX_GUARDED_BY(mutex_) = 0;
};

void runTask(const TaskPtr& ordered, const ProgressBar::Task& task)
{
    if (ordered->canceled)
        return;
    currentTask() = ordered;
    ordered->begun = true;
    ProgressBar::Finish finish = task(
        [ordered](float fraction)
        {
            ordered->fraction = std::clamp(fraction, 0.0F, 1.0F);
            return !ordered->canceled;
        });
    currentTask() = nullptr;
    CommandLoop::appendCommand(
        [id = ordered->id, finish = std::move(finish)]
        {
            if (OrderedTasks::instance().take(id) && finish)
                finish();
        });
}

} // namespace

void ProgressBar::order(std::string title, Task task, Finish canceled)
{
    OrderedTasks& tasks = OrderedTasks::instance();
    const TaskPtr ordered = tasks.add(std::move(title), std::move(canceled));
    tasks.workers.start([ordered, task = std::move(task)] { runTask(ordered, task); });
    getViewerInstance().postEmptyEvent();
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
    const TaskPtr task = OrderedTasks::instance().take(id);
    if (!task)
        return;
    task->canceled = true;
    if (const Finish canceled = std::exchange(task->canceledFunction, {}))
        canceled();
}

void ProgressBar::shutdown()
{
    OrderedTasks& tasks = OrderedTasks::instance();
    for (const TaskPtr& task : tasks.all())
    {
        task->canceled = true;
        tasks.take(task->id);
    }
    tasks.workers.stop();
}

} // namespace VX
