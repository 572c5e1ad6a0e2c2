#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TempDir.h"

#include <VXViewer/GraphicsCache.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace VX
{

namespace
{

/// What the variable of Mesa says once the folder of caches was looked at.
std::string switchFor(const std::string& cacheFolder)
{
    const VX::Test::EnvironmentVariable ownFolder("MESA_SHADER_CACHE_DIR", {});
    const VX::Test::EnvironmentVariable folder("XDG_CACHE_HOME", cacheFolder);
    const VX::Test::EnvironmentVariable disabled("MESA_SHADER_CACHE_DISABLE", {});
    avoidGraphicsCacheOnFullDisk();
    const char* value = std::getenv("MESA_SHADER_CACHE_DISABLE");
    return value ? value : "";
}

} // namespace

TEST(GraphicsCache, IsUsedWhereThereIsRoom)
{
    const VX::Test::TempDir folder;
    EXPECT_EQ(switchFor(folder.path().string()), "");
    EXPECT_EQ(switchFor((folder.path() / "not" / "there").string()), "");
}

TEST(GraphicsCache, IsOffOnADiskWithoutRoom)
{
    // A file system of the kernel's, which takes nothing.
    EXPECT_EQ(switchFor("/proc"), "true");
}

} // namespace VX
