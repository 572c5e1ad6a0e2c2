#include <gtest/gtest.h>

#include <backend/ChildProcess.h>
#include <backend/ConversionOutcome.h>

#include <csignal>

namespace VX::Test
{

namespace
{

using Kind = ConversionOutcome::Kind;

constexpr ConversionLimits limits{.time = std::chrono::seconds(60), .memory = 1000};
constexpr const char* stoppedText = "The converter stopped unexpectedly. The file may be damaged: export it again from "
                                    "the program that wrote it.";
constexpr const char* memoryText =
    "The conversion ran out of memory. Close other programs, or split the file into smaller ones.";
constexpr const char* timeText =
    "The conversion took longer than 60 seconds and was stopped. Split the file into smaller ones.";

ConversionOutcome outcomeOf(const ProcessEnd& end)
{
    return readProcessEnd(end, limits);
}

TEST(ConversionOutcome, isFinishedAfterExitCode0)
{
    EXPECT_EQ(outcomeOf({.errorOutput = "a warning\n"}).kind, Kind::Finished);
}

TEST(ConversionOutcome, takesTheLastLineOfAFailureAsItsMessage)
{
    const auto outcome = outcomeOf({.exitCode = 1, .errorOutput = "noise\n  The file is empty. \r\n\n"});
    EXPECT_EQ(outcome.kind, Kind::Failed);
    EXPECT_EQ(outcome.message, "The file is empty.");
}

TEST(ConversionOutcome, isAnAccidentWhereAFailureHasNoMessage)
{
    for (const char* text : {"", " \n\n"})
    {
        const auto outcome = outcomeOf({.exitCode = 1, .errorOutput = text});
        EXPECT_EQ(outcome.kind, Kind::Died);
        EXPECT_EQ(outcome.message, stoppedText);
    }
}

TEST(ConversionOutcome, isAnAccidentAfterASignalOrAnotherExitCode)
{
    EXPECT_EQ(outcomeOf({.signal = SIGSEGV, .errorOutput = "some text"}).kind, Kind::Died);
    EXPECT_EQ(outcomeOf({.signal = SIGKILL, .peakMemory = 10}).message, stoppedText);
    EXPECT_EQ(outcomeOf({.exitCode = 3, .errorOutput = "some text"}).message, stoppedText);
}

TEST(ConversionOutcome, tellsThatMemoryRanOut)
{
    const auto uncaught = outcomeOf({.signal = SIGABRT, .errorOutput = "terminate called … 'std::bad_alloc'\n"});
    EXPECT_EQ(uncaught.kind, Kind::Failed);
    EXPECT_EQ(uncaught.message, memoryText);
    EXPECT_EQ(outcomeOf({.signal = SIGKILL, .peakMemory = 900}).message, memoryText);
}

TEST(ConversionOutcome, tellsThatTheTimeWasOver)
{
    const auto outcome = outcomeOf({.signal = SIGXCPU, .cpuTimeOver = true});
    EXPECT_EQ(outcome.kind, Kind::Failed);
    EXPECT_EQ(outcome.message, timeText);
    EXPECT_EQ(timeLimitOutcome(limits).message, timeText);
}

TEST(ConversionOutcome, tellsThatTheConverterIsMissing)
{
    const auto outcome = outcomeOf({.exitCode = ChildProcess::cannotRun});
    EXPECT_EQ(outcome.kind, Kind::Failed);
    EXPECT_EQ(outcome.message, "The converter could not be started. Install the program again.");
}

TEST(ConversionOutcome, cutsASentenceThatIsTooLong)
{
    EXPECT_EQ(outcomeOf({.exitCode = 1, .errorOutput = std::string(5000, 'x')}).message.size(), 1000U);
}

} // namespace

} // namespace VX::Test
