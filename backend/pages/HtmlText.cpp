#include "HtmlText.h"

#include <fmt/format.h>

#include <net/HttpTarget.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace VX
{

namespace
{

bool isUnreserved(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
           c == '_' || c == '~';
}

std::optional<std::string> formDecoded(std::string_view text)
{
    std::string spaced(text);
    std::ranges::replace(spaced, '+', ' ');
    return percentDecode(spaced);
}

} // namespace

std::string htmlEscaped(std::string_view text)
{
    std::string escaped;
    for (const char c : text)
    {
        switch (c)
        {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\'':
            escaped += "&#39;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

std::string urlEscaped(std::string_view text)
{
    std::string escaped;
    for (const char c : text)
        if (isUnreserved(c))
            escaped += c;
        else
            escaped += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    return escaped;
}

std::map<std::string, std::string> parseForm(std::string_view body)
{
    std::map<std::string, std::string> fields;
    while (!body.empty())
    {
        const std::string_view field = body.substr(0, body.find('&'));
        body.remove_prefix(std::min(body.size(), field.size() + 1));
        const auto equals = field.find('=');
        if (equals == std::string_view::npos)
            continue;
        const auto name = formDecoded(field.substr(0, equals));
        auto value = formDecoded(field.substr(equals + 1));
        if (name && value)
            fields[*name] = std::move(*value);
    }
    return fields;
}

} // namespace VX
