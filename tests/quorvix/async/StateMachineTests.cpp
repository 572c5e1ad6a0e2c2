#include <quorvix/async/StateMachine.h>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <type_traits>

namespace VX
{

namespace
{

TEST(RegularStateMachine, tellsItsInitialAndFinalState)
{
    const RegularStateMachine machine({}, 3, 9);
    EXPECT_EQ(machine.initialState(), 3);
    EXPECT_EQ(machine.finalState(), 9);
}

TEST(RegularStateMachine, performsTheStepOfTheState)
{
    int steps = 0;
    const RegularStateMachine machine({{1, [&] { return ++steps, 2; }}, {2, [] { return 7; }}}, 1, 3);
    EXPECT_EQ(machine.toState(1), 2);
    EXPECT_EQ(machine.toState(2), 7);
    EXPECT_EQ(steps, 1);
}

TEST(RegularStateMachine, throwsForAStateWithoutAnEntry)
{
    const RegularStateMachine machine({{1, [] { return 2; }}}, 1, 3);
    EXPECT_THROW(static_cast<void>(machine.toState(2)), std::out_of_range);
}

TEST(RegularStateMachine, throwsForAnEntryWithoutAFunction)
{
    const RegularStateMachine machine({{1, nullptr}}, 1, 3);
    EXPECT_THROW(static_cast<void>(machine.toState(1)), std::bad_function_call);
}

TEST(ResumableStateMachine, tellsItsInitialAndFinalState)
{
    const ResumableStateMachine machine({}, 3, 5, 9);
    EXPECT_EQ(machine.initialState(), 3);
    EXPECT_EQ(machine.finalState(), 9);
}

TEST(ResumableStateMachine, hasAnEmptyCallbackBeforeTheExecutorFillsIt)
{
    bool empty = false;
    const ResumableStateMachine machine({{0,
                                          [&](const std::function<void(int)>& resume)
                                          {
                                              empty = !resume;
                                              return 4;
                                          }}},
                                        0, 1, 2);
    EXPECT_EQ(machine.toState(0), 4);
    EXPECT_TRUE(empty);
}

TEST(ResumableStateMachine, throwsForAStateWithoutAnEntry)
{
    const ResumableStateMachine machine({}, 0, 1, 2);
    EXPECT_THROW(static_cast<void>(machine.toState(1)), std::out_of_range);
}

TEST(ResumableStateMachine, throwsForAnEntryWithoutAFunction)
{
    const ResumableStateMachine machine({{0, nullptr}}, 0, 1, 2);
    EXPECT_THROW(static_cast<void>(machine.toState(0)), std::bad_function_call);
}

TEST(StateMachine, isDestroyedThroughItsBase)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<StateMachine>);
    EXPECT_TRUE(std::is_abstract_v<StateMachine>);
}

} // namespace

} // namespace VX
