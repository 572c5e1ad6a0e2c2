#include <gmock/gmock.h>

#include <backend/convert/StepRecord.h>

namespace VX
{

namespace
{

using testing::ElementsAre;

TEST(StepRecord, SplitsArgumentsAtTheirOwnLevel)
{
    const StepRecord record(" 'a,(b' , (#1,(#2,#3)) ,/* , */ LENGTH_MEASURE(1.) , $");
    ASSERT_EQ(record.size(), 4U);
    EXPECT_EQ(record[0], "'a,(b'");
    EXPECT_EQ(record[1], "(#1,(#2,#3))");
    EXPECT_EQ(stepNumber(record[2]), 1.0);
    EXPECT_EQ(record[3], "$");
    EXPECT_EQ(record.fromEnd(0), "$");
    EXPECT_EQ(record.fromEnd(3), "'a,(b'");
}

TEST(StepRecord, GivesNothingForArgumentsThatAreNotThere)
{
    const StepRecord record("#1");
    EXPECT_EQ(record[1], "");
    EXPECT_EQ(record.fromEnd(1), "");
    EXPECT_EQ(StepRecord("").size(), 0U);
    EXPECT_EQ(StepRecord("  ").size(), 0U);
}

TEST(StepRecord, MeasuresLists)
{
    EXPECT_EQ(stepListLength("(1,(2),')')x"), 11U);
    EXPECT_EQ(stepListLength("(1,(2)"), 0U);
    EXPECT_EQ(stepListLength("('"), 0U);
}

TEST(StepRecord, ReadsReferences)
{
    EXPECT_EQ(stepReference(" #12 "), StepId{12});
    EXPECT_EQ(stepReference("#18446744073709551615"), StepId{18446744073709551615U});
    EXPECT_EQ(stepReference("#18446744073709551616"), std::nullopt);
    EXPECT_EQ(stepReference("$"), std::nullopt);
    std::vector<StepId> all;
    forEachStepReference("(#1,'#2',(#3))", [&](StepId id) { all.push_back(id); });
    EXPECT_THAT(all, ElementsAre(1, 3));
}

TEST(StepRecord, ReadsNumbers)
{
    EXPECT_EQ(stepNumber("1."), 1.0);
    EXPECT_EQ(stepNumber("+1.5E+01"), 15.0);
    EXPECT_EQ(stepNumber("LENGTH_MEASURE(25.4)"), 25.4);
    EXPECT_EQ(stepNumber("1.E999"), std::nullopt);
    EXPECT_EQ(stepNumber("1.2.3"), std::nullopt);
    EXPECT_EQ(stepNumber("$"), std::nullopt);
    EXPECT_THAT(stepNumbers("((1,2.),(-3))"), ElementsAre(1.0, 2.0, -3.0));
    EXPECT_THAT(stepNumbers("(1,2.,1.E999,3)"), ElementsAre(1.0, 2.0));
}

TEST(StepRecord, ReadsStrings)
{
    EXPECT_EQ(stepString("' a part '"), "a part");
    EXPECT_EQ(stepString("$"), "");
    EXPECT_EQ(stepString("#1"), "");
}

} // namespace

} // namespace VX
