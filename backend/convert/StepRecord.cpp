#include "StepRecord.h"

#include "StepText.h"

#include <fast_float/fast_float.h>

#include <charconv>
#include <cmath>

namespace VX
{

namespace
{

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isStepBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isStepBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Calls `visit` with the position of every parenthesis and comma outside strings and comments until it returns false.
/// @return whether all strings and comments have an end
template <typename Visit>
bool scanPunctuation(std::string_view text, Visit visit)
{
    std::size_t at = 0;
    while (at < text.size())
    {
        const char c = text[at];
        if (c == '\'')
            at = skipStepString(text, at);
        else if (c == '/' && text.substr(at, 2) == "/*")
            at = skipStepComment(text, at);
        else
        {
            if ((c == '(' || c == ')' || c == ',') && !visit(at, c))
                return true;
            ++at;
        }
        if (at == std::string_view::npos)
            return false;
    }
    return true;
}

} // namespace

StepRecord::StepRecord(std::string_view inside)
{
    std::size_t begin = 0;
    std::size_t depth = 0;
    scanPunctuation(inside,
                    [&](std::size_t at, char c)
                    {
                        if (c == '(')
                            ++depth;
                        else if (c == ')')
                            depth -= depth > 0 ? 1 : 0;
                        else if (depth == 0)
                        {
                            arguments_.push_back(trimmed(inside.substr(begin, at - begin)));
                            begin = at + 1;
                        }
                        return true;
                    });
    const std::string_view last = trimmed(inside.substr(begin));
    if (!last.empty() || !arguments_.empty())
        arguments_.push_back(last);
}

std::size_t stepListLength(std::string_view text)
{
    std::size_t depth = 0;
    std::size_t length = 0;
    scanPunctuation(text,
                    [&](std::size_t at, char c)
                    {
                        depth += c == '(' ? 1 : 0;
                        depth -= c == ')' ? 1 : 0;
                        if (depth == 0)
                            length = at + 1;
                        return depth != 0;
                    });
    return length;
}

std::optional<StepId> parseStepId(std::string_view digits)
{
    StepId id = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), id);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return id;
}

std::optional<double> parseStepNumber(std::string_view digits)
{
    if (digits.starts_with('+'))
        digits.remove_prefix(1);
    double value = 0;
    const auto [end, error] = fast_float::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<StepId> stepReference(std::string_view argument)
{
    const StepToken token = StepTokenizer(argument).next();
    return token.kind == StepTokenKind::Reference ? parseStepId(token.text) : std::nullopt;
}

std::optional<double> stepNumber(std::string_view argument)
{
    StepTokenizer tokens(argument);
    for (StepToken token = tokens.next(); token.kind != StepTokenKind::End; token = tokens.next())
        if (token.kind == StepTokenKind::Number)
            return parseStepNumber(token.text);
    return std::nullopt;
}

std::vector<double> stepNumbers(std::string_view argument)
{
    std::vector<double> numbers;
    StepTokenizer tokens(argument);
    for (StepToken token = tokens.next(); token.kind != StepTokenKind::End; token = tokens.next())
    {
        if (token.kind != StepTokenKind::Number)
            continue;
        const std::optional<double> number = parseStepNumber(token.text);
        if (!number)
            break;
        numbers.push_back(*number);
    }
    return numbers;
}

std::string stepString(std::string_view argument)
{
    const StepToken token = StepTokenizer(argument).next();
    if (token.kind != StepTokenKind::String)
        return {};
    const std::string decoded = decodeStepString(token.text);
    return std::string(trimmed(decoded));
}

} // namespace VX
