#include "tests/support/LogCapture.h"
#include "tests/support/StartThreads.h"
#include "tests/support/TempConfig.h"

#include <VXMesh/Config.h>
#include <VXMesh/Logger.h>
#include <VXMesh/UserFolders.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spdlog/sinks/ostream_sink.h>
#include <spdlog/spdlog.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <sstream>
#include <thread>
#include <vector>

namespace VX
{

namespace
{

using Test::EnvironmentVariable;
using Test::LogCapture;
using Test::modeOf;
using Test::readFile;
using Test::startThreads;
using Test::TempConfig;
using testing::HasSubstr;
using testing::Not;

std::filesystem::path logFile()
{
    return getUserStateDir() / "log/VXMeshTests.log";
}

void logOneLineOfEachLevel()
{
    const TempConfig temp;
    auto logger = Logger::instance().getSpdLogger();
    logger->debug("A debug line");
    logger->info("An info line");
    logger->warn("A warning line");
}

// What a new process writes to standard error when it logs one line of each level.
void expectConsole(const char* setting, const testing::Matcher<const std::string&>& matcher)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const EnvironmentVariable variable("VX_LOG", setting);
    EXPECT_EXIT(
        {
            logOneLineOfEachLevel();
            std::exit(0); // NOLINT(concurrency-mt-unsafe): no other thread is left
        },
        testing::ExitedWithCode(0), matcher);
}

// Counts the flushes.
class FlushSink : public spdlog::sinks::sink
{
public:
    void log(const spdlog::details::log_msg&) override {}

    void flush() override { ++count; }

    void set_pattern(const std::string&) override {}

    void set_formatter(std::unique_ptr<spdlog::formatter>) override {}

    std::atomic<int> count = 0;
};

// Writes a line of its own for every line.
class EchoSink : public FlushSink
{
public:
    void log(const spdlog::details::log_msg& message) override
    {
        if (message.level != spdlog::level::trace && message.level != spdlog::level::debug)
            spdlog::debug("Echo");
    }
};

} // namespace

TEST(Logger, OwnsTheDefaultLogger)
{
    const auto logger = Logger::instance().getSpdLogger();
    EXPECT_EQ(logger.get(), spdlog::default_logger_raw());
}

TEST(Logger, HandsEveryLineToAnAddedSinkUntilItIsRemoved)
{
    const TempConfig temp;
    std::ostringstream stream;
    const auto sink = std::make_shared<spdlog::sinks::ostream_sink_mt>(stream);
    sink->set_pattern("%l %v");
    Logger::instance().addSink(sink);
    spdlog::debug("one");
    Logger::instance().removeSink(sink);
    spdlog::debug("two");
    EXPECT_EQ(stream.str(), "debug one\n");
}

TEST(Logger, ShowsAddedSinksInTheirOrder)
{
    const auto sink = std::make_shared<FlushSink>();
    Logger::instance().addSink(sink);
    EXPECT_EQ(Logger::instance().getSpdLogger()->sinks().back(), sink);
    Logger::instance().removeSink(sink);
    EXPECT_THAT(Logger::instance().getSpdLogger()->sinks(), Not(testing::Contains(sink)));
}

TEST(Logger, RespectsTheLevelOfASink)
{
    const TempConfig temp;
    std::ostringstream stream;
    const auto sink = std::make_shared<spdlog::sinks::ostream_sink_mt>(stream);
    sink->set_level(spdlog::level::err);
    sink->set_pattern("%v");
    Logger::instance().addSink(sink);
    spdlog::warn("one");
    spdlog::error("two");
    Logger::instance().removeSink(sink);
    EXPECT_EQ(stream.str(), "two\n");
}

TEST(Logger, WritesEveryLineFromDebugOnToTheFileOfTheProgram)
{
    const TempConfig temp;
    spdlog::trace("A trace line");
    spdlog::debug("A debug line");
    spdlog::info("An info line");
    Logger::instance().getSpdLogger()->flush();
    const std::string text = readFile(logFile());
    EXPECT_THAT(text, HasSubstr("debug: A debug line\n"));
    EXPECT_THAT(text, HasSubstr("info: An info line\n"));
    EXPECT_THAT(text, Not(HasSubstr("trace")));
}

