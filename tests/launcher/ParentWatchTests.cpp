#include "launcher/ParentWatch.h"

#include "tests/support/Processes.h"

#include <gtest/gtest.h>

#include <future>

namespace VX
{

TEST(ParentWatch, CallsTheFunctionWhereAnotherProcessIsTheParentByNow)
{
    std::promise<void> called;
    const ParentWatch watch(VX::Test::ownProcess(), [&] { called.set_value(); });
    called.get_future().wait();
}

TEST(ParentWatch, EndsWithoutACallWhileTheParentRuns)
{
    bool called = false;
    {
        const ParentWatch watch(VX::Test::parentProcess(), [&] { called = true; });
    }
    EXPECT_FALSE(called);
}

} // namespace VX
