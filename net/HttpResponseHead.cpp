#include <net/HttpResponseHead.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>

namespace VX
{

namespace
{

/// Fields that describe the message itself, which only the server knows.
bool isOwnField(std::string_view name)
{
    const HeaderNameLess less;
    const auto same = [&](std::string_view own) { return !less(name, own) && !less(own, name); };
    constexpr std::array<std::string_view, 4> ownFields{"Connection", "Content-Length", "Date", "Transfer-Encoding"};
    return std::ranges::any_of(ownFields, same);
}

std::string onOneLine(std::string text)
{
    std::ranges::replace_if(text, [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    return text;
}

void appendTwoDigits(std::string& out, unsigned value)
{
    out += static_cast<char>('0' + value / 10 % 10);
    out += static_cast<char>('0' + value % 10);
}

/// "Sun, 06 Nov 1994 08:49:37 GMT"
std::string httpDate(std::chrono::sys_seconds time)
{
    constexpr std::array<const char*, 7> dayNames{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array<const char*, 12> monthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);

    std::string out = dayNames[std::chrono::weekday(day).c_encoding()];
    out += ", ";
    appendTwoDigits(out, static_cast<unsigned>(date.day()));
    out += ' ';
    out += monthNames[static_cast<unsigned>(date.month()) - 1];
    out += ' ' + std::to_string(static_cast<int>(date.year())) + ' ';
    appendTwoDigits(out, static_cast<unsigned>(clock.hours().count()));
    out += ':';
    appendTwoDigits(out, static_cast<unsigned>(clock.minutes().count()));
    out += ':';
    appendTwoDigits(out, static_cast<unsigned>(clock.seconds().count()));
    return out + " GMT";
}

} // namespace

std::string_view httpReasonPhrase(int status)
{
    struct Reason
    {
        int status;
        std::string_view words;
    };

    static constexpr std::array reasons{
        Reason{200, "OK"},
        Reason{201, "Created"},
        Reason{202, "Accepted"},
        Reason{204, "No Content"},
        Reason{206, "Partial Content"},
        Reason{301, "Moved Permanently"},
        Reason{302, "Found"},
        Reason{303, "See Other"},
        Reason{304, "Not Modified"},
        Reason{307, "Temporary Redirect"},
        Reason{308, "Permanent Redirect"},
        Reason{400, "Bad Request"},
        Reason{401, "Unauthorized"},
        Reason{403, "Forbidden"},
        Reason{404, "Not Found"},
        Reason{405, "Method Not Allowed"},
        Reason{406, "Not Acceptable"},
        Reason{408, "Request Timeout"},
        Reason{409, "Conflict"},
        Reason{410, "Gone"},
        Reason{411, "Length Required"},
        Reason{413, "Content Too Large"},
        Reason{414, "URI Too Long"},
        Reason{415, "Unsupported Media Type"},
        Reason{417, "Expectation Failed"},
        Reason{422, "Unprocessable Content"},
        Reason{429, "Too Many Requests"},
        Reason{431, "Request Header Fields Too Large"},
        Reason{500, "Internal Server Error"},
        Reason{501, "Not Implemented"},
        Reason{502, "Bad Gateway"},
        Reason{503, "Service Unavailable"},
        Reason{504, "Gateway Timeout"},
        Reason{505, "HTTP Version Not Supported"},
        Reason{507, "Insufficient Storage"},
    };
    const auto found = std::ranges::find(reasons, status, &Reason::status);
    return found == reasons.end() ? "Unknown" : found->words;
}

bool httpStatusHasBody(int status)
{
    return status != 204 && status != 304;
}

std::string httpResponseHead(const HttpResponse& response, std::string_view framing, bool keepAlive)
{
    std::string out = "HTTP/1.1 " + std::to_string(response.status) + ' ';
    out += httpReasonPhrase(response.status);
    out += "\r\nDate: ";
    out += httpDate(std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()));
    out += keepAlive ? "\r\nConnection: keep-alive\r\n" : "\r\nConnection: close\r\n";
    if (httpStatusHasBody(response.status) && !framing.empty())
    {
        out += framing;
        out += "\r\n";
    }
    for (const auto& [name, value] : response.headers)
        if (!isOwnField(name))
            out += onOneLine(name) + ": " + onOneLine(value) + "\r\n";
    return out + "\r\n";
}

} // namespace VX
