#include "tests/support/TempDir.h"

#include <VXMesh/Zip.h>

#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string_view>

namespace
{

constexpr std::uint64_t maxBytes = 1U << 20U;
constexpr std::uint64_t maxEntries = 100;

std::uint64_t bytesBelow(const std::filesystem::path& folder)
{
    std::uint64_t bytes = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    {
        if (entry.is_symlink())
            std::abort();
        bytes += entry.is_regular_file() ? entry.file_size() : 0;
    }
    return bytes;
}

} // namespace

// No archive writes beside its folder or more than it may, and none that fails leaves anything.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const VX::Test::TempDir temp;
    const auto target = temp.path() / "out";
    const auto zip = temp.write("in.zip", std::string_view(reinterpret_cast<const char*>(data), size));
    VX::DecompressZipSettings settings;
    settings.maxBytes = maxBytes;
    settings.maxEntries = maxEntries;
    const bool unpacked = VX::decompressZip(zip, target, settings).has_value();
    if (unpacked != std::filesystem::exists(target) || (unpacked && bytesBelow(target) > maxBytes))
        std::abort();
    std::filesystem::remove_all(target);
    if (std::distance(std::filesystem::directory_iterator(temp.path()), {}) != 1)
        std::abort();
    return 0;
}
