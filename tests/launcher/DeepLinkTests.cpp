#include "launcher/DeepLink.h"

#include "launcher/CommandLine.h"
#include "tests/support/InstanceChannel.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempConfig.h"
#include "tests/support/WaitUntil.h"
#include <quorvix/auth/AuthToken.h>
#include <quorvix/auth/WebAuth.h>

#include <VXInterprocess/SharedMemory.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <future>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Arguments = std::vector<std::string>;

constexpr const char* link = "quorvix://auth?email=ann%40example.com&refresh-token=s3cret";

class DeepLinkTest : public testing::Test
{
protected:
    /// An instance of the program that has started and waits.
    static std::unique_ptr<WebAuthInterface> instance_(const std::function<void()>& onNotified)
    {
        Arguments none;
        EXPECT_EQ(handOverDeepLink(none).value(), DeepLink::None);
        auto listening = makeDefaultWebAuth(onNotified);
        const SharedMemory channel(getDefaultSharedMemoryName(), false);
        EXPECT_TRUE(VX::Test::waitUntil([&] { return channel.listenerCount() > 0; }));
        return listening;
    }

    /// What becomes of this one link of the command line.
    static tl::expected<DeepLink, std::string> handOver_(const std::string& text)
    {
        Arguments arguments{"-url", text};
        return handOverDeepLink(arguments);
    }

    const VX::Test::InstanceChannel channel_;
    const VX::Test::TempConfig config_{"Quorvix"};
    const VX::Test::LogCapture log_;
};

TEST_F(DeepLinkTest, wakesARunningInstanceOnceTheSignInIsStored)
{
    std::promise<AuthToken> seen;
    const auto running = instance_([&] { seen.set_value(loadAuthToken()); });
    EXPECT_EQ(handOver_(link), DeepLink::Taken);
    auto token = seen.get_future();
    ASSERT_EQ(token.wait_for(std::chrono::seconds(30)), std::future_status::ready);
    EXPECT_EQ(token.get().token, "s3cret");
}

TEST_F(DeepLinkTest, staysForThisProcessWhereNobodyRuns)
{
    EXPECT_EQ(handOver_(link), DeepLink::Stored);
    EXPECT_EQ(loadAuthToken().login, "ann@example.com");
}

TEST_F(DeepLinkTest, staysForThisProcessWhereTheInstanceHasEnded)
{
    instance_([] {}).reset();
    EXPECT_EQ(handOver_(link), DeepLink::Stored);
}

TEST_F(DeepLinkTest, isTakenOutOfTheArguments)
{
    Arguments arguments{"-hidden", "-url", link, "part.stl", "-url", link};
    EXPECT_EQ(handOverDeepLink(arguments), DeepLink::Stored);
    EXPECT_THAT(arguments, ElementsAre("-hidden", "part.stl"));
}

TEST_F(DeepLinkTest, mayBeMarkedByTwoDashes)
{
    const std::array argv{"Quorvix", "--url", link};
    Arguments arguments = normalizeArguments(argv.size(), argv.data());
    EXPECT_EQ(handOverDeepLink(arguments), DeepLink::Stored);
    EXPECT_THAT(arguments, IsEmpty());
}

TEST_F(DeepLinkTest, isNotThereWithoutTheOptionOrItsValue)
{
    for (const Arguments& given : {Arguments{}, Arguments{"part.stl"}, Arguments{"-url"}, Arguments{"-url", ""}})
    {
        Arguments arguments = given;
        EXPECT_EQ(handOverDeepLink(arguments), DeepLink::None);
        EXPECT_EQ(arguments, given);
    }
    EXPECT_EQ(loadAuthToken(), AuthToken());
}

TEST_F(DeepLinkTest, isRefusedInOneSentenceWithNothingOfTheLink)
{
    const auto refused = handOver_("quorvix://auth?email=%zz&refresh-token=s3cret");
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error(), "The sign-in link cannot be read. Start the sign-in again in the browser.");
    EXPECT_EQ(loadAuthToken(), AuthToken());
    EXPECT_FALSE(log_.contains("s3cret"));
    EXPECT_FALSE(log_.contains("%zz"));
}

TEST_F(DeepLinkTest, isWipedFromTheMemoryOfTheArguments)
{
    std::array<std::string, 8> texts{"Quorvix", "-url", link, "part.stl", "--url", "-url", link, "--url"};
    std::array<char*, 8> argv{};
    std::ranges::transform(texts, argv.begin(), [](std::string& text) { return text.data(); });
    wipeDeepLinks(argv.size(), argv.data());
    EXPECT_THAT(texts, ElementsAre("Quorvix", "-url", std::string(std::string(link).size(), '\0'), "part.stl", "--url",
                                   "-url", std::string(std::string(link).size(), '\0'), "--url"));
}

} // namespace

} // namespace VX
