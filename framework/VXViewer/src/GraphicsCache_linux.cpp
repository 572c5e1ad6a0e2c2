#include <VXMesh/UserHome.h>
#include <VXViewer/GraphicsCache.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace VX
{

namespace
{

/// Far more than the cache of our few shaders takes up.
constexpr std::uintmax_t leastRoom = std::uintmax_t{16} << 20U;

std::filesystem::path cacheFolder()
{
    // NOLINTBEGIN(concurrency-mt-unsafe): called while no other thread runs
    if (const char* folder = std::getenv("MESA_SHADER_CACHE_DIR"))
        return folder;
    const char* base = std::getenv("XDG_CACHE_HOME");
    // NOLINTEND(concurrency-mt-unsafe)
    return base ? std::filesystem::path(base) : getUserHomeDir() / ".cache";
}

} // namespace

void avoidGraphicsCacheOnFullDisk()
{
    std::error_code error;
    std::filesystem::path folder = cacheFolder();
    while (!std::filesystem::exists(folder, error) && folder.has_relative_path())
        folder = folder.parent_path();
    const std::filesystem::space_info space = std::filesystem::space(folder, error);
    if (!error && space.available < leastRoom)
        ::setenv("MESA_SHADER_CACHE_DISABLE", "true", 0); // NOLINT(concurrency-mt-unsafe): as above
}

} // namespace VX
