#include "StepTokenizer.h"

#include <algorithm>

namespace VX
{

std::size_t skipStepString(std::string_view text, std::size_t begin)
{
    std::size_t at = text.find('\'', begin + 1);
    while (at != std::string_view::npos && at + 1 < text.size() && text[at + 1] == '\'')
        at = text.find('\'', at + 2);
    return at == std::string_view::npos ? at : at + 1;
}

std::size_t skipStepComment(std::string_view text, std::size_t begin)
{
    const std::size_t end = text.find("*/", begin + 2);
    return end == std::string_view::npos ? end : end + 2;
}

bool StepTokenizer::skipBlanks_()
{
    while (position_ < text_.size())
    {
        if (isStepBlank(text_[position_]))
            ++position_;
        else if (text_.substr(position_, 2) == "/*")
        {
            const std::size_t end = skipStepComment(text_, position_);
            position_ = std::min(end, text_.size());
            if (end == std::string_view::npos)
                return false;
        }
        else
            break;
    }
    return true;
}

StepToken StepTokenizer::take_(StepTokenKind kind, std::size_t begin, std::size_t end) const
{
    return {kind, text_.substr(begin, end - begin)};
}

StepToken StepTokenizer::string_()
{
    const std::size_t begin = position_;
    const std::size_t end = skipStepString(text_, begin);
    position_ = std::min(end, text_.size());
    if (end == std::string_view::npos)
        return take_(StepTokenKind::Invalid, begin, position_);
    return take_(StepTokenKind::String, begin + 1, position_ - 1);
}

StepToken StepTokenizer::between_(StepTokenKind kind, char end)
{
    const std::size_t begin = position_ + 1;
    const std::size_t found = text_.find(end, begin);
    if (found == std::string_view::npos)
    {
        position_ = text_.size();
        return take_(StepTokenKind::Invalid, begin - 1, position_);
    }
    position_ = found + 1;
    for (const char c : text_.substr(begin, found - begin))
        if (!isStepKeywordCharacter(c))
            return take_(StepTokenKind::Invalid, begin - 1, position_);
    return take_(kind, begin, found);
}

template <typename Matches>
StepToken StepTokenizer::run_(StepTokenKind kind, std::size_t begin, Matches matches)
{
    while (position_ < text_.size() && matches(text_[position_]))
        ++position_;
    return take_(position_ == begin ? StepTokenKind::Invalid : kind, begin, position_);
}

StepToken StepTokenizer::next()
{
    if (!skipBlanks_())
        return {StepTokenKind::Invalid, {}};
    if (position_ >= text_.size())
        return {};

    const std::size_t begin = position_;
    const auto single = [this](StepTokenKind kind)
    {
        ++position_;
        return take_(kind, position_ - 1, position_);
    };
    const char c = text_[begin];
    switch (c)
    {
    case '(':
        return single(StepTokenKind::Open);
    case ')':
        return single(StepTokenKind::Close);
    case ',':
        return single(StepTokenKind::Comma);
    case '$':
        return single(StepTokenKind::Unset);
    case '*':
        return single(StepTokenKind::Derived);
    case '=':
        return single(StepTokenKind::Equals);
    case ';':
        return single(StepTokenKind::Semicolon);
    case '\'':
        return string_();
    case '.':
        return between_(StepTokenKind::Enumeration, '.');
    case '"':
        return between_(StepTokenKind::Binary, '"');
    case '#':
        ++position_;
        return run_(StepTokenKind::Reference, begin + 1, isStepDigit);
    default:
        break;
    }
    if (isStepDigit(c) || c == '+' || c == '-')
        return run_(StepTokenKind::Number, begin,
                    [](char d) { return isStepDigit(d) || d == '.' || d == 'E' || d == 'e' || d == '+' || d == '-'; });
    ++position_;
    if (c != '!' && (!isStepKeywordCharacter(c) || c == '-'))
        return take_(StepTokenKind::Invalid, begin, position_);
    return run_(StepTokenKind::Keyword, begin, isStepKeywordCharacter);
}

} // namespace VX
