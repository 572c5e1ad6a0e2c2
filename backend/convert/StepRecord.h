#pragma once

#include "StepTokenizer.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

/// The number of an instance in the file, the 12 of "#12".
using StepId = std::uint64_t;

/// The arguments of one entity, as they are written. Points into the text of the file.
class StepRecord
{
public:
    StepRecord() = default;

    /// @param inside  what is between the parentheses that enclose all arguments
    explicit StepRecord(std::string_view inside);

    [[nodiscard]] std::size_t size() const { return arguments_.size(); }

    /// The argument `index`, from 0, without white space around it; empty where there are fewer.
    [[nodiscard]] std::string_view operator[](std::size_t index) const
    {
        return index < arguments_.size() ? arguments_[index] : std::string_view();
    }

    /// The argument `index` counted from the end, from 0.
    [[nodiscard]] std::string_view fromEnd(std::size_t index) const
    {
        return index < arguments_.size() ? arguments_[arguments_.size() - 1 - index] : std::string_view();
    }

private:
    std::vector<std::string_view> arguments_;
};

/// A number token as a value; nothing where it is none or not finite.
[[nodiscard]] std::optional<double> parseStepNumber(std::string_view digits);

/// The digits of a reference as a value; nothing beyond 64 bits.
[[nodiscard]] std::optional<StepId> parseStepId(std::string_view digits);

/// The length of the list, parenthesis included, that `text` begins with; 0 where it has no end.
/// @param text  begins with "("
[[nodiscard]] std::size_t stepListLength(std::string_view text);

/// "#12" gives 12; anything else, and a number beyond 64 bits, nothing.
[[nodiscard]] std::optional<StepId> stepReference(std::string_view argument);

/// The first number in the argument, so that "LENGTH_MEASURE(25.4)" gives 25.4. Finite.
[[nodiscard]] std::optional<double> stepNumber(std::string_view argument);

/// All numbers of a list, however nested. Stops at the first that is none or is not finite.
[[nodiscard]] std::vector<double> stepNumbers(std::string_view argument);

/// The text of a string argument in UTF-8 without blanks around it; empty for anything else.
[[nodiscard]] std::string stepString(std::string_view argument);

/// Calls `visit` with every reference in `argument`, a list or a single one, in order.
template <typename Visit>
void forEachStepReference(std::string_view argument, Visit visit)
{
    StepTokenizer tokens(argument);
    for (StepToken token = tokens.next(); token.kind != StepTokenKind::End; token = tokens.next())
        if (token.kind == StepTokenKind::Reference)
            if (const std::optional<StepId> id = parseStepId(token.text))
                visit(*id);
}

} // namespace VX
