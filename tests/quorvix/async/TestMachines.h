#pragma once

#include <quorvix/async/StateMachineExecutor.h>

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

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
        StateMachineExecutor::runAndRelease_(idOf(machine).value_or(-1), machine, state);
    }
};

namespace Test
{

using Inspector = StateMachineExecutorInspector;
using Resume = std::function<void(int)>;
using Steps = std::unordered_map<int, std::function<int(const Resume&)>>;

inline constexpr int start = 0;
inline constexpr int middle = 1;
inline constexpr int wait = 7;
inline constexpr int done = 8;

inline std::shared_ptr<ResumableStateMachine> makeMachine(Steps steps, int initial = start)
{
    return std::make_shared<ResumableStateMachine>(std::move(steps), initial, wait, done);
}

/// A step that keeps the callback in `kept` and waits.
inline std::function<int(const Resume&)> waitKeeping(Resume& kept)
{
    return [&kept](const Resume& resume)
    {
        kept = resume;
        return wait;
    };
}

} // namespace Test

} // namespace VX
