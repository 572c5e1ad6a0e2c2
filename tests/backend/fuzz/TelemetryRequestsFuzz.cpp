#include <backend/telemetry/TelemetryRequests.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string body(reinterpret_cast<const char*>(data), size);
    const auto stats = VX::StatsRequest::parse(body);
    if (!stats && stats.error().empty())
        std::abort();
    VX::LogItemsReader items(body);
    for (;;)
    {
        const auto lines = VX::readLogLines(items, 2);
        if (!lines && lines.error().empty())
            std::abort();
        if (!lines || lines->empty())
            break;
    }
    return 0;
}
