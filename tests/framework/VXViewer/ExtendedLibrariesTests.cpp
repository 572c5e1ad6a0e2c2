#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TempDir.h"

#include <VXMesh/SystemFacts.h>
#include <VXViewer/ViewerSetup.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace VX
{

class ExtendedLibrariesTests : public testing::Test
{
protected:
    ExtendedLibrariesTests()
    {
        SystemFacts facts;
        facts.executablePath = folder_.path() / "bin" / "Quorvix";
        overrideSystemFacts(facts);
    }

    ~ExtendedLibrariesTests() override { overrideSystemFacts({}); }

    void install_(const std::string& name) const
    {
        const std::filesystem::path extensions = folder_.path() / "bin" / "extensions";
        std::filesystem::create_directories(extensions);
        std::filesystem::copy_file(QX_TEST_EXTENSION, extensions / name);
    }

    static std::string calls_()
    {
        const char* calls = std::getenv("QX_TEST_EXTENSION_CALLS");
        return calls ? calls : "";
    }

    VX::Test::TempDir folder_;
    VX::Test::EnvironmentVariable variable_{"QX_TEST_EXTENSION_CALLS", ""};
    ViewerSetup setup_;
};

TEST_F(ExtendedLibrariesTests, EntersEveryLibraryAndLeavesItAtTheEnd)
{
    install_("a.so");
    install_("b.so");
    setup_.setupExtendedLibraries();
    EXPECT_EQ(calls_(), "entry entry ");
    setup_.unloadExtendedLibraries();
    EXPECT_EQ(calls_(), "entry entry exit exit ");
}

TEST_F(ExtendedLibrariesTests, LeavesOutWhatIsNoLibrary)
{
    folder_.write("bin/extensions/a.so", "text");
    folder_.write("bin/extensions/readme.txt", "text");
    install_("b.so");
    setup_.setupExtendedLibraries();
    EXPECT_EQ(calls_(), "entry ");
    setup_.unloadExtendedLibraries();
    EXPECT_EQ(calls_(), "entry exit ");
}

TEST_F(ExtendedLibrariesTests, DoesNothingWithoutTheFolder)
{
    setup_.setupExtendedLibraries();
    setup_.unloadExtendedLibraries();
    EXPECT_EQ(calls_(), "");
}

} // namespace VX
