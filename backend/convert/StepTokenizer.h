#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace VX
{

enum class StepTokenKind : std::uint8_t
{
    End,
    Invalid,
    Reference,   ///< #12, the text holds the digits
    Number,      ///< 1, -2.5E-3
    String,      ///< 'a''b', the text holds what is between the quotes, still encoded
    Enumeration, ///< .T., the text holds what is between the dots
    Binary,      ///< "0F", the text holds what is between the quotes
    Keyword,     ///< CARTESIAN_POINT
    Unset,       ///< $
    Derived,     ///< *
    Open,
    Close,
    Comma,
    Equals,
    Semicolon
};

struct StepToken
{
    StepTokenKind kind = StepTokenKind::End;
    std::string_view text; ///< points into the tokenizer's text
};

/// Splits text of an ISO 10303-21 file into tokens; white space and comments are passed over.
/// Never fails: a character that begins no token gives `Invalid`, as do a string or a comment without an end.
class StepTokenizer
{
public:
    explicit StepTokenizer(std::string_view text)
        : text_(text)
    {
    }

    /// The next token, `End` at the end of the text and from then on.
    StepToken next();

    /// The number of characters read so far.
    [[nodiscard]] std::size_t position() const { return position_; }

private:
    [[nodiscard]] bool skipBlanks_();
    [[nodiscard]] StepToken take_(StepTokenKind kind, std::size_t begin, std::size_t end) const;
    StepToken string_();
    StepToken between_(StepTokenKind kind, char end);
    template <typename Matches>
    StepToken run_(StepTokenKind kind, std::size_t begin, Matches matches);

    std::string_view text_;
    std::size_t position_ = 0;
};

/// Passes over the string literal that begins at `begin`.
/// @param begin  the position of the opening quote
/// @return the position behind the closing quote, or npos where there is none
[[nodiscard]] std::size_t skipStepString(std::string_view text, std::size_t begin);

/// Passes over the comment that begins at `begin`.
/// @return the position behind it, or npos where it has no end
[[nodiscard]] std::size_t skipStepComment(std::string_view text, std::size_t begin);

[[nodiscard]] constexpr bool isStepBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r') || c == '\0';
}

[[nodiscard]] constexpr bool isStepDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// What a keyword consists of, behind its first character, which is a letter or "!".
[[nodiscard]] constexpr bool isStepKeywordCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || isStepDigit(c) || c == '_' || c == '-';
}

} // namespace VX
