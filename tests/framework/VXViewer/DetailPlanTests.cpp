#include "render/DetailPlan.h"

#include <gmock/gmock.h>

namespace VX
{

using testing::Each;
using testing::ElementsAre;

constexpr MeshDetail full{};

TEST(DetailPlanTests, WhatIsFewEnoughIsDrawnInFull)
{
    EXPECT_THAT(planDetail({{600, 150}, {400}}, 1000), Each(full));
}

TEST(DetailPlanTests, AnEmptyPictureNeedsNoPlan)
{
    EXPECT_TRUE(planDetail({}, 1000).empty());
    EXPECT_THAT(planDetail({{0}}, 0), Each(full));
}

TEST(DetailPlanTests, TheBestStandInThatKeepsToTheShareIsTaken)
{
    EXPECT_THAT(planDetail({{4000, 1000, 250}}, 1000), ElementsAre(MeshDetail{1, 1}));
    EXPECT_THAT(planDetail({{4000, 1000, 250}}, 999), ElementsAre(MeshDetail{2, 1}));
}

TEST(DetailPlanTests, TheSimplestStandInIsNotThinnedOut)
{
    EXPECT_THAT(planDetail({{4000, 1000, 250}}, 10), ElementsAre(MeshDetail{2, 1}));
}

TEST(DetailPlanTests, AMeshWithoutStandInsIsThinnedOut)
{
    EXPECT_THAT(planDetail({{4000}}, 1000), ElementsAre(MeshDetail{0, 4}));
    EXPECT_THAT(planDetail({{4001}}, 1000), ElementsAre(MeshDetail{0, 5}));
}

TEST(DetailPlanTests, EachMeshHasItsShare)
{
    EXPECT_THAT(planDetail({{4000, 900}, {400, 90}, {40}}, 1110),
                ElementsAre(MeshDetail{1, 1}, MeshDetail{1, 1}, MeshDetail{0, 4}));
}

TEST(DetailPlanTests, WhatDoesNotShowTakesNoShare)
{
    EXPECT_THAT(planDetail({{0, 0}, {800, 200}, {200}}, 1000), Each(full));
}

} // namespace VX
