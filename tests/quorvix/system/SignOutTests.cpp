#include "tests/support/InstanceChannel.h"
#include "tests/support/TempConfig.h"
#include <quorvix/auth/AuthToken.h>
#include <quorvix/auth/WebAuth.h>

#include <boost/process/child.hpp>
#include <boost/process/io.hpp>
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <string>

namespace VX::Test
{

namespace
{

namespace bp = boost::process;

/// An instance of the program in a process of its own. Whenever it is woken it writes a line of the stored sign-in.
class Instance
{
public:
    Instance()
        : process_(QX_SIGN_IN_LISTENER, bp::std_in<input_, bp::std_out> output_)
    {
        EXPECT_EQ(nextLine(), "listening");
    }

    ~Instance()
    {
        input_.pipe().close();
        process_.wait();
    }

    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    /// Waits for it.
    std::string nextLine()
    {
        std::string line;
        std::getline(output_, line);
        return line;
    }

    void tellOfSignOut() { input_ << std::endl; }

private:
    bp::opstream input_;
    bp::ipstream output_;
    bp::child process_;
};

class SignOutTest : public ::testing::Test
{
protected:
    static constexpr const char* signedOut = R"({"login":"","token":""})";

    const InstanceChannel channel_;
    const TempConfig config_{"Quorvix"};
    Instance one_;
    Instance other_;
};

TEST_F(SignOutTest, isSeenByEveryInstance)
{
    saveAuthToken({});
    one_.tellOfSignOut();
    EXPECT_EQ(one_.nextLine(), signedOut);
    EXPECT_EQ(other_.nextLine(), signedOut);
}

TEST_F(SignOutTest, isFollowedByASignInOfEveryInstance)
{
    one_.tellOfSignOut();
    EXPECT_EQ(one_.nextLine() + other_.nextLine(), std::string(signedOut) + signedOut);
    notifyWebAuth(fmt::format("Quorvix-{}_1", ::geteuid()), "quorvix://auth?email=bob%40example.com&refresh-token=t",
                  "Quorvix");
    const std::string signedIn = R"({"login":"bob@example.com","token":"t"})";
    EXPECT_EQ(one_.nextLine(), signedIn);
    EXPECT_EQ(other_.nextLine(), signedIn);
}

} // namespace

} // namespace VX::Test
