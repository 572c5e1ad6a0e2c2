#include "TestMachines.h"

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace VX
{

namespace
{

using Test::done;
using Test::Inspector;
using Test::makeMachine;
using Test::middle;
using Test::Resume;
using Test::start;
using Test::wait;
using Test::waitKeeping;

TEST(StateMachineExecutor, runsARegularMachineToItsEnd)
{
    std::vector<int> visited;
    const auto machine = std::make_shared<RegularStateMachine>(
        std::unordered_map<int, std::function<int()>>{{0, [&] { return visited.push_back(0), 5; }},
                                                      {5, [&] { return visited.push_back(5), 2; }}},
        0, 2);
    StateMachineExecutor::addStateMachine(machine);
    EXPECT_EQ(visited, (std::vector{0, 5}));
    EXPECT_FALSE(Inspector::isRegistered(machine));
    EXPECT_EQ(machine.use_count(), 1);
}

TEST(StateMachineExecutor, repeatsAStepThatReturnsItsOwnState)
{
    int steps = 0;
    StateMachineExecutor::addStateMachine(std::make_shared<RegularStateMachine>(
        std::unordered_map<int, std::function<int()>>{{0, [&] { return ++steps < 1000 ? 0 : 1; }}}, 0, 1));
    EXPECT_EQ(steps, 1000);
}

TEST(StateMachineExecutor, runsNoStepOfAMachineThatStartsInItsFinalState)
{
    int steps = 0;
    const auto machine = makeMachine({{done, [&](const Resume&) { return ++steps, wait; }}}, done);
    const std::size_t id = Inspector::nextId();
    StateMachineExecutor::addStateMachine(machine);
    EXPECT_EQ(steps, 0);
    EXPECT_FALSE(Inspector::isRegistered(machine));
    EXPECT_EQ(Inspector::nextId(), id + 1);
}

TEST(StateMachineExecutor, keepsAMachineRegisteredWhileItsStepsRun)
{
    bool registered = false;
    std::weak_ptr<StateMachine> self;
    const auto machine = makeMachine({{start, [&](const Resume&)
                                       {
                                           registered = Inspector::isRegistered(self.lock());
                                           return done;
                                       }}});
    self = machine;
    StateMachineExecutor::addStateMachine(machine);
    EXPECT_TRUE(registered);
}

TEST(StateMachineExecutor, leavesAMachineThatStartsInItsWaitStateWaitingUntilItIsResumed)
{
    int steps = 0;
    const auto machine = makeMachine({{start, [&](const Resume&) { return ++steps, done; }}}, wait);
    StateMachineExecutor::addStateMachine(machine);
    EXPECT_EQ(steps, 0);
    EXPECT_TRUE(Inspector::isRegistered(machine));
    Inspector::resume(machine, start);
    EXPECT_EQ(steps, 1);
    EXPECT_FALSE(Inspector::isRegistered(machine));
}

TEST(StateMachineExecutor, stopsAtTheWaitStateAndGoesOnFromWhereItIsResumed)
{
    Resume kept;
    std::vector<int> visited;
    const auto machine = makeMachine({{start, waitKeeping(kept)},
                                      {middle, [&](const Resume&) { return visited.push_back(middle), 2; }},
                                      {2, [&](const Resume&) { return visited.push_back(2), done; }}});
    StateMachineExecutor::addStateMachine(machine);
    EXPECT_TRUE(visited.empty());
    EXPECT_TRUE(Inspector::isRegistered(machine));
    kept(middle);
    EXPECT_EQ(visited, (std::vector{middle, 2}));
    EXPECT_FALSE(Inspector::isRegistered(machine));
}

TEST(StateMachineExecutor, doesNotTakeTheWaitStateOfARegularMachine)
{
    int steps = 0;
    StateMachineExecutor::addStateMachine(std::make_shared<RegularStateMachine>(
        std::unordered_map<int, std::function<int()>>{{wait, [&] { return ++steps, done; }}}, wait, done));
    EXPECT_EQ(steps, 1);
}

TEST(StateMachineExecutor, endsAMachineThatIsResumedWithTheFinalState)
{
    Resume kept;
    int steps = 0;
    const auto machine =
        makeMachine({{start, waitKeeping(kept)}, {middle, [&](const Resume&) { return ++steps, done; }}});
    StateMachineExecutor::addStateMachine(machine);
    kept(done);
    EXPECT_EQ(steps, 0);
    EXPECT_FALSE(Inspector::isRegistered(machine));
}

TEST(StateMachineExecutor, leavesAMachineWaitingThatIsResumedWithTheWaitState)
{
    Resume kept;
    const auto machine = makeMachine({{start, waitKeeping(kept)}});
    StateMachineExecutor::addStateMachine(machine);
    kept(wait);
    EXPECT_TRUE(Inspector::isRegistered(machine));
    kept(done);
}

TEST(StateMachineExecutor, ignoresTheFinalStateForAMachineThatHasEnded)
{
    Resume kept;
    const auto machine = makeMachine({{start, waitKeeping(kept)}});
    StateMachineExecutor::addStateMachine(machine);
    kept(done);
    const std::size_t registered = Inspector::registeredCount();
    kept(done);
    EXPECT_EQ(Inspector::registeredCount(), registered);
}

TEST(StateMachineExecutor, givesEveryMachineTheNextId)
{
    const std::size_t first = Inspector::nextId();
    StateMachineExecutor::addStateMachine(makeMachine({}, done));
    StateMachineExecutor::addStateMachine(makeMachine({}, done));
    StateMachineExecutor::addStateMachine(makeMachine({}, done));
    EXPECT_EQ(Inspector::nextId(), first + 3);
}

TEST(StateMachineExecutor, letsStepsAddMachines)
{
    bool inner = false;
    StateMachineExecutor::addStateMachine(
        makeMachine({{start, [&](const Resume&)
                      {
                          StateMachineExecutor::addStateMachine(
                              makeMachine({{start, [&](const Resume&) { return inner = true, done; }}}));
                          return done;
                      }}}));
    EXPECT_TRUE(inner);
}

TEST(StateMachineExecutor, passesAnExceptionOfTheFirstRunOnAndKeepsTheMachine)
{
    const auto machine = makeMachine({{start, [](const Resume&) -> int { throw std::runtime_error("broken"); }}});
    EXPECT_THROW(StateMachineExecutor::addStateMachine(machine), std::runtime_error);
    EXPECT_TRUE(Inspector::isRegistered(machine));
    Inspector::resume(machine, done);
}

TEST(StateMachineExecutor, passesAnExceptionOfAResumedRunOnAndKeepsTheMachine)
{
    Resume kept;
    const auto machine = makeMachine(
        {{start, waitKeeping(kept)}, {middle, [](const Resume&) -> int { throw std::runtime_error("broken"); }}});
    StateMachineExecutor::addStateMachine(machine);
    EXPECT_THROW(kept(middle), std::runtime_error);
    EXPECT_TRUE(Inspector::isRegistered(machine));
    kept(done);
    EXPECT_FALSE(Inspector::isRegistered(machine));
}

TEST(StateMachineExecutor, nestsARunWhoseWorkCompletesInsideTheStep)
{
    std::vector<std::string> log;
    const auto machine = makeMachine({{start,
                                       [&](const Resume& resume)
                                       {
                                           resume(middle);
                                           log.emplace_back("outer step ends");
                                           return wait;
                                       }},
                                      {middle, [&](const Resume&) { return log.emplace_back("inner step"), done; }}});
    StateMachineExecutor::addStateMachine(machine);
    EXPECT_EQ(log, (std::vector<std::string>{"inner step", "outer step ends"}));
    EXPECT_FALSE(Inspector::isRegistered(machine));
}

TEST(StateMachineExecutor, stepsAsDeepAsWorkCompletesInsideItsStep)
{
    int depth = 0;
    int deepest = 0;
    const auto machine = makeMachine({{start, [&](const Resume& resume)
                                       {
                                           deepest = std::max(deepest, ++depth);
                                           resume(depth < 50 ? start : done);
                                           --depth;
                                           return wait;
                                       }}});
    StateMachineExecutor::addStateMachine(machine);
    EXPECT_EQ(deepest, 50);
    EXPECT_FALSE(Inspector::isRegistered(machine));
}

TEST(StateMachineExecutor, runsAResumedMachineOnTheThreadThatResumesIt)
{
    Resume kept;
    std::thread::id steppedOn;
    StateMachineExecutor::addStateMachine(
        makeMachine({{start, waitKeeping(kept)},
                     {middle, [&](const Resume&) { return steppedOn = std::this_thread::get_id(), done; }}}));
    std::thread other([&] { kept(middle); });
    const auto otherId = other.get_id();
    other.join();
    EXPECT_EQ(steppedOn, otherId);
}

TEST(StateMachineExecutor, drivesMachinesOfSeveralThreadsAtATime)
{
    constexpr std::size_t machinesPerThread = 200;
    const std::size_t registered = Inspector::registeredCount();
    const std::size_t first = Inspector::nextId();
    std::vector<std::future<std::size_t>> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread)
    {
        threads.push_back(std::async(std::launch::async,
                                     []
                                     {
                                         std::size_t steps = 0;
                                         for (std::size_t i = 0; i < machinesPerThread; ++i)
                                         {
                                             Resume kept;
                                             StateMachineExecutor::addStateMachine(
                                                 makeMachine({{start, waitKeeping(kept)},
                                                              {middle, [&](const Resume&) { return ++steps, done; }}}));
                                             kept(middle);
                                         }
                                         return steps;
                                     }));
    }
    for (auto& thread : threads)
        EXPECT_EQ(thread.get(), machinesPerThread);
    EXPECT_EQ(Inspector::nextId(), first + 4 * machinesPerThread);
    EXPECT_EQ(Inspector::registeredCount(), registered);
}

TEST(StateMachineExecutor, countsIdsFromZero)
{
    // Every test is a process of its own under CTest: nothing was added before.
    if (Inspector::nextId() != 0)
        GTEST_SKIP() << "other tests ran in this process";
    std::size_t idWhileRunning = 99;
    StateMachineExecutor::addStateMachine(makeMachine({{start, [&](const Resume&)
                                                        {
                                                            idWhileRunning = Inspector::nextId() - 1;
                                                            return done;
                                                        }}}));
    EXPECT_EQ(idWhileRunning, 0U);
}

} // namespace

} // namespace VX
