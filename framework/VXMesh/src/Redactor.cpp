#include "Redactor.h"

#include <VXMesh/StringConvert.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

using Position = std::string_view::size_type;
constexpr auto npos = std::string_view::npos;

constexpr std::string_view mask = "[redacted]";

/// How names end whose values are secret, in lower case and without separators.
constexpr std::array<std::string_view, 14> secretNames{
    "password",         "passwd",           "passphrase", "pwd",        "secret",      "token",  "authorization",
    "confirmationcode", "verificationcode", "signature",  "credential", "credentials", "cookie", "apikey"};

/// End like them, but are what the log calls requests.
constexpr std::array<std::string_view, 2> requestNames{"signintoken", "resendconfirmationcode"};

/// Names that only requests of the identity service have.
constexpr std::array<std::string_view, 3> identityNames{"\"AuthParameters", "\"ClientMetadata", "\"AnalyticsMetadata"};

constexpr std::string_view linkScheme = "quorvix:";

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isLetter(char c)
{
    return lower(c) >= 'a' && lower(c) <= 'z';
}

bool isNameCharacter(char c)
{
    return isLetter(c) || isDigit(c) || c == '_' || c == '-';
}

/// Of tokens in the sense of RFC 6750.
bool isTokenCharacter(char c)
{
    return isNameCharacter(c) || std::string_view("._~+/=").find(c) != npos;
}

bool isQuote(char c)
{
    return c == '"' || c == '\'';
}

/// The first position from `from` on at which `part`, in lower case, stands in whatever letter case.
Position findIgnoringCase(std::string_view text, std::string_view part, Position from)
{
    const auto found = std::search(text.begin() + static_cast<std::ptrdiff_t>(std::min(from, text.size())), text.end(),
                                   part.begin(), part.end(), [](char a, char b) { return lower(a) == b; });
    return found == text.end() ? npos : static_cast<Position>(found - text.begin());
}

template <typename Predicate>
Position skip(std::string_view text, Position from, Predicate predicate)
{
    while (from < text.size() && predicate(text[from]))
        ++from;
    return from;
}

Position skipBlanks(std::string_view text, Position from)
{
    return skip(text, from, [](char c) { return c == ' ' || c == '\t'; });
}

Position skipPunctuation(std::string_view text, Position from)
{
    return skip(text, from, [](char c) { return !isDigit(c) && !isLetter(c); });
}

/// The name that ends before `end`, with or without quotes around it.
struct Name
{
    std::string text; ///< in lower case, without separators
    bool quoted = false;
};

Name nameBefore(std::string_view text, Position end)
{
    Name name;
    while (end > 0 && (text[end - 1] == ' ' || text[end - 1] == '\t'))
        --end;
    if (end > 0 && isQuote(text[end - 1]))
    {
        name.quoted = true;
        --end;
        while (end > 0 && text[end - 1] == '\\')
            --end;
    }
    constexpr Position longest = 64;
    Position begin = end;
    while (begin > 0 && end - begin < longest && isNameCharacter(text[begin - 1]))
        --begin;
    for (const char c : text.substr(begin, end - begin))
        if (c != '_' && c != '-')
            name.text += lower(c);
    return name;
}

bool isSecret(const std::string& name)
{
    return std::ranges::find(requestNames, name) == requestNames.end() &&
           std::ranges::any_of(secretNames, [&name](std::string_view ending) { return name.ends_with(ending); });
}

/// Where the text ends that a quote at `open` begins which `escapes` backslashes stand before. JSON within JSON n deep
/// writes a quote with 2^n - 1 backslashes, and a quote of the text itself with more.
Position closingQuote(std::string_view text, Position open, Position escapes)
{
    Position run = 0;
    for (Position i = open + 1; i < text.size(); ++i)
    {
        if (text[i] == text[open] && run >= escapes && (run - escapes) % (2 * (escapes + 1)) == 0)
            return i - escapes;
        run = text[i] == '\\' ? run + 1 : 0;
    }
    return text.size();
}

class Redaction
{
public:
    explicit Redaction(std::string_view text)
        : text_(text)
    {
    }

