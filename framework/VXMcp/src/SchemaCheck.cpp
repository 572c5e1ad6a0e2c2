#include "SchemaCheck.h"

#include "JsonText.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace VX::Mcp
{

namespace
{

using Result = tl::expected<void, std::string>;

bool hasType(const Json::Value& value, const std::string& type)
{
    if (type == "object")
        return value.isObject();
    if (type == "array")
        return value.isArray();
    if (type == "string")
        return value.isString();
    if (type == "boolean")
        return value.isBool();
    if (type == "number")
        return value.isNumeric() && !value.isBool();
    if (type == "integer")
        return value.isIntegral() && !value.isBool();
    return type != "null" || value.isNull();
}

/// "a number", "an object"
std::string withArticle(const std::string& type)
{
    return (std::string("aeiou").find(type.front()) == std::string::npos ? "a " : "an ") + type;
}

std::string joined(const Json::Value& values)
{
    std::string out;
    for (const auto& value : values)
        out += (out.empty() ? "" : ", ") + toJsonText(value);
    return out;
}

/// Characters of UTF-8.
std::uint64_t lengthOf(const std::string& text)
{
    return static_cast<std::uint64_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// One value and those within it, under the name by which the client knows it.
class Check
{
public:
    Check(const Json::Value& value, const Json::Value& schema, std::string name)
        : value_(value)
        , schema_(schema)
        , name_(std::move(name))
    {
    }

    [[nodiscard]] Result run() const
    {
        if (!schema_.isObject())
            return {};
        for (const auto part : {&Check::type_, &Check::choice_, &Check::range_, &Check::text_, &Check::items_,
                                &Check::required_, &Check::properties_})
            if (auto result = (this->*part)(); !result)
                return result;
        return {};
    }

private:
    [[nodiscard]] Result fail_(const std::string& what) const
    {
        return tl::unexpected((name_.empty() ? "The arguments" : "The argument \"" + name_ + "\"") + ' ' + what);
    }

    [[nodiscard]] std::string nameOf_(const std::string& member) const
    {
        return name_.empty() ? member : name_ + '.' + member;
    }

    [[nodiscard]] Result type_() const
    {
        const Json::Value& type = schema_["type"];
        if (type.isString() && !hasType(value_, type.asString()))
            return fail_("must be " + withArticle(type.asString()) + '.');
        if (!type.isArray())
            return {};
        std::string names;
        for (const auto& one : type)
        {
            if (hasType(value_, one.asString()))
                return {};
            names += (names.empty() ? "" : " or ") + withArticle(one.asString());
        }
        return fail_("must be " + names + '.');
    }

    [[nodiscard]] Result choice_() const
    {
        const Json::Value& choices = schema_["enum"];
        if (choices.isArray() && std::find(choices.begin(), choices.end(), value_) == choices.end())
            return fail_("must be one of " + joined(choices) + '.');
        if (schema_.isMember("const") && schema_["const"] != value_)
            return fail_("must be " + toJsonText(schema_["const"]) + '.');
        return {};
    }

    [[nodiscard]] Result range_() const
    {
        if (!hasType(value_, "number"))
            return {};
        const double value = value_.asDouble();
        const auto limit = [&](const char* key) -> const Json::Value*
        { return schema_[key].isNumeric() ? &schema_[key] : nullptr; };
        if (const auto* bound = limit("minimum"); bound && value < bound->asDouble())
            return fail_("must be at least " + toJsonText(*bound) + '.');
        if (const auto* bound = limit("maximum"); bound && value > bound->asDouble())
            return fail_("must be at most " + toJsonText(*bound) + '.');
        if (const auto* bound = limit("exclusiveMinimum"); bound && value <= bound->asDouble())
            return fail_("must be more than " + toJsonText(*bound) + '.');
        if (const auto* bound = limit("exclusiveMaximum"); bound && value >= bound->asDouble())
            return fail_("must be less than " + toJsonText(*bound) + '.');
        return {};
    }

    /// @param unit  of one
    [[nodiscard]] Result size_(std::uint64_t size, const char* least, const char* most, const std::string& unit) const
    {
        const auto counted = [&](const Json::Value& number)
        { return number.asString() + ' ' + unit + (number.asUInt64() == 1 ? "." : "s."); };
        if (schema_[least].isUInt64() && size < schema_[least].asUInt64())
            return fail_("must have at least " + counted(schema_[least]));
        if (schema_[most].isUInt64() && size > schema_[most].asUInt64())
            return fail_("must have at most " + counted(schema_[most]));
        return {};
    }

    [[nodiscard]] Result text_() const
    {
        return value_.isString() ? size_(lengthOf(value_.asString()), "minLength", "maxLength", "character") : Result();
    }

    [[nodiscard]] Result items_() const
    {
        if (!value_.isArray())
            return {};
        if (auto result = size_(value_.size(), "minItems", "maxItems", "item"); !result)
            return result;
        for (Json::ArrayIndex i = 0; i < value_.size(); ++i)
            if (auto result = Check(value_[i], schema_["items"], name_ + '[' + std::to_string(i) + ']').run(); !result)
                return result;
        return {};
    }

    [[nodiscard]] Result required_() const
    {
        if (!value_.isObject())
            return {};
        for (const auto& member : schema_["required"])
            if (!value_.isMember(member.asString()))
                return tl::unexpected("The argument \"" + nameOf_(member.asString()) + "\" is missing.");
        return {};
    }

    [[nodiscard]] Result properties_() const
    {
        if (!value_.isObject())
            return {};
        const Json::Value& properties = schema_["properties"];
        const Json::Value& others = schema_["additionalProperties"];
        for (const auto& member : value_.getMemberNames())
        {
            const bool isKnown = properties.isObject() && properties.isMember(member);
            if (!isKnown && others.isBool() && !others.asBool())
                return tl::unexpected("The argument \"" + nameOf_(member) + "\" is not known. " + known_(properties));
            const Json::Value& schema = isKnown ? properties[member] : others;
            if (auto result = Check(value_[member], schema, nameOf_(member)).run(); !result)
                return result;
        }
        return {};
    }

    [[nodiscard]] static std::string known_(const Json::Value& properties)
    {
        if (!properties.isObject() || properties.empty())
            return "There are none here.";
        std::string out;
        for (const auto& name : properties.getMemberNames())
            out += (out.empty() ? "Known are \"" : ", \"") + name + '"';
        return out + '.';
    }

    const Json::Value& value_;
    const Json::Value& schema_;
    const std::string name_;
};

} // namespace

tl::expected<void, std::string> checkSchema(const Json::Value& value, const Json::Value& schema)
{
    return Check(value, schema, {}).run();
}

} // namespace VX::Mcp
