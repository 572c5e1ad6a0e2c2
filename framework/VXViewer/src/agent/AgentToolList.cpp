#include "AgentToolList.h"

#include "AgentJobs.h"
#include "QuietCommand.h"

#include <VXViewer/CommandLoop.h>

#include <json/json.h>
#include <spdlog/spdlog.h>

#include <exception>
#include <utility>

namespace VX
{

namespace
{

/// Computations at once.
constexpr std::size_t maxWorkers = 2;

void run(const AgentToolList::Start& begin, const std::shared_ptr<AgentCall>& call)
{
    try
    {
        begin(call);
    }
    catch (const Json::Exception&)
    {
        call->answer(tl::unexpected(
            std::string("The arguments do not fit the tool's input schema. Look it up and call again.")));
    }
    catch (const std::exception& e)
    {
        spdlog::error("A tool failed: {}", e.what());
        call->answer(tl::unexpected(
            std::string("There is not enough memory for this. Try it with less: a smaller picture or fewer objects.")));
    }
}

} // namespace

AgentContext::AgentContext(Viewer& viewerToUse)
    : viewer(viewerToUse)
    , jobs(std::make_unique<AgentJobs>())
    , workers(maxWorkers)
{
}

AgentContext::~AgentContext() = default;

void AgentToolList::start(Mcp::Tool tool, Start begin)
{
    // What only reads changes nothing that is to be seen.
    const auto post = tool.readOnly ? appendQuietCommand : [](std::function<void()> command)
    { CommandLoop::appendCommand(std::move(command)); };
    tool.run = [&viewer = context_->viewer, begin = std::move(begin), post](std::shared_ptr<Mcp::ToolCall> called,
                                                                            Mcp::Tool::Answer answer)
    {
        auto call = std::make_shared<AgentCall>(viewer, std::move(called), std::move(answer));
        post(
            [begin, call = std::move(call)]
            {
                if (!call->tool().isCanceled())
                    run(begin, call);
            });
    };
    tools_.push_back(std::move(tool));
}

void AgentToolList::add(Mcp::Tool tool, Work work)
{
    start(std::move(tool), [work = std::move(work)](const std::shared_ptr<AgentCall>& call)
          { call->answer(work(call->viewer(), call->arguments())); });
}

std::vector<Mcp::Tool> makeAgentTools(Viewer& viewer)
{
    AgentToolList list(viewer);
    addViewerTools(list);
    addScreenshotTools(list);
    addSceneTools(list);
    addSceneEditTools(list);
    addSceneMakeTools(list);
    addFileTools(list);
    addCameraTools(list);
    addSelectTools(list);
    addSelectFaceTools(list);
    addHistoryTools(list);
    addJobTools(list);
    addInterfaceTools(list);
    return std::move(list.tools());
}

} // namespace VX
