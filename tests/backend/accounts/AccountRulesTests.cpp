#include <gtest/gtest.h>

#include <backend/accounts/AccountRules.h>

namespace VX::Test
{

namespace
{

TEST(AccountRules, takesEveryLengthFrom8To99)
{
    EXPECT_EQ(brokenPasswordRule("abcdef1!"), std::nullopt);
    EXPECT_EQ(brokenPasswordRule("a1!" + std::string(96, 'x')), std::nullopt);
    EXPECT_EQ(brokenPasswordRule("abcde1!"), "Password not long enough");
    EXPECT_EQ(brokenPasswordRule("a1!" + std::string(97, 'x')), "Password too long");
}

TEST(AccountRules, takesEachOfThe29Symbols)
{
    std::string symbols;
    for (char c = ' '; c < 0x7F; ++c)
        if (!brokenPasswordRule("abcdefg1" + std::string(1, c)))
            symbols += c;
    EXPECT_EQ(symbols, R"(!"#$%&'()*,-./:;<>?@[]^_`{|}~)");
}

TEST(AccountRules, takesNoLineBreaks)
{
    EXPECT_EQ(brokenPasswordRule("abcdef1!\n"), "Password must not have line breaks");
    EXPECT_EQ(brokenPasswordRule("abc\rdef1!"), "Password must not have line breaks");
}

TEST(AccountRules, needsNoCapitalLetter)
{
    EXPECT_EQ(brokenPasswordRule("lowercase1!"), std::nullopt);
}

TEST(AccountRules, knowsAddresses)
{
    for (const char* address : {"a@b.c", "ann+x@ex.co", "a@b.c_d", "local@quorvix.localhost", "a@b.c.d"})
        EXPECT_TRUE(isAccountAddress(address)) << address;
    for (const char* address : {"", "@", "a@b", "a b@c.d", "a@b.c-d", "a@b.c ", "a@@b.c", "a@b@c.d", "@b.c", "a@.c",
                                "a@b.", "a/b@c.d", "a\\b@c.d", "a@b.c\n", "a\t@b.c"})
        EXPECT_FALSE(isAccountAddress(address)) << address;
    EXPECT_FALSE(isAccountAddress(std::string(250, 'a') + "@b.co"));
}

TEST(AccountRules, masksAddresses)
{
    EXPECT_EQ(maskedAddress("ann@example.com"), "a***@e***");
    EXPECT_EQ(maskedAddress("\xC3\xA4nn@example.com"), "\xC3\xA4***@e***");
    EXPECT_EQ(maskedAddress("ann"), "a***@***");
    EXPECT_EQ(maskedAddress(""), "***@***");
}

} // namespace

} // namespace VX::Test