TEST(Logger, CreatesTheFileWithTheFirstLine)
{
    const TempConfig temp;
    EXPECT_FALSE(std::filesystem::exists(getUserStateDir()));
    spdlog::debug("A line");
    EXPECT_TRUE(std::filesystem::exists(logFile()));
    EXPECT_EQ(modeOf(logFile().parent_path()), 0700U);
}

TEST(Logger, WarningsAreInTheFileAtOnce)
{
    const TempConfig temp;
    spdlog::warn("A warning line");
    EXPECT_THAT(readFile(logFile()), HasSubstr("A warning line"));
}

TEST(Logger, GoesOnInTheFolderOfTheNewApplicationName)
{
    const TempConfig temp("First");
    spdlog::warn("A line");
    Config::instance().reset("Second");
    spdlog::warn("Another line");
    EXPECT_THAT(readFile(logFile()), Not(HasSubstr("A line")));
    EXPECT_THAT(readFile(logFile()), HasSubstr("Another line"));
}

TEST(Logger, StartsANewFileWhereTheOldOneIsFull)
{
    const TempConfig temp;
    const std::string longLine(1U << 16U, 'x');
    for (int i = 0; i < 100; ++i)
        spdlog::debug(longLine);
    Logger::instance().getSpdLogger()->flush();
    const auto oldFile = logFile().parent_path() / "VXMeshTests.1.log";
    ASSERT_TRUE(std::filesystem::exists(oldFile));
    EXPECT_LE(std::filesystem::file_size(oldFile), 5U << 20U);
}

TEST(Logger, WarnsOnceWhereTheFileCannotBeWrittenAndGoesOn)
{
    const TempConfig temp;
    const EnvironmentVariable state("XDG_STATE_HOME", temp.folder().write("file", ""));
    const LogCapture log;
    spdlog::info("one");
    spdlog::info("two");
    EXPECT_THAT(log.texts(spdlog::level::info), testing::ElementsAre("one", "two"));
    EXPECT_THAT(log.texts(spdlog::level::warn),
                testing::ElementsAre("The log file cannot be written; the log goes on without it"));
}

TEST(Logger, ASinkMayLogItself)
{
    const TempConfig temp;
    const LogCapture log;
    const auto sink = std::make_shared<EchoSink>();
    Logger::instance().addSink(sink);
    spdlog::info("A line");
    Logger::instance().removeSink(sink);
    EXPECT_THAT(log.texts(spdlog::level::debug), testing::ElementsAre("Echo"));
}

TEST(Logger, FlushesItsSinksByItself)
{
    const auto sink = std::make_shared<FlushSink>();
    Logger::instance().addSink(sink);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (sink->count == 0 && std::chrono::steady_clock::now() < deadline)
        std::this_thread::yield();
    Logger::instance().removeSink(sink);
    EXPECT_GT(sink->count, 0);
}

TEST(Logger, SinksComeAndGoWhileOtherThreadsWriteLines)
{
    const TempConfig temp;
    const LogCapture log;
    constexpr int threadCount = 4;
    constexpr int lineCount = 200;
    auto threads = startThreads(threadCount,
                                [](int)
                                {
                                    for (int i = 0; i < lineCount; ++i)
                                        spdlog::debug("line {}", i);
                                });
    for (int i = 0; i < lineCount; ++i)
    {
        const auto sink = std::make_shared<FlushSink>();
        Logger::instance().addSink(sink);
        Logger::instance().removeSink(sink);
    }
    threads.clear();
    EXPECT_THAT(log.lines(), testing::SizeIs(threadCount * lineCount));
}

TEST(LoggerDeathTest, StandardErrorHasWarningsOnly)
{
    expectConsole("", testing::AllOf(HasSubstr("warning: A warning line\n"), Not(HasSubstr("An info line"))));
}

TEST(LoggerDeathTest, TheEnvironmentTurnsStandardErrorUp)
{
    expectConsole("debug", testing::AllOf(HasSubstr("debug: A debug line\n"), HasSubstr("warning: A warning line\n")));
}

TEST(LoggerDeathTest, TheEnvironmentTurnsStandardErrorOff)
{
    expectConsole("off", Not(HasSubstr("A warning line")));
}

TEST(LoggerDeathTest, AnUnknownLevelInTheEnvironmentChangesNothing)
{
    expectConsole("loud", testing::AllOf(HasSubstr("A warning line"), Not(HasSubstr("An info line"))));
}

} // namespace VX
