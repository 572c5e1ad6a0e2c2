#include "MenuFixture.h"

#include <VXMesh/SystemFacts.h>
#include <VXViewer/NotificationType.h>
#include <VXViewer/OpenLink.h>
#include <VXViewer/RibbonNotifier.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

using ::testing::Contains;
using ::testing::IsEmpty;

class PlatformNoticeTest : public VX::Test::MenuFixture
{
protected:
    void TearDown() override
    {
        setLinkOpener({});
        MenuFixture::TearDown();
    }

    /// Draws the first frame after a sign-in on such a machine.
    void signInOn_(const std::string& os, const std::string& cpu)
    {
        SystemFacts facts = overriddenSystemFacts();
        facts.osNoSpaces = os;
        facts.cpuId = cpu;
        overrideSystemFacts(facts);
        if (!session_)
            start_();
        menu_->raiseFirstSignInFrame();
        redraw_();
    }

    [[nodiscard]] const auto& shown_() const { return menu_->notifier()->shown(); }
};

TEST_F(PlatformNoticeTest, tellsOfTheBuildForTheOwnProcessor)
{
    signInOn_("Apple_x86_64", "Apple M1");
    ASSERT_EQ(shown_().size(), 1U);
    const RibbonNotification& notice = shown_().front().notification;
    EXPECT_EQ(notice.buttonName, "Download");
    EXPECT_EQ(notice.header, "Architecture Inconsistence");
    EXPECT_EQ(notice.text, "This version of Quorvix is for Intel x86 architecture CPUs. Please download the version of "
                           "Quorvix for Apple Silicon for the best performance.");
    EXPECT_EQ(notice.type, NotificationType::Warning);
    EXPECT_EQ(notice.lifeTimeSec, 10);
    EXPECT_EQ(notice.tags, 15U);
}

TEST_F(PlatformNoticeTest, leadsToThePageForDownloads)
{
    std::string opened;
    setLinkOpener([&](const std::string& url) { opened = url; });
    signInOn_("apple_x86_64", "Apple M1");
    ASSERT_TRUE(driver_->press("Download"));
    EXPECT_EQ(opened, "https://www.example.com/download");
}

TEST_F(PlatformNoticeTest, isNotForOtherMachines)
{
    for (const auto& [os, cpu] : {std::pair("apple_x86_64", "Intel Core"), std::pair("apple_arm64", "Apple M1"),
                                  std::pair("debian_x86_64", "Apple M1"), std::pair("apple_x86_64_", "Apple M1"),
                                  std::pair("apple_x86_64", "An Apple"), std::pair("apple_x86_64", "")})
    {
        signInOn_(os, cpu);
        EXPECT_THAT(shown_(), IsEmpty()) << os << " " << cpu;
    }
}

TEST_F(PlatformNoticeTest, comesOnceForASignIn)
{
    signInOn_("apple_x86_64", "Apple M1");
    redraw_();
    EXPECT_EQ(shown_().front().count, 1);
}

TEST_F(PlatformNoticeTest, isPrecededByALineInTheLogEverywhere)
{
    signInOn_("Debian_x86_64", "AMD Ryzen");
    EXPECT_THAT(log_.texts(spdlog::level::debug), Contains("\nplatform: \"debian_x86_64\"\n cpuName: \"amd ryzen\""));
}

} // namespace

} // namespace VX
