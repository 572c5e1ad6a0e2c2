#include "support/AccountTestSupport.h"

#include <backend/accounts/UserCommand.h>

namespace VX::Test
{

namespace
{

using Command = CommandArguments::Command;

class UserCommandTest : public AccountServiceTest
{
public:
    [[nodiscard]] tl::expected<std::string, std::string> run(Command command, const std::string& name = {},
                                                             const std::string& word = password) const
    {
        CommandArguments arguments;
        arguments.command = command;
        arguments.dataFolder = data;
        arguments.address = name;
        return runUserCommand(arguments, [&] { return word; });
    }
};

TEST_F(UserCommandTest, addsAnAccountThatCanSignInAtOnce)
{
    EXPECT_EQ(run(Command::UserAdd, address), "");
    start();
    EXPECT_EQ(signIn().status, 200);
}

TEST_F(UserCommandTest, worksBesideARunningService)
{
    start();
    EXPECT_EQ(run(Command::UserAdd, address), "");
    EXPECT_EQ(signIn().status, 200);
    EXPECT_EQ(run(Command::UserRemove, address), "");
    EXPECT_EQ(errorOf(signIn()), "NotAuthorizedException: Incorrect username or password.");
}

TEST_F(UserCommandTest, listsAccounts)
{
    EXPECT_EQ(run(Command::UserList), "");
    ASSERT_TRUE(run(Command::UserAdd, "Zoe@example.com"));
    start();
    ASSERT_EQ(call("SignUp", userBody(address, password)).status, 200);
    EXPECT_EQ(run(Command::UserList), "ann@example.com (not confirmed)\nZoe@example.com\n");
}

TEST_F(UserCommandTest, doesNotAddAnAccountTwice)
{
    ASSERT_TRUE(run(Command::UserAdd, address));
    const auto again = run(Command::UserAdd, "Ann@Example.com");
    ASSERT_FALSE(again);
    EXPECT_EQ(again.error(), "There is an account with this address already.");
}

TEST_F(UserCommandTest, asksForAnAddressAndAPasswordThatCanBeUsed)
{
    const auto noAddress = run(Command::UserAdd, "ann");
    ASSERT_FALSE(noAddress);
    EXPECT_EQ(noAddress.error(), "This is not an e-mail address.");
    const auto weak = run(Command::UserAdd, address, "abcdefgh!");
    ASSERT_FALSE(weak);
    EXPECT_EQ(weak.error(), "The password cannot be used: Password must have numeric characters.");
    EXPECT_EQ(run(Command::UserList), "");
}

TEST_F(UserCommandTest, resetsAPasswordAndSignsOutEverywhere)
{
    ASSERT_TRUE(run(Command::UserAdd, address));
    start();
    const std::string token = signIn().json()["AuthenticationResult"]["RefreshToken"].asString();
    EXPECT_EQ(run(Command::UserReset, address, "an0ther-word"), "");
    EXPECT_EQ(signIn(address, "an0ther-word").status, 200);
    EXPECT_EQ(errorOf(call("InitiateAuth", tokenSignIn(token))),
              "NotAuthorizedException: Refresh Token has been revoked");
}

TEST_F(UserCommandTest, removesEverythingOfAnAccount)
{
    ASSERT_TRUE(run(Command::UserAdd, address));
    start();
    const Json::Value result = signIn().json()["AuthenticationResult"];
    EXPECT_EQ(run(Command::UserRemove, address), "");
    EXPECT_FALSE(services->isSignedIn(result["AccessToken"].asString()));
    EXPECT_EQ(errorOf(call("InitiateAuth", tokenSignIn(result["RefreshToken"].asString()))),
              "NotAuthorizedException: Invalid Refresh Token.");
}

TEST_F(UserCommandTest, tellsThatThereIsNoAccount)
{
    for (const Command command : {Command::UserRemove, Command::UserReset})
    {
        const auto done = run(command, address);
        ASSERT_FALSE(done);
        EXPECT_EQ(done.error(), "There is no account with this address.");
    }
}

} // namespace

} // namespace VX::Test
