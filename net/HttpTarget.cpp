#include <net/HttpTarget.h>

#include <charconv>

namespace VX
{

namespace
{

/// The path and query of "http://host/path?query"; the target itself where it has no scheme.
std::string_view withoutAuthority(std::string_view target)
{
    for (std::string_view scheme : {"http://", "https://"})
    {
        if (!target.starts_with(scheme))
            continue;
        const auto rest = target.find_first_of("/?", scheme.size());
        return rest == std::string_view::npos ? "/" : target.substr(rest);
    }
    return target;
}

bool parseQuery(std::string_view query, std::map<std::string, std::string>& out)
{
    while (!query.empty())
    {
        const auto end = query.find('&');
        const auto pair = query.substr(0, end);
        query = end == std::string_view::npos ? std::string_view{} : query.substr(end + 1);
        if (pair.empty())
            continue;
        const auto equals = pair.find('=');
        auto key = percentDecode(pair.substr(0, equals));
        auto value = percentDecode(equals == std::string_view::npos ? std::string_view{} : pair.substr(equals + 1));
        if (!key || !value)
            return false;
        out.insert_or_assign(std::move(*key), std::move(*value));
    }
    return true;
}

} // namespace

std::optional<std::string> percentDecode(std::string_view text)
{
    if (text.find('\0') != std::string_view::npos)
        return std::nullopt;
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] != '%')
        {
            out += text[i];
            continue;
        }
        if (text.size() - i < 3)
            return std::nullopt;
        unsigned char byte = 0;
        const char* const end = text.data() + i + 3;
        const auto [last, error] = std::from_chars(text.data() + i + 1, end, byte, 16);
        if (error != std::errc{} || last != end || byte == 0)
            return std::nullopt;
        out += static_cast<char>(byte);
        i += 2;
    }
    return out;
}

std::optional<HttpTarget> parseHttpTarget(std::string_view target)
{
    HttpTarget out;
    if (target == "*")
    {
        out.path = target;
        return out;
    }
    target = withoutAuthority(target);
    if (target.empty() || target.find('#') != std::string_view::npos)
        return std::nullopt;

    const auto question = target.find('?');
    auto path = percentDecode(target.substr(0, question));
    if (!path)
        return std::nullopt;
    out.path = path->empty() ? "/" : std::move(*path);
    if (out.path.front() != '/')
        return std::nullopt;
    if (question != std::string_view::npos)
        out.rawQuery = target.substr(question + 1);
    if (!parseQuery(out.rawQuery, out.query))
        return std::nullopt;
    return out;
}

} // namespace VX
