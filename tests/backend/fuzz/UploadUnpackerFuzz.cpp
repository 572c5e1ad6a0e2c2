#include "tests/support/TempDir.h"

#include <backend/UploadUnpacker.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace
{

constexpr std::uint64_t maxBytes = 1U << 20U;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const VX::Test::TempDir folder;
    const auto archive = folder.write("upload.zip", {reinterpret_cast<const char*>(data), size});
    const auto target = folder.path() / "target";
    const auto input = VX::unpackUpload(archive, target, maxBytes, {});
    if (input && (*input != target / "input" || std::filesystem::file_size(*input) > maxBytes))
        std::abort();
    if (!input && input.error().empty())
        std::abort();
    // Nothing else may have been written.
    std::filesystem::remove_all(target);
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        if (entry.path() != archive)
            std::abort();
    return 0;
}
