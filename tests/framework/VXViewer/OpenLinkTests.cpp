#include "UiTestScene.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/TempDir.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/OpenLink.h>
#include <VXViewer/RibbonMenu.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace VX
{

class OpenLinkTests : public testing::Test
{
protected:
    OpenLinkTests()
    {
        setLinkOpener([this](const std::string& url) { opened_.push_back(url); });
    }

    ~OpenLinkTests() override { setLinkOpener({}); }

    std::vector<std::string> opened_;
};

TEST_F(OpenLinkTests, OpensLinksOfTheWebAndOfMail)
{
    EXPECT_TRUE(OpenLink("https://quorvix.example/download"));
    EXPECT_TRUE(OpenLink("http://127.0.0.1:8080/"));
    EXPECT_TRUE(OpenLink("MAILTO:help@quorvix.example"));
    EXPECT_EQ(opened_.size(), 3U);
}

TEST_F(OpenLinkTests, RefusesAnythingElse)
{
    for (const char* url : {"", "file:///etc/passwd", "javascript:alert(1)", "-version", "https://", "quorvix.example",
                            "https://a b", "https://a\nb"})
        EXPECT_FALSE(OpenLink(url)) << url;
    EXPECT_TRUE(opened_.empty());
}

/// The system has the programs of a folder of its own only.
class LinkOfTheSystemTests : public testing::Test
{
protected:
    void addBrowser_(const std::string& script)
    {
        const std::filesystem::path file = folder_.write("xdg-open", "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }

    [[nodiscard]] bool hasMessage_()
    {
        driver_.settle();
        return UiTree::instance().hasWindow("Error Modal");
    }

    const VX::Test::TempDir folder_;
    const VX::Test::EnvironmentVariable path_{"PATH", folder_.path().string()};
    VX::Test::ViewerSession session_{std::make_shared<RibbonMenu>()};
    VX::Test::UiDriver driver_{session_};
    const std::string url_ = "https://quorvix.example/video";
    const std::string message_ = "The browser cannot be started. Copy this address to open it yourself:\n" + url_;
};

TEST_F(LinkOfTheSystemTests, GoesToTheBrowser)
{
    addBrowser_("echo \"$1\" > " + (folder_.path() / "opened").string());
    EXPECT_TRUE(OpenLink(url_));
    EXPECT_TRUE(driver_.waitFor([&] { return VX::Test::readFile(folder_.path() / "opened") == url_ + "\n"; }));
    EXPECT_FALSE(hasMessage_());
}

TEST_F(LinkOfTheSystemTests, IsToldWhereThereIsNoProgramForLinks)
{
    EXPECT_FALSE(OpenLink(url_));
    EXPECT_TRUE(driver_.waitFor([&] { return driver_.shows(message_, "Error Modal"); }));
}

TEST_F(LinkOfTheSystemTests, IsToldWhereThatProgramFindsNoBrowser)
{
    addBrowser_("exit 3");
    EXPECT_TRUE(OpenLink(url_));
    EXPECT_TRUE(driver_.waitFor([&] { return driver_.shows(message_, "Error Modal"); }));
}

} // namespace VX
