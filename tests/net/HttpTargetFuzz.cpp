#include <net/HttpTarget.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto target = VX::parseHttpTarget(text);
    if (target && target->path != "*" && !target->path.starts_with('/'))
        std::abort();
    if (const auto decoded = VX::percentDecode(text); decoded && decoded->size() > size)
        std::abort();
    return 0;
}
