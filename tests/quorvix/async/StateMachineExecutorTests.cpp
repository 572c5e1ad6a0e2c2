#include <quorvix/async/StateMachineExecutor.h>

#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

namespace VX
{

/// Looks into the registry.
class StateMachineExecutorInspector
{
public:
    static std::size_t registeredCount()
    {
        auto& executor = StateMachineExecutor::instance_();
        const MutexLock lock(executor.mutex_);
        return executor.machines_.size();
    }

    static std::size_t nextId()
    {
        auto& executor = StateMachineExecutor::instance_();
        const MutexLock lock(executor.mutex_);
        return executor.nextId_;
    }

    static std::optional<std::size_t> idOf(const std::shared_ptr<StateMachine>& machine)
    {
        auto& executor = StateMachineExecutor::instance_();
        const MutexLock lock(executor.mutex_);
        for (const auto& [id, registered] : executor.machines_)
        {
            if (registered == machine)
                return id;
        }
        return std::nullopt;
    }

    static bool isRegistered(const std::shared_ptr<StateMachine>& machine) { return idOf(machine).has_value(); }

    /// What the callback of a registered machine does, for one that has not given it away.
    static void resume(const std::shared_ptr<StateMachine>& machine, int state)
    {
        StateMachineExecutor::runAndRelease_(idOf(machine).value(), machine, state);
    }
};

namespace
{

using Inspector = StateMachineExecutorInspector;
using Resume = std::function<void(int)>;
using Steps = std::unordered_map<int, std::function<int(const Resume&)>>;

constexpr int start = 0;
constexpr int middle = 1;
constexpr int wait = 7;
constexpr int done = 8;

std::shared_ptr<ResumableStateMachine> makeMachine(Steps steps, int initial = start)
{
    return std::make_shared<ResumableStateMachine>(std::move(steps), initial, wait, done);
}

/// A step that keeps the callback in `kept` and waits.
std::function<int(const Resume&)> waitKeeping(Resume& kept)
{
    return [&kept](const Resume& resume)
    {
        kept = resume;
        return wait;
    };
}

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

TEST(StateMachineExecutor, destroysAMachineThatEndsInItsFirstRun)
{
    Captured captured;
    StateMachineExecutor::addStateMachine(
        makeMachine({{start, [held = captured.take()](const Resume&) { return done; }}}));
    EXPECT_FALSE(captured.isAlive());
}

TEST(StateMachineExecutor, destroysAMachineThatEndsAfterItsWaitWithTheLastCopyOfItsCallback)
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

TEST(StateMachineExecutor, keepsTheCallbackWhileTheStepRunsWhoseNestedRunEndsTheMachine)
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

TEST(StateMachineExecutor, endsWithinTheCallOfTheMachinesOwnCallback)
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

TEST(StateMachineExecutor, runsAMachineAgainThatIsAddedAgain)
{
    Resume kept;
    int ends = 0;
    const auto machine =
        makeMachine({{start, waitKeeping(kept)}, {middle, [&](const Resume&) { return ++ends, done; }}});
    StateMachineExecutor::addStateMachine(machine);
    kept(middle);
    StateMachineExecutor::addStateMachine(machine);
    kept(middle);
    EXPECT_EQ(ends, 2);
}

TEST(StateMachineExecutor, endsOnAnotherThreadWhileTheFirstStepIsStillRunning)
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

TEST(StateMachineExecutor, endsOnAnotherThreadWhileTheFirstRunReturns)
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

TEST(StateMachineExecutor, drivesMachinesOfSeveralThreadsAtATime)
{
    constexpr int machinesPerThread = 200;
    const std::size_t registered = Inspector::registeredCount();
    const std::size_t first = Inspector::nextId();
    std::vector<std::future<int>> threads;
    for (int thread = 0; thread < 4; ++thread)
    {
        threads.push_back(std::async(std::launch::async,
                                     []
                                     {
                                         int steps = 0;
                                         for (int i = 0; i < machinesPerThread; ++i)
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
