#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/DataFolder.h>
#include <backend/telemetry/LogStore.h>
#include <backend/telemetry/LogTime.h>
#include <backend/telemetry/LogsCommand.h>

namespace VX::Test
{

namespace
{

class LogsCommandTest : public ::testing::Test
{
public:
    LogsCommandTest()
    {
        const auto store = LogStore::open(DataFolder::open(data)->telemetry()).value();
        EXPECT_TRUE(store->addLines({line("ann@example.com", "2025-01-31T09:00:00.0000000Z", "info", "Opened"),
                                     line("ann@example.com", "2025-02-01T09:00:00.0000000Z", "error", "Not saved"),
                                     line("Bob@example.com", "2025-01-31T10:00:00.0000000Z", "warning", "Slow"),
                                     line("", "2025-01-31T10:00:00.0000001Z", "debug", "Fine")}));
    }

    [[nodiscard]] static LoggedLine line(const std::string& account, const std::string& time, const std::string& level,
                                         const std::string& message)
    {
        return {.account = account,
                .time = time,
                .level = level,
                .service = "Quorvix",
                .version = "1.0.0.0",
                .platform = "linux",
                .environment = "production",
                .message = message};
    }

    [[nodiscard]] std::string text(const LineFilter& filter = {}) const
    {
        return runLogsCommand(data, filter, false).value();
    }

    const TempDir folder;
    const std::filesystem::path data = folder.path() / "data";
    const std::string opened = "2025-01-31T09:00:00.0000000Z info ann@example.com Quorvix 1.0.0.0 linux Opened\n";
    const std::string slow = "2025-01-31T10:00:00.0000000Z warning Bob@example.com Quorvix 1.0.0.0 linux Slow\n";
    const std::string fine = "2025-01-31T10:00:00.0000001Z debug - Quorvix 1.0.0.0 linux Fine\n";
    const std::string notSaved = "2025-02-01T09:00:00.0000000Z error ann@example.com Quorvix 1.0.0.0 linux Not saved\n";
};

TEST_F(LogsCommandTest, printsLinesInTheOrderOfTheirTimes)
{
    EXPECT_EQ(text(), opened + slow + fine + notSaved);
}

TEST_F(LogsCommandTest, findsTheLinesOfAUser)
{
    EXPECT_EQ(text({.account = "ANN@example.com"}), opened + notSaved);
    EXPECT_EQ(text({.account = "ann"}), "");
}

TEST_F(LogsCommandTest, findsLinesFromALevelOn)
{
    EXPECT_EQ(text({.level = "warning"}), slow + notSaved);
    EXPECT_EQ(text({.level = "trace"}), opened + slow + fine + notSaved);
}

TEST_F(LogsCommandTest, findsLinesOfATime)
{
    EXPECT_EQ(text({.since = "2025-01-31T10:00:00.0000000Z"}), slow + fine + notSaved);
    EXPECT_EQ(text({.until = "2025-01-31T10:00:00.0000000Z"}), opened);
    EXPECT_EQ(text({.since = *fullLogTime("2025-01-31"), .until = *fullLogTime("2025-02-01")}), opened + slow + fine);
}

TEST_F(LogsCommandTest, findsLinesByAPartOfTheMessage)
{
    EXPECT_EQ(text({.text = "SAV"}), notSaved);
    EXPECT_EQ(text({.text = "%"}), "");
}

TEST_F(LogsCommandTest, printsTheNewestLines)
{
    EXPECT_EQ(text({.limit = 2}), fine + notSaved);
    EXPECT_EQ(text({.limit = 0}), "");
}

TEST_F(LogsCommandTest, printsObjects)
{
    EXPECT_EQ(runLogsCommand(data, {.level = "error"}, true).value(),
              R"({"environment":"production","logLevel":"error","message":"Not saved","platform":"linux",)"
              R"("serviceName":"Quorvix","serviceVersion":"1.0.0.0","timestamp":"2025-02-01T09:00:00.0000000Z",)"
              R"("user":"ann@example.com"})"
              "\n");
}

TEST_F(LogsCommandTest, printsNothingThatCouldMoveTheCursor)
{
    const auto store = LogStore::open(DataFolder::open(data)->telemetry()).value();
    ASSERT_TRUE(store->addLines({line("", "2025-03-01T09:00:00.0000000Z", "info",
                                      "a\nb\x1B[2J\xC2\x9B"
                                      "c\xC3\xA9")}));
    EXPECT_EQ(text({.limit = 1}), "2025-03-01T09:00:00.0000000Z info - Quorvix 1.0.0.0 linux a?b?[2J?c\xC3\xA9\n");
}

TEST(LogTime, completesWhatIsGiven)
{
    const std::pair<const char*, const char*> cases[] = {
        {"2025-01-31", "2025-01-31T00:00:00.0000000Z"},
        {"2025-01-31T09:15", "2025-01-31T09:15:00.0000000Z"},
        {"2025-01-31T09:15Z", "2025-01-31T09:15:00.0000000Z"},
        {"2025-01-31T09:15:02", "2025-01-31T09:15:02.0000000Z"},
        {"2025-01-31T09:15:02.5Z", "2025-01-31T09:15:02.5000000Z"},
        {"2025-01-31T09:15:02.1234567Z", "2025-01-31T09:15:02.1234567Z"},
        {"2025-01-31T09:15:02.123456789Z", "2025-01-31T09:15:02.1234567Z"},
        {"2024-02-29T23:59:59Z", "2024-02-29T23:59:59.0000000Z"},
    };
    for (const auto& [text, time] : cases)
        EXPECT_EQ(fullLogTime(text), time) << text;
}

TEST(LogTime, refusesWhatIsNoTime)
{
    for (const char* const text : {"",
                                   "Z",
                                   "2025",
                                   "2025-01",
                                   "2025-1-31",
                                   "2025-01-31Z",
                                   "2025-01-31T",
                                   "2025-01-31T09",
                                   "2025-01-31T24:00",
                                   "2025-01-31T09:60",
                                   "2025-01-31T09:15:60",
                                   "2025-01-31T09:15:02.",
                                   "2025-01-31T09:15:02.Z",
                                   "2025-01-31T09:15:02.1234567890",
                                   "2025-01-31T09:15:02.12x",
                                   "2025-13-01",
                                   "2025-02-29",
                                   "2025-00-10",
                                   "2025-01-31T09:15:02+01:00",
                                   "-025-01-31",
                                   "2025-01-31T09:15:02ZZ"})
        EXPECT_EQ(fullLogTime(text), std::nullopt) << text;
}

} // namespace

} // namespace VX::Test
