#include <gtest/gtest.h>

#include <backend/accounts/PasswordHash.h>
#include <sodium.h>

namespace VX
{

namespace
{

TEST(PasswordHash, IsOfThePasswordAlone)
{
    const auto hash = hashPassword("right-1a");
    ASSERT_TRUE(hash);
    EXPECT_TRUE(isPasswordOf(*hash, "right-1a"));
    EXPECT_FALSE(isPasswordOf(*hash, "right-1b"));
}

TEST(PasswordHash, OfNobodyCostsAsMuchAsAnother)
{
    EXPECT_EQ(crypto_pwhash_str_needs_rehash(hashOfNobody().c_str(), crypto_pwhash_OPSLIMIT_INTERACTIVE,
                                             crypto_pwhash_MEMLIMIT_INTERACTIVE),
              0);
    EXPECT_FALSE(isPasswordOf(hashOfNobody(), ""));
}

} // namespace

} // namespace VX
