#pragma once

#include <quorvix/Export.h>

#include <VXMesh/ThreadAnnotations.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>

namespace VX
{

/// A job cut into steps: a table from a state to the function that does one step and returns the next state.
/// Owned through `std::shared_ptr` and driven by `StateMachineExecutor`.
class QUORVIX_API StateMachine
{
public:
    StateMachine() = default;
    virtual ~StateMachine();

    StateMachine(const StateMachine&) = delete;
    StateMachine& operator=(const StateMachine&) = delete;

    /// The state in which the machine starts.
    [[nodiscard]] virtual std::int32_t initialState() const = 0;

    /// The state that ends the machine; it has no step.
    [[nodiscard]] virtual std::int32_t finalState() const = 0;

    /// Performs the step of `state` and returns the next state.
    [[nodiscard]] virtual std::int32_t toState(std::int32_t state) const = 0;
};

/// A machine that runs straight through from its initial to its final state.
class QUORVIX_API RegularStateMachine : public StateMachine
{
public:
    /// @param states  an entry for every state that a step may return, but for the final one
    RegularStateMachine(std::unordered_map<int, std::function<int()>> states, int initialState, int finalState);

    [[nodiscard]] std::int32_t initialState() const override { return initialState_; }

    [[nodiscard]] std::int32_t finalState() const override { return finalState_; }

    /// @throws std::out_of_range where `state` has no entry, std::bad_function_call where its function is empty, and
    ///         whatever the step throws
    [[nodiscard]] std::int32_t toState(std::int32_t state) const override;

private:
    std::unordered_map<int, std::function<int()>> states_;
    int initialState_;
    int finalState_;
};

/// A machine that may stop in its wait state, to be continued later from any thread.
///
/// A step that starts asynchronous work keeps a copy of the callback that it is given and returns the wait state; when
/// the work completes, the callback is called once with the state at which the machine goes on. That may happen on
/// another thread before the step has returned, or inside the step itself. The copies of the callback keep the machine
/// alive; the machine's own one is dropped when the machine has ended and no step of it is running any more.
class QUORVIX_API ResumableStateMachine : public StateMachine
{
public:
    using Resume = std::function<void(int)>;

    /// @param states  an entry for every state that a step may return, but for the wait and the final one
    ResumableStateMachine(std::unordered_map<int, std::function<int(const Resume&)>> states, int initialState,
                          int waitState, int finalState);

    [[nodiscard]] std::int32_t initialState() const override { return initialState_; }

    [[nodiscard]] std::int32_t finalState() const override { return finalState_; }

    /// @throws std::out_of_range where `state` has no entry, std::bad_function_call where its function is empty, and
    ///         whatever the step throws
    [[nodiscard]] std::int32_t toState(std::int32_t state) const override;

private:
    friend class StateMachineExecutor;
    class Run;

    std::unordered_map<int, std::function<int(const Resume&)>> states_;
    int initialState_;
    int waitState_;
    int finalState_;
    /// Filled by the executor before the first step. Steps read it without a lock, so it changes only while `runs_` is
    /// 0: a step that is still running, on this thread or another, may hold a reference to it.
    Resume resumeCallback_;

    Mutex runsMutex_;
    int runs_ VX_GUARDED_BY(runsMutex_) = 0;
    bool ended_ VX_GUARDED_BY(runsMutex_) = false;
};

} // namespace VX
