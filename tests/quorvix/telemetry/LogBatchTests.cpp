#include <quorvix/telemetry/LogBatch.h>

#include <VXMesh/Json.h>

#include <gtest/gtest.h>
#include <json/value.h>
#include <json/writer.h>

#include <string_view>

namespace VX
{

namespace
{

using std::chrono::seconds;

constexpr LogRecord::Time morning{seconds(1738314902)}; // 2025-01-31T09:15:02Z

ServerSendSink::Params params()
{
    ServerSendSink::Params params;
    params.serviceName = "Service";
    params.serviceVersion = "1.2.3.4";
    params.platform = "debian_x86_64";
    params.environment = "test";
    return params;
}

std::string body(const std::vector<LogRecord>& records)
{
    LogLines lines;
    for (const LogRecord& record : records)
        lines.add(record);
    return logBatchBody(lines.take(), params());
}

Json::Value sentItem(const LogRecord& record)
{
    return deserializeJsonValue(body({record})).value()["items"][0];
}

std::string sentTime(LogRecord::Time time)
{
    return sentItem({time, spdlog::level::info, ""})["timestamp"].asString();
}

TEST(LogBatch, isAnObjectOfItemsInTheWritersOwnLayout)
{
    const std::string_view expected = "{\n"
                                      "\t\"items\" : \n"
                                      "\t[\n"
                                      "\t\t{\n"
                                      "\t\t\t\"environment\" : \"test\",\n"
                                      "\t\t\t\"logLevel\" : \"warning\",\n"
                                      "\t\t\t\"message\" : \"text\",\n"
                                      "\t\t\t\"platform\" : \"debian_x86_64\",\n"
                                      "\t\t\t\"serviceName\" : \"Service\",\n"
                                      "\t\t\t\"serviceVersion\" : \"1.2.3.4\",\n"
                                      "\t\t\t\"timestamp\" : \"2025-01-31T09:15:02.1234567Z\"\n"
                                      "\t\t}\n"
                                      "\t]\n"
                                      "}";
    const LogRecord record{morning + LogRecord::Ticks(1234567), spdlog::level::warn, "text"};
    EXPECT_EQ(body({record}), expected);
}

TEST(LogBatch, hasItsRecordsInTheirOrder)
{
    const auto sent =
        deserializeJsonValue(body({{morning, spdlog::level::info, "one"}, {morning, spdlog::level::info, "two"}}));
    ASSERT_TRUE(sent);
    ASSERT_EQ((*sent)["items"].size(), 2U);
    EXPECT_EQ((*sent)["items"][0]["message"], "one");
    EXPECT_EQ((*sent)["items"][1]["message"], "two");
}

TEST(LogBatch, isAListWithoutRecordsToo)
{
    EXPECT_EQ(body({}), "{\n\t\"items\" : []\n}");
}

TEST(LogBatch, writesTimesWithSevenDecimals)
{
    EXPECT_EQ(sentTime(morning), "2025-01-31T09:15:02.0000000Z");
    EXPECT_EQ(sentTime(morning + LogRecord::Ticks(1)), "2025-01-31T09:15:02.0000001Z");
    EXPECT_EQ(sentTime(morning + LogRecord::Ticks(9'999'999)), "2025-01-31T09:15:02.9999999Z");
    EXPECT_EQ(sentTime(LogRecord::Time(LogRecord::Ticks(-1))), "1969-12-31T23:59:59.9999999Z");
}

TEST(LogBatch, namesLevelsInFull)
{
    for (const auto& [level, name] : {std::pair(spdlog::level::trace, "trace"),
                                      {spdlog::level::debug, "debug"},
                                      {spdlog::level::info, "info"},
                                      {spdlog::level::warn, "warning"},
                                      {spdlog::level::err, "error"},
                                      {spdlog::level::critical, "critical"}})
        EXPECT_EQ(sentItem({morning, level, ""})["logLevel"], name);
}

TEST(LogBatch, takesAnyBytesForAMessage)
{
    const std::string bytes("quote \" line\n nul \0 \xFF \xC3\xA9", 24);
    EXPECT_EQ(sentItem({morning, spdlog::level::info, bytes})["message"].asString(),
              std::string("quote \" line\n nul \0 \xEF\xBF\xBD \xC3\xA9", 26));
}

/// The same items as a tree, and written by the library.
std::string bodyOfTheLibrary(const std::vector<LogRecord>& records)
{
    Json::Value document;
    for (const LogRecord& record : records)
    {
        Json::Value item = sentItem(record);
        item["message"] = Json::Value(record.message.data(), record.message.data() + record.message.size());
        document["items"].append(item);
    }
    return Json::writeString(Json::StreamWriterBuilder(), document);
}

TEST(LogBatch, hasTheBytesOfTheLibrarysWriterWhateverIsInAMessage)
{
    std::string everyByte;
    for (int byte = 0; byte < 256; ++byte)
        everyByte += static_cast<char>(byte);
    std::vector<LogRecord> records;
    for (std::size_t i = 0; i < everyByte.size(); ++i)
        records.push_back({morning + seconds(i), spdlog::level::info, std::string_view(everyByte).substr(i, 1)});
    records.push_back({morning, spdlog::level::err, everyByte});
    records.push_back({morning, spdlog::level::warn, ""});
    records.push_back({morning, spdlog::level::warn, "a/b \\ \" \t \n \xC3\xA9 \xF0\x9F\x98\x80 \xE2\x80\xA8 <tag>"});
    EXPECT_EQ(body(records), bodyOfTheLibrary(records));
}

TEST(LogBatch, writesTheNamesOfTheServiceAsTheLibraryDoes)
{
    ServerSendSink::Params special = params();
    special.platform = "quote \" and \xC3\xA9";
    LogLines lines;
    lines.add({morning, spdlog::level::info, "text"});
    const std::string text = logBatchBody(lines.take(), special);
    EXPECT_NE(text.find("\"platform\" : \"quote \\\" and \\u00e9\""), std::string::npos) << text;
}

} // namespace

} // namespace VX
