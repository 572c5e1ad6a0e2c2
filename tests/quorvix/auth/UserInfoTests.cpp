#include <quorvix/auth/UserInfo.h>

#include <gtest/gtest.h>

#include <thread>

namespace VX
{

namespace
{

class UserInfoTest : public ::testing::Test
{
protected:
    ~UserInfoTest() override { UserInfo::setAccessToken({}); }
};

TEST_F(UserInfoTest, hasNoAccessTokenAtFirst)
{
    EXPECT_EQ(UserInfo::getAccessToken(), "");
}

TEST_F(UserInfoTest, keepsTheAccessToken)
{
    UserInfo::setAccessToken("first");
    EXPECT_EQ(UserInfo::getAccessToken(), "first");
    UserInfo::setAccessToken("second");
    EXPECT_EQ(UserInfo::getAccessToken(), "second");
    UserInfo::setAccessToken({});
    EXPECT_EQ(UserInfo::getAccessToken(), "");
}

TEST_F(UserInfoTest, leavesTheTextOfAnEarlierReferenceAlone)
{
    UserInfo::setAccessToken("first");
    const std::string& token = UserInfo::getAccessToken();
    UserInfo::setAccessToken("second");
    EXPECT_EQ(token, "first");
}

TEST_F(UserInfoTest, isReadWhileAnotherThreadWrites)
{
    std::thread writer(
        []
        {
            for (int i = 0; i < 1000; ++i)
                UserInfo::setAccessToken(std::string(static_cast<std::size_t>(i % 50), 'x'));
        });
    for (int i = 0; i < 1000; ++i)
    {
        const std::string token = UserInfo::getAccessToken();
        EXPECT_EQ(token, std::string(token.size(), 'x'));
    }
    writer.join();
}

} // namespace

} // namespace VX
