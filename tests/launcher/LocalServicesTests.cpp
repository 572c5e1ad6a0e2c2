#include "launcher/LocalServices.h"

#include "tests/support/Processes.h"
#include "tests/support/RawSocket.h"
#include "tests/support/TempConfig.h"
#include "tests/support/WaitUntil.h"

#include <VXMesh/SystemFacts.h>

#include <gmock/gmock.h>

namespace VX
{

namespace
{

/// Services whose program is a script of the test's.
class LocalServicesTest : public testing::Test
{
protected:
    LocalServicesTest()
    {
        SystemFacts facts;
        facts.executablePath = folder_.path() / "Quorvix";
        overrideSystemFacts(facts);
    }

    ~LocalServicesTest() override { overrideSystemFacts({}); }

    void install_(const std::string& script) const
    {
        const auto program = folder_.write("quorvix-backend", "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }

    /// What the script wrote to its standard error.
    [[nodiscard]] std::string log_() const
    {
        return VX::Test::readFile(config_.folder().path() / "state/QuorvixTest/log/services.log");
    }

    [[nodiscard]] bool waitForLog_(const std::string& text) const
    {
        return VX::Test::waitUntil([&] { return log_().find(text) != std::string::npos; });
    }

    const VX::Test::TempConfig config_;
    const VX::Test::TempDir folder_;
    const std::unique_ptr<LocalServices> services_ = LocalServices::bind().value();
};

TEST_F(LocalServicesTest, BindAPortOfTheirOwn)
{
    const auto others = LocalServices::bind();
    ASSERT_TRUE(others) << others.error();
    EXPECT_NE(services_->port(), (*others)->port());
}

TEST_F(LocalServicesTest, LetRequestsWaitBeforeTheyAreStarted)
{
    EXPECT_TRUE(VX::Test::RawSocket::connect(services_->port()).isOpen());
}

TEST_F(LocalServicesTest, ServeTheSocketAndTheDataOfTheUser)
{
    install_(R"(echo "$@" >&2; readlink /proc/self/fd/3 >&2; exec sleep 1000)");
    services_->start();
    const auto data = config_.folder().path() / "data/QuorvixTest/services";
    EXPECT_TRUE(waitForLog_("serve --listen-fd 3 --data " + data.string() + " --exit-with-parent " +
                            std::to_string(VX::Test::ownProcess()) + "\nsocket:"))
        << log_();
}

TEST_F(LocalServicesTest, AreStartedOnce)
{
    install_("echo started >&2; exec sleep 1000");
    services_->start();
    ASSERT_TRUE(waitForLog_("started"));
    services_->start();
    EXPECT_EQ(log_(), "started\n");
}

TEST_F(LocalServicesTest, FailNotWhileTheyRun)
{
    install_("echo started >&2; exec sleep 1000");
    services_->start();
    ASSERT_TRUE(waitForLog_("started"));
    EXPECT_EQ(services_->failure(), "");
}

TEST_F(LocalServicesTest, TurnARequestAwayWhereTheyCannotStart)
{
    install_("echo 'The disk is full.' >&2; exit 1");
    auto client = VX::Test::RawSocket::connect(services_->port());
    services_->start();
    EXPECT_EQ(client.receiveAll(), "");
    EXPECT_EQ(services_->failure(), "The conversion service of this computer cannot be started. The disk is full.");
}

TEST_F(LocalServicesTest, LetARequestWaitWhereTheyWereKilled)
{
    install_("if [ -e \"$0.again\" ]; then echo again >&2; exec sleep 1000; fi; touch \"$0.again\"; kill -KILL $$");
    auto client = VX::Test::RawSocket::connect(services_->port());
    services_->start();
    ASSERT_TRUE(waitForLog_("again"));
    EXPECT_TRUE(client.send("GET / HTTP/1.1\r\n"));
    EXPECT_EQ(services_->failure(), "");
}

TEST_F(LocalServicesTest, MakeRoomForTheirLog)
{
    const auto folder = config_.folder().path() / "state/QuorvixTest/log";
    config_.folder().write("state/QuorvixTest/log/services.log", std::string(6U << 20U, 'x'));
    install_("echo started >&2; exec sleep 1000");
    services_->start();
    EXPECT_TRUE(VX::Test::waitUntil([&] { return log_() == "started\n"; }));
    EXPECT_EQ(std::filesystem::file_size(folder / "services.1.log"), 6U << 20U);
}

} // namespace

} // namespace VX
