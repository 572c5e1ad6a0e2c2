#pragma once

#include <quorvix/Export.h>
#include <quorvix/async/StateMachine.h>

#include <VXMesh/ThreadAnnotations.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <unordered_map>

namespace VX
{

/// Owns every running state machine and drives it: on the thread that adds the machine until it first waits, then on
/// whichever thread resumes it. Nothing is polled.
class QUORVIX_API StateMachineExecutor
{
public:
    /// Registers `machine` under an id of its own and runs it at once on the calling thread; returns when it has
    /// reached its wait state or its final state. An exception of a step passes through, and the machine stays
    /// registered.
    /// @threads any; steps may themselves add machines
    static void addStateMachine(const std::shared_ptr<StateMachine>& machine);

private:
    friend class StateMachineExecutorInspector;

    StateMachineExecutor() = default;

    /// Lives until the process ends: request threads may resume a machine during the exit.
    static StateMachineExecutor& instance_();

    static std::size_t register_(const std::shared_ptr<StateMachine>& machine);
    static void unregister_(std::size_t id);
    static std::function<void(int)> makeResume_(std::size_t id, const std::shared_ptr<StateMachine>& machine);

    /// Steps the machine from `state` to its wait state or its end. @return whether it ended
    static bool run_(std::size_t id, const StateMachine& machine, int state);

    /// Runs the machine and, where it has ended and nobody else runs it, drops its callback to itself.
    /// @param machine  by value: the callback in which this runs may be the one that is dropped
    static void runAndRelease_(std::size_t id, std::shared_ptr<StateMachine> machine, int state);

    Mutex mutex_;
    /// The running machines by id.
    std::unordered_map<std::size_t, std::shared_ptr<StateMachine>> machines_ VX_GUARDED_BY(mutex_);
    /// Never reused.
    std::size_t nextId_ VX_GUARDED_BY(mutex_) = 0;
};

} // namespace VX
