#include <quorvix/auth/PasswordRules.h>

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace VX
{

namespace
{

constexpr std::string_view specialMarks = R"(^$*.[]{}()?-"!@#%&/\,><':;|_~`)";

/// Whether `password` meets the rule of this name.
bool meets(std::string_view rule, std::string_view password)
{
    for (const PasswordRule& candidate : passwordRules())
    {
        if (candidate.label == rule)
            return candidate.isMet(password);
    }
    ADD_FAILURE() << "there is no rule \"" << rule << '"';
    return false;
}

/// A good password of so many bytes.
std::string passwordOf(std::size_t bytes)
{
    return "a1!" + std::string(bytes - 3, 'x');
}

TEST(PasswordRules, TakeEverySpecialMark)
{
    std::size_t count = 0;
    for (const char mark : specialMarks)
    {
        if (mark == '\\')
            continue;
        ++count;
        EXPECT_TRUE(meets("Special character", std::string(1, mark))) << mark;
        EXPECT_TRUE(isGoodPassword(std::string("abcdefg1") + mark)) << mark;
    }
    EXPECT_EQ(count, 29U);
}

TEST(PasswordRules, TakeNoOtherMarkForASpecialOne)
{
    for (const char* mark : {" ", "+", "=", "\\", "\t", "a", "Z", "0", "é"})
    {
        EXPECT_FALSE(meets("Special character", mark)) << mark;
        EXPECT_FALSE(isGoodPassword(std::string("abcdefg1") + mark)) << mark;
    }
}

TEST(PasswordRules, WantEightToNinetyNineBytes)
{
    EXPECT_FALSE(isGoodPassword(passwordOf(7)));
    EXPECT_TRUE(isGoodPassword(passwordOf(8)));
    EXPECT_TRUE(isGoodPassword(passwordOf(99)));
    EXPECT_FALSE(isGoodPassword(passwordOf(100)));
    EXPECT_FALSE(meets("At least 8 chars", "1234567"));
    EXPECT_TRUE(meets("At least 8 chars", "12345678"));
    EXPECT_FALSE(meets("At least 8 chars", std::string(100, 'x')));
}

TEST(PasswordRules, WantALowercaseLetter)
{
    EXPECT_FALSE(isGoodPassword("ABCDEFG1!"));
    EXPECT_FALSE(meets("Lowercase letter", "ABC1!é"));
    EXPECT_TRUE(meets("Lowercase letter", "a"));
    EXPECT_TRUE(meets("Lowercase letter", "z"));
}

TEST(PasswordRules, WantANumber)
{
    EXPECT_FALSE(isGoodPassword("abcdefgh!"));
    EXPECT_TRUE(meets("Number", "0"));
    EXPECT_TRUE(meets("Number", "9"));
    EXPECT_FALSE(meets("Number", "²"));
}

TEST(PasswordRules, TakeOneLineOnly)
{
    for (const char* password : {"abcdefg1!\n", "\nabcdefg1!", "abcd\refg1!", "abcdefg1\n!"})
        EXPECT_FALSE(isGoodPassword(password));
}

} // namespace

} // namespace VX
