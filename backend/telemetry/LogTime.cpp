#include "LogTime.h"

#include <algorithm>
#include <charconv>
#include <chrono>

namespace VX
{

namespace
{

/// Zeros stand for digits.
constexpr std::string_view form = "0000-00-00T00:00:00";
constexpr std::string_view::size_type dateSize = 10;
constexpr std::string_view::size_type minuteSize = 16;
constexpr std::string_view::size_type decimals = 7;
constexpr std::string_view::size_type mostDecimals = 9;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Whether `text` is a beginning of the form that ends with the date, the minute or the second.
bool hasForm(std::string_view text)
{
    return (text.size() == dateSize || text.size() == minuteSize || text.size() == form.size()) &&
           std::equal(text.begin(), text.end(), form.begin(),
                      [](char c, char expected) { return expected == '0' ? isDigit(c) : c == expected; });
}

int numberAt(std::string_view text, std::size_t position, std::size_t size)
{
    int number = 0;
    std::from_chars(text.data() + position, text.data() + position + size, number);
    return number;
}

bool exists(std::string_view time)
{
    const std::chrono::year_month_day date(std::chrono::year(numberAt(time, 0, 4)),
                                           std::chrono::month(static_cast<unsigned>(numberAt(time, 5, 2))),
                                           std::chrono::day(static_cast<unsigned>(numberAt(time, 8, 2))));
    return date.ok() && numberAt(time, 11, 2) < 24 && numberAt(time, 14, 2) < 60 && numberAt(time, 17, 2) < 60;
}

} // namespace

std::optional<std::string> fullLogTime(std::string_view text)
{
    if (text.size() > minuteSize && text.ends_with('Z'))
        text.remove_suffix(1);
    std::string_view fraction;
    if (text.size() > form.size())
    {
        fraction = text.substr(form.size() + 1);
        if (text[form.size()] != '.' || fraction.empty() || fraction.size() > mostDecimals ||
            !std::ranges::all_of(fraction, isDigit))
            return {};
        text = text.substr(0, form.size());
    }
    if (!hasForm(text))
        return {};
    std::string time(text);
    time += form.substr(time.size());
    if (!exists(time))
        return {};
    std::string digits(fraction.substr(0, decimals));
    digits.resize(decimals, '0');
    return time + '.' + digits + 'Z';
}

} // namespace VX
