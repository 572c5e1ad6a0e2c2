#include "AgentNumbers.h"

#include <fmt/format.h>

#include <charconv>
#include <string>
#include <utility>

namespace VX
{

namespace
{

double roundedNumber(double number)
{
    const std::string digits = fmt::format("{:.9g}", number);
    // What is no number stays so.
    double result = number;
    std::from_chars(digits.data(), digits.data() + digits.size(), result);
    return result;
}

} // namespace

Json::Value rounded(Json::Value value)
{
    if (value.type() == Json::realValue)
        return roundedNumber(value.asDouble());
    if (value.isArray() || value.isObject())
    {
        for (Json::Value& each : value)
            each = rounded(std::move(each));
    }
    return value;
}

} // namespace VX
