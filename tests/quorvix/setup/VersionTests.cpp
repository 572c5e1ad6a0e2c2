#include <quorvix/setup/Version.h>

#include <VXMesh/Version.h>

#include <gtest/gtest.h>

#include <tests/support/EnvironmentVariable.h>
#include <tests/support/TempDir.h>

#include <array>
#include <cstdio>

namespace VX
{

namespace
{

using Test::EnvironmentVariable;
using Test::TempDir;

/// What a copy of the program `probe` prints that is named `name`: the token without and with the prefix.
std::string printedAs(const std::string& name, const std::string& probe = "versionProbe")
{
    // A copy does not find the libraries beside it.
    const EnvironmentVariable libraries("LD_LIBRARY_PATH", QX_LIB_DIR);
    const TempDir folder;
    const std::filesystem::path program = folder.path() / name;
    std::filesystem::copy_file(std::filesystem::path(QX_PROBE_DIR) / probe, program);
    std::FILE* const output = ::popen(('"' + program.string() + '"').c_str(), "r");
    if (!output)
        return {};
    std::array<char, 256> text{};
    const std::size_t length = std::fread(text.data(), 1, text.size(), output);
    EXPECT_EQ(::pclose(output), 0);
    return {text.data(), length};
}

std::string plainVersion()
{
    return GetVXVersionString();
}

TEST(Version, isTheFrameworksWithoutThePrefix)
{
    EXPECT_EQ(versionNoSpaces(false), plainVersion());
}

TEST(Version, hasNoPrefixInAnotherProgram)
{
    EXPECT_EQ(versionNoSpaces(true), plainVersion());
}

TEST(Version, hasThePrefixInTheProgramNamedQuorvix)
{
    EXPECT_EQ(printedAs("Quorvix"), plainVersion() + " QX_" + plainVersion());
}

TEST(Version, hasThePrefixWhateverTheExtensionOfTheProgram)
{
    EXPECT_EQ(printedAs("Quorvix.exe"), plainVersion() + " QX_" + plainVersion());
}

TEST(Version, hasNoPrefixInAProgramOfAnotherLetterCase)
{
    EXPECT_EQ(printedAs("quorvix"), plainVersion() + ' ' + plainVersion());
}

TEST(Version, hasNoPrefixInAProgramWithALongerName)
{
    EXPECT_EQ(printedAs("Quorvix2"), plainVersion() + ' ' + plainVersion());
}

TEST(Version, putsADashForEveryBlank)
{
    EXPECT_EQ(printedAs("Quorvix", "versionProbeWithBlank"), "1.2.3-beta-4 QX_1.2.3-beta-4");
}

} // namespace

} // namespace VX
