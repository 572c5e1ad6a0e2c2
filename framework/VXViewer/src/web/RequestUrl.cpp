#include "RequestUrl.h"

#include <algorithm>
#include <map>

namespace VX
{

namespace
{

bool isUnreserved(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
           c == '_' || c == '~';
}

} // namespace

std::string percentEncode(std::string_view text)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string out;
    out.reserve(text.size());
    for (const char c : text)
    {
        if (isUnreserved(c))
        {
            out += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        out += '%';
        out += digits[byte >> 4U];
        out += digits[byte & 15U];
    }
    return out;
}

std::string urlWithParameters(std::string_view url, const std::unordered_map<std::string, std::string>& parameters)
{
    const auto fragment = url.substr(std::min(url.find('#'), url.size()));
    std::string out(url.substr(0, url.size() - fragment.size()));
    const std::map<std::string_view, std::string_view> sorted(parameters.begin(), parameters.end());
    for (const auto& [name, value] : sorted)
    {
        const auto question = out.find('?');
        if (question == std::string::npos)
            out += '?';
        else if (question + 1 != out.size() && !out.ends_with('&'))
            out += '&';
        out += percentEncode(name) + '=' + percentEncode(value);
    }
    return out.append(fragment);
}

} // namespace VX
