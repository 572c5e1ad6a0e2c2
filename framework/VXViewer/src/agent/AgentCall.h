#pragma once

#include "AgentArguments.h"

#include <VXMcp/Tool.h>

#include <tl/expected.hpp>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace VX
{

class Viewer;

/// What a tool gives back, or a text for the agent: what is wrong and what to do about it.
using AgentResult = tl::expected<Mcp::ToolResult, std::string>;

/// A call of one of the viewer's tools, while it is under way. It is answered once; a call that nobody answers says
/// that it was canceled where it was, else that the viewer closes.
/// @threads any for `answer`, `tool` and the end; else the UI thread
class AgentCall
{
public:
    AgentCall(Viewer& viewer, std::shared_ptr<Mcp::ToolCall> call, Mcp::Tool::Answer answer);
    ~AgentCall();

    AgentCall(const AgentCall&) = delete;
    AgentCall& operator=(const AgentCall&) = delete;

    [[nodiscard]] Viewer& viewer() const { return viewer_; }

    [[nodiscard]] AgentArguments arguments() const { return AgentArguments(call_->arguments()); }

    /// Progress, and whether somebody still waits.
    [[nodiscard]] Mcp::ToolCall& tool() const { return *call_; }

    /// What a call that ends unanswered, and not canceled, says in place of that the viewer closes.
    void setLostText(std::string text) { lostText_ = std::move(text); }

    /// Answers, unless that was done already.
    void answer(AgentResult result);

    /// What is edited now would become part of the step that the user is in the middle of, such as a drag; or would be
    /// lost with the rest if the user, asked about unsaved changes, discards them.
    /// @return true where that is so: the call is answered then
    bool refuseDuringUsersWork();

private:
    Viewer& viewer_;
    std::shared_ptr<Mcp::ToolCall> call_;
    Mcp::Tool::Answer answer_;
    std::string lostText_;
    std::atomic<bool> answered_ = false;
};

} // namespace VX
