#include <quorvix/telemetry/LogLines.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr LogRecord::Time morning{std::chrono::seconds(1738314902)};

void add(LogLines& lines, std::string_view message, spdlog::level::level_enum level = spdlog::level::info)
{
    lines.add({morning, level, message});
}

std::vector<std::string> messages(const LogChunks& chunks)
{
    std::vector<std::string> all;
    for (const auto& chunk : chunks)
        chunk->forEach([&all](const LogRecord& record) { all.emplace_back(record.message); });
    return all;
}

TEST(LogLines, comeBackAsTheyWereAdded)
{
    LogLines lines;
    lines.add({morning, spdlog::level::err, "text"});
    const LogChunks chunks = lines.take();
    ASSERT_EQ(chunks.size(), 1U);
    chunks.front()->forEach(
        [](const LogRecord& record)
        {
            EXPECT_EQ(record.time, morning);
            EXPECT_EQ(record.level, spdlog::level::err);
            EXPECT_EQ(record.message, "text");
        });
}

TEST(LogLines, areGoneOnceTheyAreTaken)
{
    LogLines lines;
    add(lines, "one");
    EXPECT_THAT(messages(lines.take()), ElementsAre("one"));
    EXPECT_EQ(lines.count(), 0U);
    EXPECT_THAT(lines.take(), IsEmpty());
    add(lines, "two");
    EXPECT_THAT(messages(lines.take()), ElementsAre("two"));
}

TEST(LogLines, keepTheirOrderOverManyChunks)
{
    LogLines lines;
    std::vector<std::string> expected;
    for (int i = 0; i < 100'000; ++i)
        add(lines, expected.emplace_back("line " + std::to_string(i)));
    EXPECT_EQ(lines.count(), expected.size());
    const LogChunks chunks = lines.take();
    EXPECT_GT(chunks.size(), 1U);
    EXPECT_LT(chunks.size(), 20U);
    EXPECT_EQ(messages(chunks), expected);
}

TEST(LogLines, mayBeLongerThanAChunk)
{
    const std::string longLine(std::size_t{3} << 20U, 'x');
    LogLines lines;
    add(lines, "before");
    add(lines, longLine);
    add(lines, "");
    EXPECT_THAT(messages(lines.take()), ElementsAre("before", longLine, ""));
}

TEST(LogLines, areDroppedByTheirLevel)
{
    LogLines lines;
    add(lines, "info");
    add(lines, "error", spdlog::level::err);
    add(lines, "debug", spdlog::level::debug);
    add(lines, "warning", spdlog::level::warn);
    lines.dropBelow(spdlog::level::warn);
    EXPECT_EQ(lines.count(), 2U);
    add(lines, "later");
    EXPECT_THAT(messages(lines.take()), ElementsAre("error", "warning", "later"));
}

TEST(LogLines, tellTheSizeOfTheirMessages)
{
    LogLines lines;
    add(lines, "four");
    add(lines, "seven..");
    const LogChunks chunks = lines.take();
    EXPECT_EQ(std::accumulate(chunks.begin(), chunks.end(), std::size_t{0},
                              [](std::size_t sum, const auto& chunk) { return sum + chunk->messageBytes(); }),
              11U);
}

} // namespace

} // namespace VX
