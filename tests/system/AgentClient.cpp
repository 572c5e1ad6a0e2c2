#include "tests/system/AgentClient.h"

#include "tests/support/WaitUntil.h"

#include <VXMesh/Json.h>
#include <VXViewer/AgentInstance.h>

#include <gtest/gtest.h>
#include <json/json.h>

#include <optional>

namespace VX::Test
{

namespace
{

constexpr const char* revision = "2026-07-28";

std::optional<std::uint16_t> findPort()
{
    const std::vector<AgentInstance> instances = findAgentInstances();
    return instances.empty() ? std::nullopt : std::optional(instances.front().port);
}

std::string lineOf(const Json::Value& value)
{
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    return Json::writeString(writer, value);
}

} // namespace

AgentClient::AgentClient()
    : bridge_(findPort, [this](const std::string& line) { receive_(line); }, {})
{
}

bool AgentClient::waitForServer()
{
    return waitUntil([] { return findPort().has_value(); });
}

void AgentClient::receive_(const std::string& line)
{
    auto message = deserializeJsonValue(line);
    const MutexLock lock(mutex_);
    if (message && (*message)["id"].isInt())
        answers_[(*message)["id"].asInt()] = std::move(*message);
}

Json::Value AgentClient::request(const std::string& method, Json::Value parameters)
{
    const int id = ++lastId_;
    Json::Value message;
    message["jsonrpc"] = "2.0";
    message["id"] = id;
    message["method"] = method;
    message["params"] = std::move(parameters);
    Json::Value& meta = message["params"]["_meta"];
    meta["io.modelcontextprotocol/protocolVersion"] = revision;
    meta["io.modelcontextprotocol/clientCapabilities"] = Json::Value(Json::objectValue);
    bridge_.handle(lineOf(message));
    const auto answered = [&]
    {
        const MutexLock lock(mutex_);
        return answers_.contains(id);
    };
    if (!waitUntil(answered) && !waitUntil(answered))
        return {};
    const MutexLock lock(mutex_);
    return answers_[id];
}

Json::Value AgentClient::call(const std::string& tool, const std::string& arguments)
{
    Json::Value parameters;
    parameters["name"] = tool;
    parameters["arguments"] = deserializeJsonValue(arguments).value();
    const Json::Value answer = request("tools/call", std::move(parameters));
    EXPECT_TRUE(answer.isMember("result")) << tool << ": " << answer;
    return answer["result"];
}

Json::Value AgentClient::use(const std::string& tool, const std::string& arguments)
{
    const Json::Value result = call(tool, arguments);
    EXPECT_FALSE(result["isError"].asBool()) << tool << ": " << result["content"][0]["text"].asString();
    return result["structuredContent"];
}

std::string AgentClient::refusal(const std::string& tool, const std::string& arguments)
{
    const Json::Value result = call(tool, arguments);
    EXPECT_TRUE(result["isError"].asBool()) << tool;
    return result["content"][0]["text"].asString();
}

} // namespace VX::Test
