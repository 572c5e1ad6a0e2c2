#include <backend/PresignedUrl.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

namespace
{

/// Up to the next line end.
std::string takeLine(std::string_view& text)
{
    const auto end = std::min(text.find('\n'), text.size());
    std::string line(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const VX::PresignedUrl links(VX::SigningSecret{1, 2, 3});
    std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string method = takeLine(text);
    const std::string path = takeLine(text);
    std::map<std::string, std::string> query;
    for (const char* name : {"expires", "limit", "signature"})
        query[name] = takeLine(text);
    // Nobody but the service can make a link that holds.
    if (links.verify(method, path, query, VX::PresignedUrl::anyTime))
        std::abort();
    return 0;
}
