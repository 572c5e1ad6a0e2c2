#include "launcher/McpInstance.h"

#include <gtest/gtest.h>

namespace VX
{

namespace
{

class McpInstanceTest : public testing::Test
{
protected:
    [[nodiscard]] McpInstance::Find find_() const
    {
        return [this] { return running_; };
    }

    std::vector<AgentInstance> running_{{.process = 2, .port = 7432}, {.process = 1, .port = 7431}};
};

TEST_F(McpInstanceTest, IsTheOneStartedLast)
{
    EXPECT_EQ(McpInstance({}, find_()).port(), 7432);
}

TEST_F(McpInstanceTest, StaysTheSameWhenAnotherIsStarted)
{
    McpInstance instance({}, find_());
    EXPECT_EQ(instance.port(), 7432);
    running_.insert(running_.begin(), {.process = 3, .port = 7433});
    EXPECT_EQ(instance.port(), 7432);
}

TEST_F(McpInstanceTest, IsFollowedToAnotherPort)
{
    McpInstance instance({}, find_());
    EXPECT_EQ(instance.port(), 7432);
    running_.front().port = 7440;
    EXPECT_EQ(instance.port(), 7440);
}

TEST_F(McpInstanceTest, IsAnotherOneOnceItHasEnded)
{
    McpInstance instance({}, find_());
    EXPECT_EQ(instance.port(), 7432);
    running_.erase(running_.begin());
    EXPECT_EQ(instance.port(), 7431);
    running_.clear();
    EXPECT_EQ(instance.port(), std::nullopt);
}

TEST_F(McpInstanceTest, IsOnlyTheOneOnThePortThatTheUserNamed)
{
    EXPECT_EQ(McpInstance(7431, find_()).port(), 7431);
    EXPECT_EQ(McpInstance(7500, find_()).port(), std::nullopt);
}

} // namespace

} // namespace VX
