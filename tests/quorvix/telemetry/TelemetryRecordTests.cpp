#include "tests/quorvix/support/AccountsFixture.h"
#include <quorvix/telemetry/TelemetryRecord.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

namespace VX
{

namespace
{

using ::testing::ElementsAre;

class TelemetryRecordTest : public VX::Test::AccountsFixture
{
protected:
    static std::vector<Json::Value> lines_()
    {
        std::istringstream text(VX::Test::readFile(TelemetryRecord::file()));
        std::vector<Json::Value> all;
        for (std::string line; std::getline(text, line);)
            all.push_back(deserializeJsonValue(line).value_or(Json::Value()));
        return all;
    }
};

TEST_F(TelemetryRecordTest, isNotThereBeforeAnythingIsSent)
{
    SessionLogs::logAction("First", false);
    SessionLogs::flushIfNeeded(true);
    EXPECT_FALSE(std::filesystem::exists(TelemetryRecord::file()));
}

TEST_F(TelemetryRecordTest, hasEveryBodyThatWasSentAsALine)
{
    SessionLogs::logAction("First", false);
    openSession_("ann@example.com");
    std::vector<Json::Value> sent;
    for (const Json::Value& line : lines_())
        sent.push_back(line["sent"]);
    EXPECT_EQ(sent, bodies_());
    EXPECT_EQ(sent.size(), 3U);
}

TEST_F(TelemetryRecordTest, saysWhen)
{
    SessionLogs::requestSessionId("ann@example.com");
    ASSERT_EQ(lines_().size(), 1U);
    EXPECT_EQ(lines_().front()["time"], "2023-11-14T22:13:20Z");
}

TEST_F(TelemetryRecordTest, isTheUsersAlone)
{
    SessionLogs::requestSessionId("ann@example.com");
    EXPECT_EQ(VX::Test::modeOf(TelemetryRecord::file().parent_path()), 0700U);
}

TEST_F(TelemetryRecordTest, staysSmall)
{
    SessionLogs::requestSessionId("ann@example.com");
    answerLast_(R"({"sessionId": 7})");
    for (int i = 0; i < 40; ++i)
    {
        SessionLogs::logAction(std::string(100'000, 'x'), false);
        SessionLogs::flushIfNeeded(true);
    }
    std::uintmax_t size = 0;
    for (const auto& file : std::filesystem::directory_iterator(TelemetryRecord::file().parent_path()))
        if (file.path().filename().string().starts_with("telemetry"))
            size += file.file_size();
    EXPECT_LE(size, 3U << 20U);
    EXPECT_GT(size, 2U << 20U);
}

TEST_F(TelemetryRecordTest, isGivenUpWhereItCannotBeWritten)
{
    const VX::Test::EnvironmentVariable state("XDG_STATE_HOME", config_.folder().write("file", "").string());
    SessionLogs::requestSessionId("ann@example.com");
    EXPECT_THAT(types_(), ElementsAre("createSession"));
}

} // namespace

} // namespace VX
