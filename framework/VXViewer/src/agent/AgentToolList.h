#pragma once

#include "AgentCall.h"
#include "BackgroundTasks.h"

#include <VXMcp/Tool.h>
#include <VXViewer/Export.h>

#include <functional>
#include <memory>
#include <vector>

namespace VX
{

class AgentJobs;

/// What the viewer's tools share.
struct AgentContext
{
    explicit AgentContext(Viewer& viewerToUse);
    ~AgentContext();
    AgentContext(const AgentContext&) = delete;
    AgentContext& operator=(const AgentContext&) = delete;

    Viewer& viewer;
    std::unique_ptr<AgentJobs> jobs;
    /// Does `work` of `call`, which would hold up the UI thread, on a worker. What it throws answers the call.
    void compute(std::shared_ptr<AgentCall> call, std::function<void()> work);

private:
    BackgroundTasks workers_;
};

/// The viewer's tools, each of which does its work on the UI thread: a call is posted to the loop. Those that change
/// something are refused while the user is in the middle of an edit, or is asked whether to save, unless they are for
/// any time.
class AgentToolList
{
public:
    /// When a tool that changes something can be called.
    enum class When
    {
        UserIsIdle,
        Always
    };

    /// Does the work at once.
    using Work = std::function<AgentResult(Viewer&, const AgentArguments&)>;
    /// Begins the work, which answers the call later.
    using Start = std::function<void(const std::shared_ptr<AgentCall>&)>;

    explicit AgentToolList(Viewer& viewer)
        : context_(std::make_shared<AgentContext>(viewer))
    {
    }

    /// @param tool  all but `run`
    void add(Mcp::Tool tool, Work work, When when = When::UserIsIdle);
    void start(Mcp::Tool tool, Start begin, When when = When::UserIsIdle);

    [[nodiscard]] const std::shared_ptr<AgentContext>& context() const { return context_; }

    [[nodiscard]] std::vector<Mcp::Tool>& tools() { return tools_; }

private:
    std::shared_ptr<AgentContext> context_;
    std::vector<Mcp::Tool> tools_;
};

// The tools by group.
void addViewerTools(AgentToolList& list);
void addScreenshotTools(AgentToolList& list);
void addSceneTools(AgentToolList& list);
void addSceneEditTools(AgentToolList& list);
void addSceneMakeTools(AgentToolList& list);
void addFileTools(AgentToolList& list);
void addCameraTools(AgentToolList& list);
void addSelectTools(AgentToolList& list);
void addSelectFaceTools(AgentToolList& list);
void addHistoryTools(AgentToolList& list);
void addJobTools(AgentToolList& list);
void addInterfaceTools(AgentToolList& list);
void addFolderTools(AgentToolList& list);

/// All of them.
[[nodiscard]] VXVIEWER_API std::vector<Mcp::Tool> makeAgentTools(Viewer& viewer);

} // namespace VX
