#pragma once

#include <quorvix/converter/ServiceFolder.h>

#include <gtest/gtest.h>

#include <tests/support/PrivateRoot.h>
#include <unistd.h>

#include <filesystem>
#include <set>
#include <string>

namespace VX::Test
{

/// Lets the tests of a suite create files in the output directory: in a root folder of this process's own, and where
/// the system does not give one, in the real one.
class OutputDirectoryTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        hasPrivateRoot = enterPrivateRoot(".service_output_files", QX_TEST_OUTPUT_DIR "/private-root");
    }

    void SetUp() override
    {
        if (ConverterService::createServiceOutputDirectory())
            GTEST_SKIP() << "the output directory cannot be created here";
    }

    /// Skips the test where the directory is shared with others.
#define QX_NEED_PRIVATE_ROOT()                                                                                         \
    if (!hasPrivateRoot)                                                                                               \
    GTEST_SKIP() << "no private root folder is to be had here"

    static std::filesystem::path output_(const std::filesystem::path& name)
    {
        return ConverterService::serviceOutputDirectory() / name;
    }

    /// The access bits of a file, as in 0600.
    static unsigned modeOf_(const std::filesystem::path& file)
    {
        return static_cast<unsigned>(std::filesystem::symlink_status(file).permissions());
    }

    inline static bool hasPrivateRoot = false;
};

} // namespace VX::Test
