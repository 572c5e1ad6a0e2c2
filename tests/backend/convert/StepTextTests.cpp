#include <gtest/gtest.h>

#include <backend/convert/StepText.h>

namespace VX
{

namespace
{

TEST(StepText, UndoublesQuotesAndBackslashes)
{
    EXPECT_EQ(decodeStepString("it''s"), "it's");
    EXPECT_EQ(decodeStepString("C:\\\\parts"), "C:\\parts");
}

TEST(StepText, DecodesEightBitCharacters)
{
    EXPECT_EQ(decodeStepString("Geh\\X\\E4use"), "Geh\u00e4use");
    EXPECT_EQ(decodeStepString("Geh\\S\\duse"), "Geh\u00e4use");
    EXPECT_EQ(decodeStepString("\\PA\\Geh\\S\\duse"), "Geh\u00e4use");
}

TEST(StepText, DecodesSixteenBitCharactersAndSurrogates)
{
    EXPECT_EQ(decodeStepString("\\X2\\00C40041\\X0\\b"), "\u00c4Ab");
    EXPECT_EQ(decodeStepString("\\X2\\65E5672C\\X0\\"), "\u65e5\u672c");
    EXPECT_EQ(decodeStepString("\\X2\\D83DDE00\\X0\\"), "\U0001f600");
    EXPECT_EQ(decodeStepString("\\X2\\D83D0041\\X0\\"), "\ufffdA");
    EXPECT_EQ(decodeStepString("\\X2\\DE00\\X0\\"), "\ufffd");
}

TEST(StepText, DecodesThirtyTwoBitCharacters)
{
    EXPECT_EQ(decodeStepString("\\X4\\0001F60000000041\\X0\\"), "\U0001f600A");
    EXPECT_EQ(decodeStepString("\\X4\\FFFFFFFF\\X0\\"), "\ufffd");
}

TEST(StepText, LeavesEscapesThatAreNone)
{
    EXPECT_EQ(decodeStepString("\\X2\\00C"), "\\X2\\00C");
    EXPECT_EQ(decodeStepString("\\X\\G1"), "\\X\\G1");
    EXPECT_EQ(decodeStepString("a\\b\\"), "a\\b\\");
}

TEST(StepText, TakesBytesForUtf8ElseForLatin1)
{
    EXPECT_EQ(decodeStepString("Geh\xc3\xa4use"), "Geh\u00e4use");
    EXPECT_EQ(decodeStepString("Geh\xe4use"), "Geh\u00e4use");
}

TEST(StepText, LeavesControlCharactersOut)
{
    EXPECT_EQ(decodeStepString("a long\r\n name\t"), "a long name");
}

TEST(StepText, KnowsUtf8)
{
    EXPECT_TRUE(isUtf8("\u00e4\u65e5\U0001f600"));
    EXPECT_FALSE(isUtf8("\xc3"));
    EXPECT_FALSE(isUtf8("\xc0\x80"));
    EXPECT_FALSE(isUtf8("\xed\xa0\x80"));
    EXPECT_FALSE(isUtf8("\xf4\x90\x80\x80"));
    EXPECT_FALSE(isUtf8("\xe0\x80\x80"));
}

} // namespace

} // namespace VX
