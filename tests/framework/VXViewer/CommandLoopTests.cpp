#include <VXViewer/CommandLoop.h>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace VX
{

class CommandLoopTests : public testing::Test
{
protected:
    void SetUp() override { CommandLoop::clear(); }

    void TearDown() override { CommandLoop::clear(); }

    std::function<void()> append_(std::string name)
    {
        return [this, name = std::move(name)] { run_.push_back(name); };
    }

    std::vector<std::string> run_;
};

TEST_F(CommandLoopTests, RunsCommandsOnceInTheOrderInWhichTheyWereAppended)
{
    CommandLoop::appendCommand(append_("first"));
    CommandLoop::appendCommand(append_("second"));
    EXPECT_TRUE(CommandLoop::processCommands());
    EXPECT_FALSE(CommandLoop::processCommands());
    EXPECT_EQ(run_, (std::vector<std::string>{"first", "second"}));
}

TEST_F(CommandLoopTests, HoldsACommandBackUntilItsStartPositionIsReached)
{
    CommandLoop::appendCommand(append_("set up"), StartPosition::SetupDone);
    CommandLoop::appendCommand(append_("frame"), StartPosition::FirstFrame);
    CommandLoop::appendCommand(append_("start"));
    CommandLoop::processCommands(StartPosition::LoopStart);
    EXPECT_EQ(run_, (std::vector<std::string>{"start"}));
    CommandLoop::processCommands(StartPosition::FirstFrame);
    CommandLoop::processCommands(StartPosition::SetupDone);
    EXPECT_EQ(run_, (std::vector<std::string>{"start", "frame", "set up"}));
}

TEST_F(CommandLoopTests, RunsWhatACommandAppendsInTheNextTurn)
{
    CommandLoop::appendCommand([this] { CommandLoop::appendCommand(append_("inner")); });
    CommandLoop::processCommands();
    EXPECT_TRUE(run_.empty());
    CommandLoop::processCommands();
    EXPECT_EQ(run_, (std::vector<std::string>{"inner"}));
}

TEST_F(CommandLoopTests, TakesCommandsFromAnyThread)
{
    std::thread([&] { CommandLoop::appendCommand(append_("worker")); }).join();
    CommandLoop::processCommands();
    EXPECT_EQ(run_, (std::vector<std::string>{"worker"}));
}

TEST_F(CommandLoopTests, ForgetsWhatWaitsWhenCleared)
{
    CommandLoop::appendCommand(append_("dropped"));
    EXPECT_FALSE(CommandLoop::isEmpty());
    CommandLoop::clear();
    EXPECT_TRUE(CommandLoop::isEmpty());
    EXPECT_FALSE(CommandLoop::processCommands());
}

TEST_F(CommandLoopTests, KnowsTheUiThread)
{
    EXPECT_TRUE(CommandLoop::isOnUiThread());
    bool onWorker = true;
    std::thread([&] { onWorker = CommandLoop::isOnUiThread(); }).join();
    EXPECT_FALSE(onWorker);
}

TEST_F(CommandLoopTests, StartPositionsCarryTheNumbersZeroToThree)
{
    EXPECT_EQ(static_cast<int>(StartPosition::LoopStart), 0);
    EXPECT_EQ(static_cast<int>(StartPosition::SetupDone), 3);
}

} // namespace VX
