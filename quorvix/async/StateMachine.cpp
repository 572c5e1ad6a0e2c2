#include <quorvix/async/StateMachine.h>

#include <utility>

namespace VX
{

StateMachine::~StateMachine() = default;

RegularStateMachine::RegularStateMachine(std::unordered_map<int, std::function<int()>> states, int initialState,
                                         int finalState)
    : states_(std::move(states))
    , initialState_(initialState)
    , finalState_(finalState)
{
}

std::int32_t RegularStateMachine::toState(std::int32_t state) const
{
    return states_.at(state)();
}

ResumableStateMachine::ResumableStateMachine(std::unordered_map<int, std::function<int(const Resume&)>> states,
                                             int initialState, int waitState, int finalState)
    : states_(std::move(states))
    , initialState_(initialState)
    , waitState_(waitState)
    , finalState_(finalState)
{
}

std::int32_t ResumableStateMachine::toState(std::int32_t state) const
{
    return states_.at(state)(resumeCallback_);
}

} // namespace VX
