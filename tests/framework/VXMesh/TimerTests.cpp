#include "tests/support/LogCapture.h"
#include "tests/support/TempConfig.h"

#include <VXMesh/Timer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

using Test::LogCapture;
using Test::TempConfig;

testing::Matcher<const std::string&> isTimeOf(const std::string& name)
{
    return testing::MatchesRegex("Timer \"" + name + "\": [0-9]+\\.[0-9][0-9][0-9] ms");
}

} // namespace

TEST(Timer, LogsItsTimeAtTheEndOfTheScope)
{
    const TempConfig temp;
    const LogCapture log;
    {
        const Timer timer("VX::Some::function");
        EXPECT_THAT(log.lines(), testing::IsEmpty());
    }
    EXPECT_THAT(log.texts(spdlog::level::debug), testing::ElementsAre(isTimeOf("VX::Some::function")));
}

TEST(Timer, LogsOnceWhenFinishedEarlier)
{
    const TempConfig temp;
    const LogCapture log;
    {
        Timer timer("VX::Some::function");
        timer.finish();
        EXPECT_THAT(log.lines(), testing::SizeIs(1));
        timer.finish();
    }
    EXPECT_THAT(log.lines(), testing::SizeIs(1));
}

TEST(Timer, RunsForward)
{
    const TempConfig temp;
    const Timer timer("VX::Some::function");
    const auto first = timer.elapsed();
    EXPECT_GE(first.count(), 0);
    EXPECT_GE(timer.elapsed(), first);
}

} // namespace VX
