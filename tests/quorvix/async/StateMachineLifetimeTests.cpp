#include "TestMachines.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>
#include <vector>

namespace VX
{

namespace
{

using Test::done;
using Test::makeMachine;
using Test::middle;
using Test::Resume;
using Test::start;
using Test::wait;
using Test::waitKeeping;

/// What a step captured lives on as long as its machine: this tells when the machine is gone.
class Captured
{
public:
    [[nodiscard]] std::shared_ptr<int> take() { return std::exchange(held_, nullptr); }

    [[nodiscard]] bool isAlive() const { return !watched_.expired(); }

private:
    std::shared_ptr<int> held_ = std::make_shared<int>(0);
    std::weak_ptr<int> watched_ = held_;
};

TEST(StateMachineLifetime, destroysAMachineThatEndsInItsFirstRun)
{
    Captured captured;
    StateMachineExecutor::addStateMachine(
        makeMachine({{start, [held = captured.take()](const Resume&) { return done; }}}));
    EXPECT_FALSE(captured.isAlive());
}

TEST(StateMachineLifetime, destroysAMachineThatEndsAfterItsWaitWithTheLastCopyOfItsCallback)
{
    Captured captured;
    Resume kept;
    StateMachineExecutor::addStateMachine(makeMachine({{start, [&kept, held = captured.take()](const Resume& resume)
                                                        {
                                                            kept = resume;
                                                            return wait;
                                                        }}}));
    EXPECT_TRUE(captured.isAlive());
    kept(done);
    EXPECT_TRUE(captured.isAlive());
    kept = nullptr;
    EXPECT_FALSE(captured.isAlive());
}

TEST(StateMachineLifetime, keepsTheCallbackWhileTheStepRunsWhoseNestedRunEndsTheMachine)
{
    Captured captured;
    bool callable = false;
    StateMachineExecutor::addStateMachine(makeMachine({{start, [&callable, held = captured.take()](const Resume& resume)
                                                        {
                                                            resume(done);
                                                            callable = static_cast<bool>(resume);
                                                            resume(done);
                                                            return wait;
                                                        }}}));
    EXPECT_TRUE(callable);
    EXPECT_FALSE(captured.isAlive());
}

TEST(StateMachineLifetime, endsWithinTheCallOfTheMachinesOwnCallback)
{
    // Not a copy of the callback but the machine's own one: it is destroyed while it executes.
    Captured captured;
    const Resume* own = nullptr;
    StateMachineExecutor::addStateMachine(makeMachine({{start, [&own, held = captured.take()](const Resume& resume)
                                                        {
                                                            own = &resume;
                                                            return wait;
                                                        }}}));
    (*own)(done);
    EXPECT_FALSE(captured.isAlive());
}

TEST(StateMachineLifetime, keepsTheCallbackOfAMachineThatIsAddedAgain)
{
    Resume kept;
    std::vector<bool> callable;
    const auto machine = makeMachine({{start, waitKeeping(kept)},
                                      {middle, [&](const Resume& resume)
                                       {
                                           callable.push_back(static_cast<bool>(resume));
                                           return done;
                                       }}});
    for (int round = 0; round < 2; ++round)
    {
        StateMachineExecutor::addStateMachine(machine);
        kept(middle);
    }
    EXPECT_EQ(callable, (std::vector{true, true}));
}

TEST(StateMachineLifetime, endsOnAnotherThreadWhileTheFirstStepIsStillRunning)
{
    Captured captured;
    std::optional<std::thread> other;
    bool callable = false;
    StateMachineExecutor::addStateMachine(makeMachine({{start, [&, held = captured.take()](const Resume& resume)
                                                        {
                                                            other.emplace([resume] { resume(done); });
                                                            other->join();
                                                            callable = static_cast<bool>(resume);
                                                            return wait;
                                                        }}}));
    EXPECT_TRUE(callable);
    EXPECT_FALSE(captured.isAlive());
}

TEST(StateMachineLifetime, endsOnAnotherThreadWhileTheFirstRunReturns)
{
    // Nothing orders the two runs; a thread sanitizer sees it where they touch the machine without care.
    for (int round = 0; round < 500; ++round)
    {
        Captured captured;
        std::thread other;
        int steps = 0;
        StateMachineExecutor::addStateMachine(
            makeMachine({{start,
                          [&other, held = captured.take()](const Resume& resume)
                          {
                              other = std::thread([resume] { resume(middle); });
                              return wait;
                          }},
                         {middle, [&steps](const Resume&) { return ++steps, done; }}}));
        other.join();
        ASSERT_EQ(steps, 1);
        ASSERT_FALSE(captured.isAlive());
    }
}

} // namespace

} // namespace VX
