#include <quorvix/auth/Secret.h>

#include <gtest/gtest.h>

namespace VX
{

namespace
{

TEST(Secret, OverwritesWhatATextHeldAndEmptiesIt)
{
    std::string text = "a password that is longer than short strings are";
    const std::size_t length = text.size();
    text = "short";
    wipe(text);
    EXPECT_EQ(text, "");
    EXPECT_EQ(std::string(text.data(), length), std::string(length, '\0'));
}

TEST(Secret, OverwritesEveryTextOfAJsonValue)
{
    Json::Value value(Json::objectValue);
    value["Username"] = "ann";
    value["AuthParameters"]["PASSWORD"] = "s3cret";
    value["codes"].append("12");
    value["number"] = 7;
    wipe(value);
    EXPECT_EQ(value["Username"].asString(), std::string(3, '\0'));
    EXPECT_EQ(value["AuthParameters"]["PASSWORD"].asString(), std::string(6, '\0'));
    EXPECT_EQ(value["codes"][0].asString(), std::string(2, '\0'));
    EXPECT_EQ(value["number"], 7);
}

TEST(Secret, TakesAJsonValueWithoutTexts)
{
    for (Json::Value value : {Json::Value(), Json::Value(""), Json::Value(1.5), Json::Value(Json::arrayValue)})
    {
        const Json::Value before = value;
        wipe(value);
        EXPECT_EQ(value, before);
    }
}

} // namespace

} // namespace VX
