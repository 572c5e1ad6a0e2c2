#include <VXMesh/Progress.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace VX
{

TEST(Subprogress, MapsOntoItsPartOfTheWhole)
{
    std::vector<float> reports;
    const auto part =
        subprogress([&reports](float fraction) { return reports.push_back(fraction), true; }, 0.25F, 0.75F);
    EXPECT_TRUE(part(0.0F));
    EXPECT_TRUE(part(0.5F));
    EXPECT_TRUE(part(1.0F));
    EXPECT_THAT(reports, testing::ElementsAre(0.25F, 0.5F, 0.75F));
}

TEST(Subprogress, HandsACancelThrough)
{
    EXPECT_FALSE(subprogress([](float) { return false; }, 0.0F, 1.0F)(0.5F));
}

TEST(Subprogress, OfNothingIsNothing)
{
    EXPECT_FALSE(subprogress({}, 0.0F, 1.0F));
}

TEST(ReportProgress, GoesOnWithoutACallback)
{
    EXPECT_TRUE(reportProgress({}, 0.5F));
    EXPECT_FALSE(reportProgress([](float) { return false; }, 0.5F));
}

TEST(OperationCanceledText, IsTheErrorOfEveryCancel)
{
    EXPECT_EQ(operationCanceledText(), "Operation was canceled");
}

} // namespace VX
