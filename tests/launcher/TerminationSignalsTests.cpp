#include "launcher/TerminationSignals.h"

#include <gtest/gtest.h>

#include <csignal>
#include <future>

namespace VX
{

namespace
{

class TerminationSignalsTest : public testing::TestWithParam<int>
{
protected:
    // The log has a thread of its own.
    TerminationSignalsTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_P(TerminationSignalsTest, CallTheFunction)
{
    std::promise<void> called;
    const TerminationSignals signals([&] { called.set_value(); });
    std::raise(GetParam());
    called.get_future().wait();
}

TEST_P(TerminationSignalsTest, EndTheProcessTheSecondTime)
{
    const auto raiseTwice = []
    {
        const TerminationSignals signals([] {});
        std::raise(SIGTERM);
        std::raise(GetParam());
    };
    EXPECT_EXIT(raiseTwice(), testing::KilledBySignal(GetParam()), "");
}

TEST_P(TerminationSignalsTest, EndTheProcessWhereNobodyListensAnyMore)
{
    const auto raiseLater = []
    {
        {
            const TerminationSignals signals([] {});
        }
        std::raise(GetParam());
    };
    EXPECT_EXIT(raiseLater(), testing::KilledBySignal(GetParam()), "");
}

INSTANTIATE_TEST_SUITE_P(Of, TerminationSignalsTest, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST(TerminationSignals, CallNothingByThemselves)
{
    bool called = false;
    {
        const TerminationSignals signals([&] { called = true; });
    }
    EXPECT_FALSE(called);
}

} // namespace

} // namespace VX
