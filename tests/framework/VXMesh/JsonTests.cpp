#include "tests/support/TempDir.h"

#include <VXMesh/Json.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

namespace VX
{

namespace
{

using Test::TempDir;

std::string errorOf(const tl::expected<Json::Value, std::string>& result)
{
    return result ? "no error" : result.error();
}

} // namespace

TEST(DeserializeJsonValue, ParsesText)
{
    const auto value = deserializeJsonValue(std::string(R"({"list": [1, 2.5, "three", true, null]})"));
    ASSERT_TRUE(value) << value.error();
    EXPECT_EQ((*value)["list"].size(), 5U);
    EXPECT_EQ((*value)["list"][2], Json::Value("three"));
}

TEST(DeserializeJsonValue, ParsesAFileWithAByteOrderMarkAndComments)
{
    const TempDir temp;
    const auto value = deserializeJsonValue(temp.write("some.json", "\xef\xbb\xbf{ // why\n \"key\": true }\n"));
    ASSERT_TRUE(value) << value.error();
    EXPECT_EQ((*value)["key"], Json::Value(true));
}

TEST(DeserializeJsonValue, TellsAFileFromATextByItsType)
{
    EXPECT_TRUE(deserializeJsonValue(std::string("1")));
    EXPECT_TRUE(deserializeJsonValue("1"));
    EXPECT_FALSE(deserializeJsonValue(std::filesystem::path("1")));
}

TEST(DeserializeJsonValue, DoesNotQuoteTheText)
{
    EXPECT_EQ(errorOf(deserializeJsonValue(R"({"password": 12e})")),
              "Invalid JSON: line 1, column 14: a number is not complete.");
}

TEST(DeserializeJsonValue, SaysWhereATextIsWrong)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "Invalid JSON: line 1, column 1: syntax error: value, object or array expected."},
        {"{\n \"a\" 1}", "Invalid JSON: line 2, column 6: missing ':' after object member name."},
        {"[1, 2", "Invalid JSON: line 1, column 6: missing ',' or ']' in array declaration."},
        {"{} x", "Invalid JSON: line 1, column 4: extra non-whitespace after JSON value."},
        {"[1,]", "Invalid JSON: line 1, column 4: syntax error: value, object or array expected."},
    };
    for (const auto& [text, error] : cases)
        EXPECT_EQ(errorOf(deserializeJsonValue(text)), error);
}

TEST(DeserializeJsonValue, RefusesValuesNestedTooDeeply)
{
    for (const char* open : {"[", "{\"a\":"})
    {
        std::string text;
        for (int i = 0; i < 100'000; ++i)
            text += open;
        EXPECT_EQ(errorOf(deserializeJsonValue(text)), "Invalid JSON: it is nested too deeply.");
    }
}

TEST(DeserializeJsonValue, NamesTheFileThatIsWrong)
{
    const TempDir temp;
    EXPECT_EQ(errorOf(deserializeJsonValue(temp.write("some.json", "["))),
              "Cannot read \"some.json\": line 1, column 2: syntax error: value, object or array expected.");
    EXPECT_EQ(errorOf(deserializeJsonValue(temp.path() / "missing.json")),
              "Cannot open \"missing.json\": no such file or directory.");
    EXPECT_EQ(errorOf(deserializeJsonValue(temp.path())),
              "Cannot open \"" + temp.path().filename().string() + "\": is a directory.");
}

} // namespace VX
