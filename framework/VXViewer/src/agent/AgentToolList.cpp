#include "AgentToolList.h"

#include "AgentJobs.h"
#include "QuietCommand.h"

#include <VXViewer/CommandLoop.h>

#include <json/json.h>
#include <spdlog/spdlog.h>

#include <exception>
#include <new>
#include <utility>

namespace VX
{

namespace
{

/// Computations at once.
constexpr std::size_t maxWorkers = 2;

/// Does `work`; what it throws answers `call`.
void guard(const std::shared_ptr<AgentCall>& call, const std::function<void()>& work)
{
    try
    {
        work();
    }
    catch (const Json::Exception&)
    {
        call->answer(tl::unexpected(
            std::string("The arguments do not fit the tool's input schema. Look it up and call again.")));
    }
    catch (const std::bad_alloc&)
    {
        call->answer(tl::unexpected(
            std::string("There is not enough memory for this. Try it with less: a smaller picture or fewer objects.")));
    }
    catch (const std::exception& e)
    {
        spdlog::error("A tool for agents failed.");
        spdlog::debug("The tool failed: {}", e.what());
        call->answer(tl::unexpected(std::string("The viewer could not do this; the fault is its own. Look with "
                                                "\"viewer.getStatus\" at what is there, and try it another way.")));
    }
}

} // namespace

AgentContext::AgentContext(Viewer& viewerToUse)
    : viewer(viewerToUse)
    , jobs(std::make_unique<AgentJobs>())
    , workers_(maxWorkers)
{
}

AgentContext::~AgentContext() = default;

void AgentContext::compute(std::shared_ptr<AgentCall> call, std::function<void()> work)
{
    workers_.start([call = std::move(call), work = std::move(work)] { guard(call, work); });
}

void AgentToolList::start(Mcp::Tool tool, Start begin, When when)
{
    // What only reads changes nothing that is to be seen.
    const auto post = tool.readOnly ? appendQuietCommand : [](std::function<void()> command)
    { CommandLoop::appendCommand(std::move(command)); };
    tool.run = [&viewer = context_->viewer, begin = std::move(begin), post,
                isFree = tool.readOnly || when == When::Always](std::shared_ptr<Mcp::ToolCall> called,
                                                                Mcp::Tool::Answer answer)
    {
        auto call = std::make_shared<AgentCall>(viewer, std::move(called), std::move(answer));
        post(
            [begin, isFree, call = std::move(call)]
            {
                if (!call->tool().isCanceled() && (isFree || !call->refuseDuringUsersWork()))
                    guard(call, [&] { begin(call); });
            });
    };
    tools_.push_back(std::move(tool));
}

void AgentToolList::add(Mcp::Tool tool, Work work, When when)
{
    start(
        std::move(tool), [work = std::move(work)](const std::shared_ptr<AgentCall>& call)
        { call->answer(work(call->viewer(), call->arguments())); }, when);
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
    addFolderTools(list);
    return std::move(list.tools());
}

} // namespace VX
