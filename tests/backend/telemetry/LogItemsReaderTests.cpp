#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <backend/telemetry/LogItemsReader.h>

#include <vector>

namespace VX::Test
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Outcome
{
    std::vector<std::string> items;
    std::string error;
};

Outcome read(std::string_view text)
{
    Outcome outcome;
    LogItemsReader reader(text);
    while (const auto item = reader.next())
        outcome.items.emplace_back(*item);
    outcome.error = reader.error();
    EXPECT_EQ(reader.next(), std::nullopt);
    return outcome;
}

TEST(LogItemsReader, findsEachItem)
{
    const Outcome outcome = read(R"( { "items" : [ {"a":[1,{}]}, "two" ,3,[], null ] } )");
    EXPECT_THAT(outcome.items, ElementsAre(R"({"a":[1,{}]})", R"("two")", "3", "[]", "null"));
    EXPECT_THAT(outcome.error, IsEmpty());
}

TEST(LogItemsReader, isNotLedAstrayByWhatIsWithinTexts)
{
    const Outcome outcome = read(R"({"items":[{"a":"]}\"{[\\"},{"b\"":"\\\\"}]})");
    EXPECT_THAT(outcome.items, ElementsAre(R"({"a":"]}\"{[\\"})", R"({"b\"":"\\\\"})"));
    EXPECT_THAT(outcome.error, IsEmpty());
}

TEST(LogItemsReader, passesOverOtherMembers)
{
    const Outcome outcome = read(R"({"a":{"items":[1]},"b":"items","items":[2],"c":[3],"d":4})");
    EXPECT_THAT(outcome.items, ElementsAre("2"));
    EXPECT_THAT(outcome.error, IsEmpty());
}

TEST(LogItemsReader, findsNoItemsInAnEmptyList)
{
    const Outcome outcome = read(R"({"items":[]})");
    EXPECT_THAT(outcome.items, IsEmpty());
    EXPECT_THAT(outcome.error, IsEmpty());
}

TEST(LogItemsReader, missesTheList)
{
    for (const char* const text : {"{}", R"({"a":1})", R"({"items":{}})", R"({"items":1})", R"({"items":"["})"})
        EXPECT_EQ(read(text).error, "\"items\" must be a list.") << text;
}

TEST(LogItemsReader, saysThatTheTextIsNoObject)
{
    for (const char* const text : {"",
                                   " ",
                                   "[]",
                                   "1",
                                   "{",
                                   "{\"",
                                   "{\"a",
                                   "{\"a\"",
                                   "{\"a\":",
                                   "{\"a\":1",
                                   "{\"a\":1,",
                                   "{a:1}",
                                   R"({"items":[)",
                                   R"({"items":[1)",
                                   R"({"items":[1,)",
                                   R"({"items":[1,])",
                                   R"({"items":[1 2]})",
                                   R"({"items":[1])",
                                   R"({"items":[1]]})",
                                   R"({"items":[1]} x)",
                                   R"({"items":[1],})",
                                   R"({"items":[{])",
                                   R"({"items":["a)",
                                   R"({"items":["a\)",
                                   R"({"items":["a\")",
                                   R"({"items":[{"a":"b}]})"})
        EXPECT_EQ(read(text).error, "The request must be a JSON object.") << text;
}

} // namespace

} // namespace VX::Test