    std::optional<std::string> run()
    {
        findIdentityRequest_();
        findLinks_();
        findNamedValues_();
        findBearers_();
        findWebTokens_();
        findCodes_();
        return ranges_.empty() ? std::nullopt : std::optional(masked_());
    }

private:
    struct Range
    {
        Position begin;
        Position end;
    };

    void add_(Position begin, Position end)
    {
        if (begin < end)
            ranges_.push_back({begin, end});
    }

    void findIdentityRequest_()
    {
        for (const std::string_view name : identityNames)
        {
            const Position found = text_.find(name);
            if (found == npos)
                continue;
            const Position brace = text_.find('{');
            const Position last = text_.rfind('}');
            add_(std::min(brace, found), last == npos || last < found ? text_.size() : last + 1);
        }
    }

    void findLinks_()
    {
        for (Position i = findIgnoringCase(text_, linkScheme, 0); i != npos; i = findIgnoringCase(text_, linkScheme, i))
        {
            i += linkScheme.size();
            add_(i, skip(text_, i, [](char c) { return c > ' ' && !isQuote(c) && c != '<' && c != '>'; }));
        }
    }

    void findNamedValues_()
    {
        Position i = 0;
        while ((i = text_.find_first_of(":=", i)) != npos)
        {
            const Position separator = i++;
            const Name name = nameBefore(text_, separator);
            if (isSecret(name.text))
                i = std::max(i, addValue_(separator, name.quoted));
        }
    }

    /// @return where the value ends
    Position addValue_(Position separator, bool nameIsQuoted)
    {
        const Position begin = skipBlanks(text_, separator + 1);
        const Position open = skip(text_, begin, [](char c) { return c == '\\'; });
        if (open < text_.size() && isQuote(text_[open]))
        {
            const Position end = closingQuote(text_, open, open - begin);
            add_(open + 1, end);
            return end;
        }
        const bool toTheEnd = text_[separator] == ':' && !nameIsQuoted;
        const std::string_view stops = toTheEnd ? "\r\n" : nameIsQuoted ? ",}] \t\r\n" : "& \t\r\n\"'";
        const Position end = std::min(text_.find_first_of(stops, begin), text_.size());
        add_(begin, end);
        return end;
    }

    void findBearers_()
    {
        constexpr std::string_view word = "bearer ";
        constexpr Position shortest = 8;
        for (Position i = findIgnoringCase(text_, word, 0); i != npos; i = findIgnoringCase(text_, word, i))
        {
            i = skipBlanks(text_, i + word.size());
            const Position end = skip(text_, i, isTokenCharacter);
            if (end - i >= shortest)
                add_(i, end);
        }
    }

    /// JSON web tokens begin with the Base64 of `{"`.
    void findWebTokens_()
    {
        constexpr std::string_view beginning = "eyJ";
        constexpr Position shortest = 16;
        for (Position i = text_.find(beginning); i != npos; i = text_.find(beginning, i))
        {
            const Position end = skip(text_, i, isTokenCharacter);
            if ((i == 0 || !isNameCharacter(text_[i - 1])) && end - i >= shortest)
                add_(i, end);
            i = end;
        }
    }

    void findCodes_()
    {
        constexpr std::string_view word = "code";
        constexpr Position digits = 6;
        for (Position i = findIgnoringCase(text_, word, 0); i != npos; i = findIgnoringCase(text_, word, i))
        {
            i += word.size();
            Position begin = skipPunctuation(text_, i);
            if (findIgnoringCase(text_.substr(begin, 2), "is", 0) == 0)
                begin = skipPunctuation(text_, begin + 2);
            const Position end = skip(text_, begin, isDigit);
            if (end - begin == digits)
                add_(begin, end);
        }
    }

    std::string masked_()
    {
        std::ranges::sort(ranges_, {}, &Range::begin);
        std::string out;
        Position done = 0;
        for (const Range& range : ranges_)
        {
            if (range.begin >= done)
            {
                out += text_.substr(done, range.begin - done);
                out += mask;
            }
            done = std::max(done, range.end);
        }
        out += text_.substr(done);
        return out;
    }

    std::string_view text_;
    std::vector<Range> ranges_;
};

} // namespace

std::optional<std::string> redact(std::string_view text)
{
    return Redaction(text).run();
}

} // namespace VX
