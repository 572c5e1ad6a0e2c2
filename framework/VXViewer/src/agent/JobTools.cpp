#include "AgentJobs.h"
#include "AgentSchema.h"
#include "AgentToolList.h"
#include "Paging.h"

#include <VXViewer/ProgressBar.h>

#include <utility>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

Mcp::Tool jobTool(const char* name, const char* title, const char* description)
{
    Mcp::Tool tool;
    tool.name = name;
    tool.title = title;
    tool.description = description;
    tool.inputSchema = Schema::object({{"job", Schema::objectId("Its number, as \"jobs.list\" tells.")}}, {"job"});
    tool.outputSchema = AgentJobs::schema();
    tool.idempotent = true;
    return tool;
}

std::uint64_t idOf(const AgentArguments& arguments)
{
    return static_cast<std::uint64_t>(arguments.integer("job", 0));
}

AgentResult describe(const AgentJobs& jobs, std::uint64_t id)
{
    auto job = jobs.describe(id);
    if (!job)
        return tl::unexpected(std::move(job.error()));
    return Mcp::ToolResult::of(std::move(*job));
}

AgentResult listJobs(const AgentJobs& jobs, const AgentArguments& arguments)
{
    const auto paging = Paging::of(arguments);
    if (!paging)
        return tl::unexpected(paging.error());
    std::vector<Json::Value> all = jobs.list();
    Json::Value value;
    value["jobs"] = Json::Value(Json::arrayValue);
    for (std::size_t i = paging->begin(all.size()); i < paging->end(all.size()); ++i)
        value["jobs"].append(std::move(all[i]));
    paging->describe(value, all.size());
    return Mcp::ToolResult::of(std::move(value));
}

} // namespace

void addJobTools(AgentToolList& list)
{
    Mcp::Tool listTool =
        jobTool("jobs.list", "List long work",
                "Lists the files being loaded or saved and other long work, the user's among it, and what "
                "became of the work that agents began.");
    listTool.inputSchema = AgentSchema::object({{"limit", Paging::limitSchema()}, {"cursor", Paging::cursorSchema()}});
    listTool.outputSchema =
        AgentSchema::result({{"jobs", AgentSchema::list("Running ones first.", AgentJobs::schema())},
                             {"total", Paging::totalSchema()},
                             {"nextCursor", Paging::nextCursorSchema()}},
                            {"jobs", "total"});
    listTool.readOnly = true;
    list.add(std::move(listTool), [context = list.context()](Viewer&, const AgentArguments& arguments)
             { return listJobs(*context->jobs, arguments); });

    Mcp::Tool status =
        jobTool("jobs.status", "How far a piece of work is",
                "Tells how far a job is, or what became of it: \"result\" is what the tool that began it "
                "would have answered, as things were then.");
    status.readOnly = true;
    list.add(std::move(status), [context = list.context()](Viewer&, const AgentArguments& arguments)
             { return describe(*context->jobs, idOf(arguments)); });

    list.add(
        jobTool("jobs.cancel", "Cancel a piece of work",
                "Ends a job. Nothing that it would have done is done. One that has ended is left alone."),
        [context = list.context()](Viewer&, const AgentArguments& arguments)
        {
            auto before = describe(*context->jobs, idOf(arguments));
            ProgressBar::cancel(idOf(arguments));
            auto after = describe(*context->jobs, idOf(arguments));
            if (before && !after)
            {
                before->structured["state"] = "canceled";
                return before;
            }
            return after;
        },
        AgentToolList::When::Always);
}

} // namespace VX
