#include <quorvix/setup/BaseUrl.h>

#include <boost/url/grammar/ci_string.hpp>
#include <boost/url/parse.hpp>
#include <boost/url/url_view.hpp>

namespace VX
{

namespace
{

bool isLoopback(const boost::urls::url_view& url)
{
    switch (url.host_type())
    {
    case boost::urls::host_type::ipv4:
        return url.host_ipv4_address().is_loopback();
    case boost::urls::host_type::ipv6:
        return url.host_ipv6_address().is_loopback();
    case boost::urls::host_type::name:
        return boost::urls::grammar::ci_is_equal(url.encoded_host(), "localhost");
    default:
        return false;
    }
}

/// The library takes the host of http://127.0.0.1.example.com for the address that it begins with and the rest for the
/// path, though a path behind a host begins with a slash.
bool hasWholeHost(const boost::urls::url_view& url)
{
    const auto path = url.encoded_path();
    return !url.encoded_host().empty() && (path.empty() || path.front() == '/');
}

} // namespace

tl::expected<std::string, std::string> parseBaseUrl(const std::string& text)
{
    const auto parsed = boost::urls::parse_uri(text);
    if (!parsed || !parsed->has_authority() || !hasWholeHost(*parsed))
        return tl::unexpected<std::string>("is not a URL");
    const boost::urls::url_view& url = *parsed;
    if (url.has_port() && url.port_number() == 0)
        return tl::unexpected<std::string>("has a port that does not exist");
    if (url.has_userinfo() || url.has_query() || url.has_fragment())
        return tl::unexpected<std::string>("must have no user name, no \"?\" and no \"#\"");
    const bool secure = url.scheme_id() == boost::urls::scheme::https;
    if (!secure && !(url.scheme_id() == boost::urls::scheme::http && isLoopback(url)))
        return tl::unexpected<std::string>("must begin with https:// (http:// is for this computer's own services)");
    return text.substr(0, text.find_last_not_of('/') + 1);
}

} // namespace VX
