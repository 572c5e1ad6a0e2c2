#pragma once

#include "ClientRequest.h"
#include "Shared.h"

#include <VXMcp/Tool.h>
#include <VXMesh/ThreadAnnotations.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace VX::Mcp
{

/// One call of a tool that may run, from its arguments to its result. A tool that asks the client something is called
/// again with the answers: clients of the newest revision repeat their request, the others are asked on the way.
/// @threads any
class ToolRun : public std::enable_shared_from_this<ToolRun>
{
public:
    ToolRun(std::shared_ptr<Shared> shared, std::shared_ptr<const ClientRequest> request,
            std::shared_ptr<const Tool> tool, Json::Value arguments);
    ~ToolRun();

    ToolRun(const ToolRun&) = delete;
    ToolRun& operator=(const ToolRun&) = delete;

    /// @param inputResponses  an object, or null
    /// @param state           as the tool left it
    void start(Json::Value inputResponses, std::string state);

private:
    ToolCall::Client client_(Json::Value inputResponses, std::string state) const;
    void forget_();
    void take_(ToolResult result);
    void ask_(Inquiry inquiry);
    void takeAnswer_(const std::string& key, const RpcMessage& answer);
    void takeNextRound_();
    void finish_(const ToolResult& result);

    const std::shared_ptr<Shared> shared_;
    const std::shared_ptr<const ClientRequest> request_;
    const std::shared_ptr<const Tool> tool_;
    const Json::Value arguments_;

    Mutex mutex_;
    std::uint64_t callNumber_ VX_GUARDED_BY(mutex_) = 0;
    bool isFinished_ VX_GUARDED_BY(mutex_) = false;
    unsigned rounds_ VX_GUARDED_BY(mutex_) = 0;
    std::vector<std::string> open_ VX_GUARDED_BY(mutex_); ///< ids of questions without an answer
    Json::Value answers_ VX_GUARDED_BY(mutex_){Json::objectValue};
    std::string state_ VX_GUARDED_BY(mutex_);
};

} // namespace VX::Mcp
