#include "SchemaCheck.h"

#include <VXMesh/Json.h>

#include <gtest/gtest.h>

#include <string>

namespace VX::Mcp
{

namespace
{

/// What is wrong with `value`; empty for nothing.
std::string checked(const char* value, const char* schema)
{
    const auto result = checkSchema(*deserializeJsonValue(value), *deserializeJsonValue(schema));
    return result ? std::string() : result.error();
}

struct Misfit
{
    const char* name;
    const char* value;
    const char* schema;
    const char* text;
};

class MisfitTests : public testing::TestWithParam<Misfit>
{
};

} // namespace

TEST(SchemaCheck, TakesWhatFits)
{
    const char* const schema = R"({"type": "object", "required": ["n"], "additionalProperties": false, "properties": {
        "n": {"type": "integer", "minimum": 1, "maximum": 3}, "s": {"type": "string", "minLength": 2, "maxLength": 2},
        "l": {"type": "array", "items": {"type": "number"}, "minItems": 1, "maxItems": 2},
        "e": {"enum": ["a", 1, null]}, "b": {"type": ["boolean", "null"]}}})";
    EXPECT_EQ(checked(R"({"n": 2, "s": "äö", "l": [1, 2.5], "e": null, "b": true})", schema), "");
}

TEST(SchemaCheck, TakesAnythingWithoutSchema)
{
    EXPECT_EQ(checked(R"({"n": 2})", "null"), "");
    EXPECT_EQ(checked(R"({"n": 2})", R"({"type": "object"})"), "");
}

TEST(SchemaCheck, AWholeNumberIsAnIntegerHoweverItIsWritten)
{
    EXPECT_EQ(checked("2.0", R"({"type": "integer"})"), "");
}

TEST_P(MisfitTests, IsNamedWithWhatFits)
{
    EXPECT_EQ(checked(GetParam().value, GetParam().schema), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    SchemaCheck, MisfitTests,
    testing::Values(Misfit{"Type", R"({"n": "2"})", R"({"properties": {"n": {"type": "integer"}}})",
                           "The argument \"n\" must be an integer."},
                    Misfit{"Fraction", R"({"n": 2.5})", R"({"properties": {"n": {"type": "integer"}}})",
                           "The argument \"n\" must be an integer."},
                    Misfit{"BooleanIsNoNumber", R"({"n": true})", R"({"properties": {"n": {"type": "number"}}})",
                           "The argument \"n\" must be a number."},
                    Misfit{"Types", R"({"n": {}})", R"({"properties": {"n": {"type": ["string", "null"]}}})",
                           "The argument \"n\" must be a string or a null."},
                    Misfit{"Missing", "{}", R"({"required": ["n"]})", "The argument \"n\" is missing."},
                    Misfit{"MissingWithin", R"({"a": {}})", R"({"properties": {"a": {"required": ["n"]}}})",
                           "The argument \"a.n\" is missing."},
                    Misfit{"Unknown", R"({"m": 1})",
                           R"({"properties": {"n": {}, "o": {}}, "additionalProperties": false})",
                           "The argument \"m\" is not known. Known are \"n\", \"o\"."},
                    Misfit{"NoneKnown", R"({"m": 1})", R"({"additionalProperties": false})",
                           "The argument \"m\" is not known. There are none here."},
                    Misfit{"Choice", R"({"n": "c"})", R"({"properties": {"n": {"enum": ["a", "b"]}}})",
                           "The argument \"n\" must be one of \"a\", \"b\"."},
                    Misfit{"Minimum", R"({"n": 0})", R"({"properties": {"n": {"minimum": 1}}})",
                           "The argument \"n\" must be at least 1."},
                    Misfit{"Maximum", R"({"n": 4})", R"({"properties": {"n": {"maximum": 3}}})",
                           "The argument \"n\" must be at most 3."},
                    Misfit{"ExclusiveMinimum", R"({"n": 0})", R"({"properties": {"n": {"exclusiveMinimum": 0}}})",
                           "The argument \"n\" must be more than 0."},
                    Misfit{"Item", R"({"n": [1, "x"]})", R"({"properties": {"n": {"items": {"type": "number"}}}})",
                           "The argument \"n[1]\" must be a number."},
                    Misfit{"TooFewItems", R"({"n": []})", R"({"properties": {"n": {"minItems": 1}}})",
                           "The argument \"n\" must have at least 1 item."},
                    Misfit{"TooLong", R"({"n": "abc"})", R"({"properties": {"n": {"maxLength": 2}}})",
                           "The argument \"n\" must have at most 2 characters."},
                    Misfit{"AdditionalSchema", R"({"n": "x"})", R"({"additionalProperties": {"type": "number"}})",
                           "The argument \"n\" must be a number."}),
    [](const auto& test) { return test.param.name; });

} // namespace VX::Mcp
