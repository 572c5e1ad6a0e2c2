#include <backend/ConverterRequests.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string body(reinterpret_cast<const char*>(data), size);
    const auto context = VX::ConverterContextRequest::parse(body);
    if (!context && context.error().empty())
        std::abort();
    const auto start = VX::ConverterStartRequest::parse(body);
    if (!start && start.error().empty())
        std::abort();
    // What starts a conversion would also announce one.
    if (start && !context)
        std::abort();
    return 0;
}
