#include "UriTemplate.h"

#include <net/HttpTarget.h>

namespace VX::Mcp
{

std::optional<std::map<std::string, std::string>> matchUriTemplate(std::string_view uriTemplate, std::string_view uri)
{
    std::map<std::string, std::string> out;
    while (!uriTemplate.empty())
    {
        const auto open = uriTemplate.find('{');
        const auto close = uriTemplate.find('}', open == std::string_view::npos ? open : open + 1);
        const auto literal = uriTemplate.substr(0, close == std::string_view::npos ? close : open);
        if (!uri.starts_with(literal))
            return std::nullopt;
        uri.remove_prefix(literal.size());
        if (close == std::string_view::npos)
            return uri.empty() ? std::optional(out) : std::nullopt;

        // The variable reaches to where the text behind it begins.
        const auto name = uriTemplate.substr(open + 1, close - open - 1);
        uriTemplate.remove_prefix(close + 1);
        const auto behind = uriTemplate.substr(0, uriTemplate.find('{'));
        const auto end = behind.empty() ? uri.size() : uri.find(behind, 1);
        if (end == std::string_view::npos || end == 0)
            return std::nullopt;
        auto value = percentDecode(uri.substr(0, end));
        if (!value || uri.substr(0, end).find('/') != std::string_view::npos)
            return std::nullopt;
        out[std::string(name)] = std::move(*value);
        uri.remove_prefix(end);
    }
    return uri.empty() ? std::optional(out) : std::nullopt;
}

} // namespace VX::Mcp
