#pragma once

#include "agent/AgentToolList.h"
#include "agent/AllowedFolders.h"
#include "tests/framework/VXViewer/InstalledRibbonFixture.h"

#include <VXMesh/Json.h>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <vector>

namespace VX::Test
{

/// A viewer with its ribbon over a scene of the boxes A, B and C beside each other, and the viewer's tools. Agents may
/// use files in a folder of the test's.
class AgentFixture : public InstalledRibbonFixture
{
protected:
    AgentFixture()
        : InstalledRibbonFixture({1000, 700})
    {
        AllowedFolders::setSettings({folder_.path()});
        driver_.settle();
        viewer_.view().fitAll(false);
    }

    /// What is under way with a tool.
    struct Running
    {
        std::shared_ptr<Mcp::ToolCall> call;
        std::shared_future<Mcp::ToolResult> result; ///< some are given by a worker

        [[nodiscard]] bool isDone() const
        {
            return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        }
    };

    [[nodiscard]] const Mcp::Tool& tool_(const std::string& name) const
    {
        return *std::ranges::find(tools_, name, &Mcp::Tool::name);
    }

    /// @param arguments  JSON text
    Running begin_(const std::string& name, const std::string& arguments = "{}",
                   Mcp::ToolCall::ProgressSink progress = {})
    {
        Running running;
        running.call = std::make_shared<Mcp::ToolCall>(deserializeJsonValue(arguments).value(), std::move(progress));
        const auto promise = std::make_shared<std::promise<Mcp::ToolResult>>();
        running.result = promise->get_future();
        tool_(name).run(running.call, [promise](Mcp::ToolResult given) { promise->set_value(std::move(given)); });
        return running;
    }

    Mcp::ToolResult finish_(const Running& running)
    {
        const bool isDone = driver_.waitFor([&] { return running.isDone(); });
        EXPECT_TRUE(isDone);
        return isDone ? running.result.get() : Mcp::ToolResult();
    }

    Mcp::ToolResult run_(const std::string& name, const std::string& arguments = "{}")
    {
        return finish_(begin_(name, arguments));
    }

    /// What a call that succeeds gives back.
    Json::Value call_(const std::string& name, const std::string& arguments = "{}")
    {
        const Mcp::ToolResult result = run_(name, arguments);
        EXPECT_FALSE(result.isError) << name << ": " << (result.content.empty() ? "" : result.content.front().text);
        return result.structured;
    }

    /// What a call that fails says.
    std::string error_(const std::string& name, const std::string& arguments = "{}")
    {
        const Mcp::ToolResult result = run_(name, arguments);
        EXPECT_TRUE(result.isError) << name;
        return result.content.empty() ? std::string() : result.content.front().text;
    }

    /// Calls a tool, which must be one step of the history, takes it back and does it again.
    Json::Value callAsStep_(const std::string& name, const std::string& arguments = "{}")
    {
        Json::Value value;
        expectOneStep_([&] { value = call_(name, arguments); });
        return value;
    }

    [[nodiscard]] static std::string id_(const Object& object) { return std::to_string(object.id()); }

    [[nodiscard]] static std::vector<std::string> namesOf_(const Json::Value& objects)
    {
        std::vector<std::string> names;
        for (const Json::Value& object : objects)
            names.push_back(object["name"].asString());
        return names;
    }

    std::shared_ptr<ObjectMesh> a_ = addBox_("A", {0, 0, 0}, {1, 1, 1});
    std::shared_ptr<ObjectMesh> b_ = addBox_("B", {3, 0, 0}, {7, 4, 4});
    std::shared_ptr<ObjectMesh> c_ = addBox_("C", {9, 0, 0}, {11, 2, 2});
    std::vector<Mcp::Tool> tools_ = makeAgentTools(viewer_);
};

} // namespace VX::Test
