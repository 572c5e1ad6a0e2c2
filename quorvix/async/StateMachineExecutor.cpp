#include <quorvix/async/StateMachineExecutor.h>

#include <utility>

namespace VX
{

/// Counts one run of a resumable machine. The last run that leaves after the machine has ended breaks the machine's
/// reference to itself.
class ResumableStateMachine::Run
{
public:
    /// @param machine  null for a machine that is not resumable: then nothing is counted
    explicit Run(ResumableStateMachine* machine)
        : machine_(machine)
    {
        if (!machine_)
            return;
        const MutexLock lock(machine_->runsMutex_);
        ++machine_->runs_;
    }

    ~Run()
    {
        if (!machine_)
            return;
        // Destroyed after the lock is gone: it may hold what the steps captured.
        Resume released;
        const MutexLock lock(machine_->runsMutex_);
        if (--machine_->runs_ == 0 && machine_->ended_)
            released.swap(machine_->resumeCallback_);
    }

    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    void markEnded()
    {
        if (!machine_)
            return;
        const MutexLock lock(machine_->runsMutex_);
        machine_->ended_ = true;
    }

private:
    ResumableStateMachine* machine_;
};

StateMachineExecutor& StateMachineExecutor::instance_()
{
    static auto* const instance = new StateMachineExecutor;
    return *instance;
}

std::size_t StateMachineExecutor::register_(const std::shared_ptr<StateMachine>& machine)
{
    StateMachineExecutor& executor = instance_();
    const MutexLock lock(executor.mutex_);
    const std::size_t id = executor.nextId_++;
    executor.machines_.emplace(id, machine);
    return id;
}

void StateMachineExecutor::unregister_(std::size_t id)
{
    // The machine may be destroyed with the last reference, and that outside of the lock.
    std::shared_ptr<StateMachine> removed;
    StateMachineExecutor& executor = instance_();
    const MutexLock lock(executor.mutex_);
    const auto found = executor.machines_.find(id);
    if (found == executor.machines_.end())
        return;
    removed = std::move(found->second);
    executor.machines_.erase(found);
}

std::function<void(int)> StateMachineExecutor::makeResume_(std::size_t id, const std::shared_ptr<StateMachine>& machine)
{
    return [id, machine](int state) { runAndRelease_(id, machine, state); };
}

bool StateMachineExecutor::run_(std::size_t id, const StateMachine& machine, int state)
{
    if (state == machine.finalState())
    {
        unregister_(id);
        return true;
    }
    while (true)
    {
        const auto* const resumable = dynamic_cast<const ResumableStateMachine*>(&machine);
        if (resumable && state == resumable->waitState_)
            return false;
        state = machine.toState(state);
        if (state == machine.finalState())
        {
            unregister_(id);
            return true;
        }
    }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the reference that it is copied from may go while this runs
void StateMachineExecutor::runAndRelease_(std::size_t id, std::shared_ptr<StateMachine> machine, int state)
{
    ResumableStateMachine::Run run(dynamic_cast<ResumableStateMachine*>(machine.get()));
    if (run_(id, *machine, state))
        run.markEnded();
}

void StateMachineExecutor::addStateMachine(const std::shared_ptr<StateMachine>& machine)
{
    const std::size_t id = register_(machine);
    if (auto* const resumable = dynamic_cast<ResumableStateMachine*>(machine.get()))
    {
        const MutexLock lock(resumable->runsMutex_);
        resumable->ended_ = false;
        resumable->resumeCallback_ = makeResume_(id, machine);
    }
    runAndRelease_(id, machine, machine->initialState());
}

} // namespace VX
