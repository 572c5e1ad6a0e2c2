// What the state machines themselves cost beside the work that their steps do.

#include <quorvix/async/StateMachineExecutor.h>

#include <benchmark/benchmark.h>

#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>

namespace
{

constexpr int steps = 1000;
constexpr int waitState = 1;
constexpr int finalState = 2;

void countSteps(benchmark::State& state)
{
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * steps);
}

// A machine that steps straight through.
void stepRegularMachine(benchmark::State& state)
{
    int left = 0;
    const auto machine = std::make_shared<VX::RegularStateMachine>(
        std::unordered_map<int, std::function<int()>>{{0, [&left] { return --left > 0 ? 0 : finalState; }}}, 0,
        finalState);
    for (auto _ : state)
    {
        left = steps;
        VX::StateMachineExecutor::addStateMachine(machine);
    }
    countSteps(state);
}

BENCHMARK(stepRegularMachine);

// A machine that waits after every step and is resumed from outside.
void resumeMachine(benchmark::State& state)
{
    int left = 0;
    std::function<void(int)> kept;
    std::unordered_map<int, std::function<int(const std::function<void(int)>&)>> states;
    states[0] = [&](const std::function<void(int)>& resume)
    {
        kept = resume;
        return --left > 0 ? waitState : finalState;
    };
    const auto machine = std::make_shared<VX::ResumableStateMachine>(std::move(states), 0, waitState, finalState);
    for (auto _ : state)
    {
        left = steps;
        VX::StateMachineExecutor::addStateMachine(machine);
        while (left > 0)
            std::exchange(kept, nullptr)(0);
        kept = nullptr;
    }
    countSteps(state);
}

BENCHMARK(resumeMachine);

// Making, registering, running and destroying a machine of one step.
void addMachine(benchmark::State& state)
{
    for (auto _ : state)
    {
        std::unordered_map<int, std::function<int(const std::function<void(int)>&)>> states;
        states[0] = [](const std::function<void(int)>&) { return finalState; };
        VX::StateMachineExecutor::addStateMachine(
            std::make_shared<VX::ResumableStateMachine>(std::move(states), 0, waitState, finalState));
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}

BENCHMARK(addMachine);

} // namespace
