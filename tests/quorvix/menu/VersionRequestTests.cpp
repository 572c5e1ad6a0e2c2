#include "MenuFixture.h"
#include "tests/support/HttpRecorder.h"

#include <VXMesh/SystemFacts.h>
#include <VXViewer/WebRequests.h>

#include <gtest/gtest.h>

namespace VX
{

namespace
{

/// The question for the latest version as it goes over the wire.
class VersionRequestTest : public VX::Test::MenuFixture
{
protected:
    void SetUp() override
    {
        MenuFixture::SetUp();
        WebRequests::reset();
        resetDeployment();
        Deployment services;
        services.version = service_.url("");
        services.telemetry = services.version;
        ASSERT_TRUE(setDeployment(services));
        SystemFacts facts = overriddenSystemFacts();
        facts.version = "1.4.0.0";
        overrideSystemFacts(facts);
    }

    /// Waits until the answer has come, and the program has done with it.
    void waitForAnswer_()
    {
        EXPECT_TRUE(driver_->waitFor([&] { return log_.contains("version: GET"); }));
        WebRequests::finish();
        redraw_();
    }

    VX::Test::HttpRecorder service_;
};

TEST_F(VersionRequestTest, getsTheLatestVersion)
{
    service_.answer("/version/latesttag", {.status = 200, .body = "1.10.0.0"});
    start_();
    EXPECT_TRUE(driver_->waitFor([&] { return driver_->shows("Version 1.10.0.0 is available"); }));
    auto requests = service_.requests();
    std::erase_if(requests, [](const auto& request) { return request.path != "/version/latesttag"; });
    ASSERT_EQ(requests.size(), 1U);
    EXPECT_EQ(requests.front().method, "GET");
    EXPECT_EQ(requests.front().body, "");
}

TEST_F(VersionRequestTest, putsUpWithAServiceThatFails)
{
    service_.answer("/version/latesttag", {.status = 500, .body = "9.9.9.9"});
    start_();
    waitForAnswer_();
    EXPECT_FALSE(driver_->shows("Get Update"));
}

TEST_F(VersionRequestTest, putsUpWithAServiceThatIsNotThere)
{
    service_.stop();
    start_();
    waitForAnswer_();
    EXPECT_FALSE(driver_->shows("Get Update"));
}

} // namespace

} // namespace VX
