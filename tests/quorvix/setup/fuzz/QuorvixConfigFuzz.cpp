#include <quorvix/setup/QuorvixConfig.h>

#include <VXMesh/Json.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

// Whatever the document: nothing is thrown, the fifth font is never named, and each of the others is a regular file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto document = VX::deserializeJsonValue(std::string(reinterpret_cast<const char*>(data), size));
    if (!document)
        return 0;
    const VX::QuorvixConfig config = VX::createQuorvixConfigFromJson(*document);
    if (!config.fontPaths[4].empty() || (config.config && !config.config->isObject()))
        std::abort();
    const bool allAreFiles = std::ranges::all_of(
        config.fontPaths,
        [](const std::filesystem::path& path)
        {
            return path.empty() || std::filesystem::symlink_status(path).type() == std::filesystem::file_type::regular;
        });
    if (!allAreFiles)
        std::abort();
    return 0;
}
