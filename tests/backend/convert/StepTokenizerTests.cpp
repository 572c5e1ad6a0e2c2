#include <gtest/gtest.h>

#include <backend/convert/StepTokenizer.h>

#include <string>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

using Kind = StepTokenKind;
using Tokens = std::vector<std::pair<Kind, std::string>>;

Tokens tokensOf(std::string_view text)
{
    Tokens tokens;
    StepTokenizer tokenizer(text);
    for (StepToken token = tokenizer.next(); token.kind != Kind::End; token = tokenizer.next())
        tokens.emplace_back(token.kind, token.text);
    return tokens;
}

TEST(StepTokenizer, SplitsAnInstance)
{
    const Tokens expected{{Kind::Reference, "12"},   {Kind::Equals, "="}, {Kind::Keyword, "CIRCLE"}, {Kind::Open, "("},
                          {Kind::String, ""},        {Kind::Comma, ","},  {Kind::Reference, "7"},    {Kind::Comma, ","},
                          {Kind::Number, "-2.5E-3"}, {Kind::Comma, ","},  {Kind::Enumeration, "T"},  {Kind::Comma, ","},
                          {Kind::Unset, "$"},        {Kind::Comma, ","},  {Kind::Derived, "*"},      {Kind::Close, ")"},
                          {Kind::Semicolon, ";"}};
    EXPECT_EQ(tokensOf("#12 = CIRCLE ( '' , #7 , -2.5E-3 , .T. , $ , * ) ;"), expected);
}

TEST(StepTokenizer, KeepsQuotePairsPunctuationAndCommentMarksInStrings)
{
    EXPECT_EQ(tokensOf("'it''s; /* (#1) */'"), (Tokens{{Kind::String, "it''s; /* (#1) */"}}));
    EXPECT_EQ(tokensOf("''''"), (Tokens{{Kind::String, "''"}}));
    EXPECT_EQ(tokensOf("'a','b'"), (Tokens{{Kind::String, "a"}, {Kind::Comma, ","}, {Kind::String, "b"}}));
}

TEST(StepTokenizer, PassesOverCommentsAndLineEnds)
{
    EXPECT_EQ(tokensOf("/* ' ; */#1/**/,\r\n\t#2"),
              (Tokens{{Kind::Reference, "1"}, {Kind::Comma, ","}, {Kind::Reference, "2"}}));
}

TEST(StepTokenizer, TellsWhatHasNoEnd)
{
    EXPECT_EQ(tokensOf("'abc"), (Tokens{{Kind::Invalid, "'abc"}}));
    EXPECT_EQ(tokensOf("'abc''"), (Tokens{{Kind::Invalid, "'abc''"}}));
    EXPECT_EQ(tokensOf("/* abc"), (Tokens{{Kind::Invalid, ""}}));
    EXPECT_EQ(tokensOf(".T"), (Tokens{{Kind::Invalid, ".T"}}));
    EXPECT_EQ(tokensOf("#"), (Tokens{{Kind::Invalid, ""}}));
}

TEST(StepTokenizer, TakesBytesThatBeginNothingAsInvalid)
{
    EXPECT_EQ(tokensOf("\x80\x01?"), (Tokens{{Kind::Invalid, "\x80"}, {Kind::Invalid, "\x01"}, {Kind::Invalid, "?"}}));
}

TEST(StepTokenizer, TellsHowFarItRead)
{
    StepTokenizer tokenizer("  #12=A()");
    tokenizer.next();
    EXPECT_EQ(tokenizer.position(), 5U);
}

} // namespace

} // namespace VX
