#include "AgentCall.h"

#include "UserDialogs.h"

#include <VXMesh/Progress.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/Viewer.h>

#include <utility>

namespace VX
{

AgentCall::AgentCall(Viewer& viewer, std::shared_ptr<Mcp::ToolCall> call, Mcp::Tool::Answer answer)
    : viewer_(viewer)
    , call_(std::move(call))
    , answer_(std::move(answer))
    , lostText_("The viewer is closing: nothing was done. Start it again first.")
{
}

AgentCall::~AgentCall()
{
    answer(tl::unexpected(call_->isCanceled() ? operationCanceledText() : lostText_));
}

void AgentCall::answer(AgentResult result)
{
    if (answered_.exchange(true))
        return;
    answer_(result ? std::move(*result) : Mcp::ToolResult::error(std::move(result.error())));
}

bool AgentCall::refuseDuringUsersWork()
{
    const bool isEditing = viewer_.getGlobalHistoryStore()->isScopeOpen();
    if (isEditing)
        answer(tl::unexpected(std::string("The user is in the middle of an edit. Try again in a moment.")));
    const bool isClosing = isUserAskedToSave(viewer_);
    if (isClosing)
        answer(tl::unexpected(std::string("The viewer asks the user whether to save the changes before it closes. Ask "
                                          "the user to answer, then call again.")));
    return isEditing || isClosing;
}

} // namespace VX
