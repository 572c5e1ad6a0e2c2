#include "AgentJobs.h"

#include "AgentSchema.h"

#include <VXMesh/Progress.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSignals.h>

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

constexpr std::size_t remembered = 50;
constexpr double reportInterval = 0.1;

std::optional<ProgressInfo> taskOf(std::uint64_t id)
{
    const std::vector<ProgressInfo> tasks = ProgressBar::tasks();
    const auto found = std::ranges::find(tasks, id, &ProgressInfo::id);
    return found != tasks.end() ? std::optional(*found) : std::nullopt;
}

void report(const std::weak_ptr<AgentCall>& waiting, std::uint64_t id)
{
    const std::shared_ptr<AgentCall> call = waiting.lock();
    const auto task = taskOf(id);
    if (call && task)
        call->tool().progress(static_cast<double>(task->fraction), 1,
                              task->taskName.empty() ? task->title : task->taskName);
}

Json::Value runningJson(const ProgressInfo& task)
{
    Json::Value value;
    value["job"] = Json::UInt64(task.id);
    value["title"] = task.title;
    value["state"] = task.waiting ? "waiting" : "running";
    value["progress"] = static_cast<double>(task.fraction);
    value["seconds"] = task.elapsed;
    return value;
}

} // namespace

void AgentJobs::begin(const std::shared_ptr<AgentCall>& call, std::uint64_t id, bool wait)
{
    const auto task = taskOf(id);
    Job job;
    job.id = id;
    job.title = task ? task->title : std::string();
    if (wait)
    {
        job.call = call;
        job.timer = call->viewer().loop().callEvery(reportInterval,
                                                    [waiting = std::weak_ptr(call), id] { report(waiting, id); });
        job.closing = call->viewer().signals().shutdown.connect([this, id] { release_(id); });
        call->tool().onCanceled([id] { CommandLoop::appendCommand([id] { ProgressBar::cancel(id); }); });
    }
    jobs_.push_front(std::move(job));
    if (jobs_.size() > remembered && jobs_.back().ended)
        jobs_.pop_back();
    if (!wait)
        call->answer(Mcp::ToolResult::of(task ? runningJson(*task) : Json::Value()));
}

void AgentJobs::end(std::uint64_t id, AgentResult result)
{
    const auto job = std::ranges::find(jobs_, id, &Job::id);
    if (job == jobs_.end())
        return;
    job->ended = true;
    job->timer.reset();
    job->closing.disconnect();
    if (result)
        job->result = result->structured;
    else
        job->error = result.error();
    if (const std::shared_ptr<AgentCall> call = std::exchange(job->call, nullptr))
        call->answer(std::move(result));
}

void AgentJobs::release_(std::uint64_t id)
{
    const auto job = std::ranges::find(jobs_, id, &Job::id);
    if (job != jobs_.end())
        job->call.reset();
}

Json::Value AgentJobs::endedJson_(const Job& job)
{
    Json::Value value;
    value["job"] = Json::UInt64(job.id);
    value["title"] = job.title;
    value["state"] = job.error.empty() ? "done" : job.error == operationCanceledText() ? "canceled" : "failed";
    if (job.error.empty())
        value["result"] = job.result;
    else
        value["error"] = job.error;
    return value;
}

tl::expected<Json::Value, std::string> AgentJobs::describe(std::uint64_t id) const
{
    if (const auto task = taskOf(id))
        return runningJson(*task);
    const auto job = std::ranges::find(jobs_, id, &Job::id);
    if (job != jobs_.end() && job->ended)
        return endedJson_(*job);
    return tl::unexpected(fmt::format("There is no job {}. Call \"jobs.list\" for those that there are.", id));
}

std::vector<Json::Value> AgentJobs::list() const
{
    std::vector<Json::Value> all;
    for (const ProgressInfo& task : ProgressBar::tasks())
        all.push_back(runningJson(task));
    for (const Job& job : jobs_)
    {
        if (job.ended)
            all.push_back(endedJson_(job));
    }
    return all;
}

Json::Value AgentJobs::schema()
{
    return Schema::result(
        {{"job", Schema::count("Its number.")},
         {"title", Schema::text("What it does, in the user's language.")},
         {"state", Schema::choice("What it is doing.", {"waiting", "running", "done", "failed", "canceled"})},
         {"progress", Schema::number("How much is done, 0 to 1, while it runs.", 0, 1)},
         {"seconds", Schema::number("For how long it has run, while it does.")},
         {"result",
          Schema::described(Schema::result({}), "What the tool that began it would have answered, once it is done: the "
                                                "fields of that tool's output schema.")},
         {"error", Schema::text("Why there is no result.")}},
        {"job", "title", "state"});
}

} // namespace VX
