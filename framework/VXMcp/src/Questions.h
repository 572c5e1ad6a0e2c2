#pragma once

#include "RpcMessage.h"

#include <VXMesh/ThreadAnnotations.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace VX::Mcp
{

/// Requests that the server has sent to clients, until their answers come.
/// @threads any
class Questions
{
public:
    using Answer = std::function<void(const RpcMessage&)>;

    /// @param sessionId  whose answer counts; empty: without a session
    /// @return the id that the request must have
    std::string add(std::string sessionId, Answer answer);
    void remove(const std::string& id);
    void removeAll();

    /// Hands over an answer; one that nobody waits for is ignored.
    void answer(const std::string& sessionId, const RpcMessage& message);

private:
    struct Entry
    {
        std::string sessionId;
        Answer answer;
    };

    Mutex mutex_;
    std::map<std::string, Entry> questions_ VX_GUARDED_BY(mutex_);
};

} // namespace VX::Mcp
