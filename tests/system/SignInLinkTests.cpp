#include "tests/support/InstanceChannel.h"
#include "tests/support/WaitUntil.h"
#include "tests/system/ProgramRun.h"
#include <quorvix/auth/AuthToken.h>
#include <quorvix/auth/WebAuth.h>

#include <VXInterprocess/SharedMemory.h>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <future>

namespace VX::Test
{

namespace
{

constexpr const char* link = "quorvix://auth?email=ann%40example.com&refresh-token=s3cret";

class SignInLink : public testing::Test
{
protected:
    /// Another instance of this user, which waits.
    static std::unique_ptr<WebAuthInterface> instance_(const std::function<void()>& onNotified)
    {
        setDefaultSharedMemoryNamePrefix(fmt::format("Quorvix-{}", ::geteuid()));
        auto listening = makeDefaultWebAuth(onNotified);
        const SharedMemory channel(getDefaultSharedMemoryName(), false);
        EXPECT_TRUE(waitUntil([&] { return channel.listenerCount() > 0; }));
        return listening;
    }

    /// All arguments of a process, as every user of the computer can list them.
    static std::string argumentsOf_(int process) { return readFile(fmt::format("/proc/{}/cmdline", process)); }

    const InstanceChannel channel_;
    const ProgramRun program_;
};

TEST_F(SignInLink, EndsTheProgramOnceARunningInstanceHasIt)
{
    std::promise<AuthToken> seen;
    const auto running = instance_([&] { seen.set_value(loadAuthToken()); });
    const auto result = program_.run({"-url", link});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_EQ(seen.get_future().get().token, "s3cret");
}

TEST_F(SignInLink, IsKeptWhereNobodyRunsAndTheProgramGoesOn)
{
    const auto part = program_.folder().write("part.xyz", "0 0 0\n1 0 0\n0 1 0\n");
    const auto result = program_.run({"--url", link, part.string(), "-sceneInfo", "-"});
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_NE(result.output.find("\"part\""), std::string::npos) << result.output;
    EXPECT_EQ(loadAuthToken().login, "ann@example.com");
}

TEST_F(SignInLink, IsRefusedWhereItCannotBeRead)
{
    const auto result = program_.run({"-url", "quorvix://auth?email=%zz&refresh-token=s3cret"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output + result.errors,
              "The sign-in link cannot be read. Start the sign-in again in the browser.\n");
    EXPECT_EQ(loadAuthToken(), AuthToken());
}

TEST_F(SignInLink, IsNotSeenInTheListOfProcesses)
{
    const auto running = program_.start({"-hidden", "-url", link});
    ASSERT_TRUE(waitUntil([] { return loadAuthToken().token == "s3cret"; }));
    const std::string arguments = argumentsOf_(running.id());
    EXPECT_NE(arguments.find("-url"), std::string::npos);
    EXPECT_EQ(arguments.find("quorvix://"), std::string::npos);
    EXPECT_EQ(arguments.find("s3cret"), std::string::npos);
}

} // namespace

} // namespace VX::Test
