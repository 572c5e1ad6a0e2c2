#include "support/BackendTestSupport.h"
#include "tests/support/TempDir.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <backend/DataFolder.h>
#include <backend/Service.h>
#include <backend/SqliteDatabase.h>
#include <backend/telemetry/LogStore.h>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

class LogRetentionTest : public ::testing::Test
{
public:
    /// Stores a line that came so long ago, with its age as its message.
    void addLine(std::chrono::hours age) const
    {
        const auto file = DataFolder::open(data)->telemetry();
        const auto received = std::chrono::system_clock::now() - age;
        ASSERT_TRUE(LogStore::open(file));
        ASSERT_TRUE(SqliteDatabase::open(file)
                        ->prepare("INSERT INTO lines(received, time, level, service, version, platform, environment, "
                                  "message) VALUES (?1, '', '', '', '', '', '', ?2)")
                        .bind(std::int64_t{received.time_since_epoch() / 1ms}, fmt::to_string(age.count()))
                        .run());
    }

    /// Runs a service until it has removed what is old.
    [[nodiscard]] std::vector<std::string> agesAfterAStart(std::size_t expected) const
    {
        ServerConfig config;
        config.converter = fakeConverter();
        config.keepLogs = 48h;
        const auto service = Service::start(config, data, {});
        EXPECT_TRUE(service) << service.error();
        const auto store = LogStore::open(DataFolder::open(data)->telemetry()).value();
        EXPECT_TRUE(waitUntil([&] { return store->findLines({})->size() == expected; }));
        const std::vector<LoggedLine> lines = store->findLines({}).value();
        std::vector<std::string> ages;
        for (const LoggedLine& line : lines)
            ages.push_back(line.message);
        return ages;
    }

    const TempDir folder;
    const std::filesystem::path data = folder.path() / "data";
};

TEST_F(LogRetentionTest, endsAfterTheConfiguredDays)
{
    addLine(49h);
    addLine(47h);
    addLine(0h);
    EXPECT_EQ(agesAfterAStart(2), (std::vector<std::string>{"47", "0"}));
}

} // namespace

} // namespace VX::Test
