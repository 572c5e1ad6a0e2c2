#include "LogItemsReader.h"

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* noObject = "The request must be a JSON object.";
constexpr const char* noList = "\"items\" must be a list.";
constexpr std::string_view blanks = " \t\r\n";

} // namespace

LogItemsReader::LogItemsReader(std::string_view text)
    : text_(text)
{
}

std::optional<std::string_view> LogItemsReader::next()
{
    if (isOver_ || !error_.empty())
        return std::nullopt;
    const bool isFirst = !std::exchange(isBegun_, true);
    if (isFirst && !findItems_())
        return std::nullopt;
    if (take_(']'))
    {
        isOver_ = true;
        if (!finish_())
            fail_(noObject);
        return std::nullopt;
    }
    const bool isSeparated = isFirst || take_(',');
    const std::string_view item = isSeparated ? value_() : std::string_view();
    if (!item.empty())
        return item;
    fail_(noObject);
    return std::nullopt;
}

/// Goes on behind the bracket that begins the list.
bool LogItemsReader::findItems_()
{
    if (!take_('{'))
        return fail_(noObject);
    if (take_('}'))
        return fail_(noList);
    for (;;)
    {
        const std::string_view name = string_();
        if (name.empty() || !take_(':'))
            return fail_(noObject);
        if (name == "\"items\"")
            return take_('[') || fail_(noList);
        if (value_().empty())
            return fail_(noObject);
        if (take_('}'))
            return fail_(noList);
        if (!take_(','))
            return fail_(noObject);
    }
}

/// Reads what is behind the list, to the end of the text.
bool LogItemsReader::finish_()
{
    while (take_(','))
        if (string_().empty() || !take_(':') || value_().empty())
            return false;
    const bool isClosed = take_('}');
    return isClosed && text_.find_first_not_of(blanks, position_) == std::string_view::npos;
}

std::string_view LogItemsReader::value_()
{
    position_ = std::min(text_.find_first_not_of(blanks, position_), text_.size());
    const std::size_t begin = position_;
    if (begin == text_.size())
        return {};
    if (text_[begin] == '"')
        return string_();
    if (text_[begin] != '{' && text_[begin] != '[')
    {
        position_ = std::min(text_.find_first_of(",]} \t\r\n", begin), text_.size());
        return text_.substr(begin, position_ - begin);
    }
    std::size_t depth = 0;
    do
    {
        position_ = text_.find_first_of("\"{}[]", position_);
        if (position_ == std::string_view::npos)
            break;
        const char c = text_[position_];
        if (c == '"')
        {
            if (string_().empty())
                break;
            continue;
        }
        if (c == '{' || c == '[')
            ++depth;
        else
            --depth;
        ++position_;
    } while (depth > 0);
    position_ = std::min(position_, text_.size());
    return depth == 0 ? text_.substr(begin, position_ - begin) : std::string_view();
}

std::string_view LogItemsReader::string_()
{
    if (!take_('"'))
        return {};
    const std::size_t begin = position_ - 1;
    for (;;)
    {
        position_ = std::min(text_.find_first_of("\"\\", position_), text_.size());
        if (text_.size() - position_ < 2 && (position_ == text_.size() || text_[position_] == '\\'))
            return {};
        if (text_[position_] == '"')
            return text_.substr(begin, ++position_ - begin);
        position_ += 2; // with what the backslash stands before
    }
}

bool LogItemsReader::take_(char c)
{
    position_ = std::min(text_.find_first_not_of(blanks, position_), text_.size());
    if (position_ == text_.size() || text_[position_] != c)
        return false;
    ++position_;
    return true;
}

/// @return false
bool LogItemsReader::fail_(const char* sentence)
{
    error_ = sentence;
    return false;
}

} // namespace VX
