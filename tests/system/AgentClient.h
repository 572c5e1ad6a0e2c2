#pragma once

#include "launcher/McpBridge.h"

#include <VXMesh/ThreadAnnotations.h>

#include <json/value.h>

#include <cstdint>
#include <map>
#include <string>

namespace VX::Test
{

/// An agent of a running program, which it finds by its instance file; it speaks the revision 2026-07-28.
class AgentClient
{
public:
    AgentClient();

    AgentClient(const AgentClient&) = delete;
    AgentClient& operator=(const AgentClient&) = delete;

    /// Whether the program serves agents by now, or does within half a minute.
    [[nodiscard]] static bool waitForServer();

    /// The answer to a request, within a minute: the message, or null.
    Json::Value request(const std::string& method, Json::Value parameters);

    /// What a tool gives back: the protocol's result. @param arguments  JSON text
    Json::Value call(const std::string& tool, const std::string& arguments = "{}");

    /// Calls a tool that must succeed. @return its structured content
    Json::Value use(const std::string& tool, const std::string& arguments = "{}");

    /// Calls a tool that must fail. @return its text
    std::string refusal(const std::string& tool, const std::string& arguments = "{}");

private:
    void receive_(const std::string& line);

    Mutex mutex_;
    int lastId_ = 0;
    std::map<int, Json::Value> answers_ VX_GUARDED_BY(mutex_);
    McpBridge bridge_;
};

} // namespace VX::Test
