#include <net/HttpServer.h>

#include <algorithm>

namespace VX
{

namespace
{

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

bool HeaderNameLess::operator()(std::string_view a, std::string_view b) const
{
    return std::ranges::lexicographical_compare(a, b, {}, lower, lower);
}

tl::expected<HttpBodySink, HttpResponse> HttpHandler::acceptBody(const HttpRequest&)
{
    return HttpBodySink{};
}

} // namespace VX
