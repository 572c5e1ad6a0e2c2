#include <VXMesh/Json.h>

#include <json/writer.h>

#include <cstdint>
#include <cstdlib>

// What parses can be written and parsed again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto value = VX::deserializeJsonValue(text);
    if (!value)
    {
        // One sentence, whatever the text.
        if (value.error().empty() || value.error().back() != '.' || value.error().find('\n') != std::string::npos)
            std::abort();
        return 0;
    }
    if (!VX::deserializeJsonValue(value->toStyledString()))
        std::abort();
    return 0;
}
