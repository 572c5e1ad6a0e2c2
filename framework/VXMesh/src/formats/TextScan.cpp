#include "formats/TextScan.h"

#include <fast_float/fast_float.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

namespace VX
{

void TextCursor::nextLine()
{
    const void* lineEnd =
        position_ == end_ ? nullptr : std::memchr(position_, '\n', static_cast<std::size_t>(end_ - position_));
    position_ = lineEnd ? static_cast<const char*>(lineEnd) + 1 : end_;
}

std::string_view TextCursor::word()
{
    if (atLineEnd())
        return {};
    const char* begin = position_;
    skipWord_();
    return {begin, static_cast<std::size_t>(position_ - begin)};
}

std::string_view TextCursor::restOfLine()
{
    while (position_ != end_ && isBlank(*position_))
        ++position_;
    const char* begin = position_;
    const char* end = std::find(position_, end_, '\n');
    position_ = end;
    while (end != begin && isBlank(end[-1]))
        --end;
    return {begin, static_cast<std::size_t>(end - begin)};
}

bool TextCursor::number(double& value)
{
    if (atLineEnd())
        return false;
    const char* begin = position_;
    if (*begin == '+')
        ++begin;
    const auto [stop, error] = fast_float::from_chars(begin, end_, value);
    position_ = stop;
    if (error == std::errc() && (stop == end_ || *stop == '\n' || isBlank(*stop)))
        return true;
    skipWord_();
    value = std::numeric_limits<double>::quiet_NaN();
    return true;
}

bool TextCursor::integer(std::int64_t& value)
{
    if (atLineEnd())
        return false;
    const bool good = digits(value) && (position_ == end_ || *position_ == '\n' || isBlank(*position_));
    skipWord_();
    return good;
}

bool TextCursor::digits(std::int64_t& value)
{
    if (position_ != end_ && *position_ == '+')
        ++position_;
    const auto [stop, error] = std::from_chars(position_, end_, value);
    position_ = stop;
    return error == std::errc();
}

bool TextCursor::finishWord()
{
    const char* before = position_;
    skipWord_();
    return position_ == before;
}

void TextCursor::skipWord_()
{
    while (position_ != end_ && *position_ != '\n' && !isBlank(*position_))
        ++position_;
}

std::vector<std::string_view> splitAtLines(std::string_view text, std::size_t pieceSize,
                                           const std::function<bool(std::string_view, std::size_t)>& mayStart)
{
    std::vector<std::string_view> pieces;
    std::size_t begin = 0;
    while (begin < text.size())
    {
        std::size_t end = std::min(begin + pieceSize, text.size());
        while (end < text.size())
        {
            // The line that `end` is in belongs to this piece.
            const std::size_t lineEnd = text.find('\n', end - 1);
            end = lineEnd == std::string_view::npos ? text.size() : lineEnd + 1;
            if (end == text.size() || !mayStart || mayStart(text, end))
                break;
            ++end;
        }
        pieces.push_back(text.substr(begin, end - begin));
        begin = end;
    }
    return pieces;
}

bool looksLikeText(std::string_view bytes)
{
    return std::ranges::none_of(bytes,
                                [](char c)
                                {
                                    const auto code = static_cast<unsigned char>(c);
                                    return code == 127 || (code < 32 && (code < '\t' || code > '\r'));
                                });
}

bool equalsIgnoringCase(std::string_view word, std::string_view lower)
{
    const auto toLowerLetter = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(word, lower, {}, toLowerLetter);
}

} // namespace VX
