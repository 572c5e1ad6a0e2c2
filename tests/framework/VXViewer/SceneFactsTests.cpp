#include "framework/VXViewer/src/menu/SceneFacts.h"

#include "UiTestScene.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectPoints.h>
#include <VXViewer/Locale.h>

#include <gtest/gtest.h>

namespace VX
{

TEST(SceneFactsTests, WritesCountsInGroupsOfThree)
{
    EXPECT_EQ(countText(0), "0");
    EXPECT_EQ(countText(999), "999");
    EXPECT_EQ(countText(1000), "1,000");
    EXPECT_EQ(countText(1234567), "1,234,567");
}

TEST(SceneFactsTests, WritesNumbersAsTheLanguageDoes)
{
    ASSERT_TRUE(Locale::set("de"));
    EXPECT_EQ(countText(1234567), "1.234.567");
    EXPECT_EQ(lengthText(12.5), "12,5");
    ASSERT_TRUE(Locale::set("fr"));
    EXPECT_EQ(countText(1234567), "1\u00A0234\u00A0567");
    EXPECT_EQ(lengthText(12.5), "12,5");
    ASSERT_TRUE(Locale::set("ja"));
    EXPECT_EQ(countText(1234567), "1,234,567");
    Locale::set("en");
}

TEST(SceneFactsTests, WritesLengthsWithFiveDigitsOrAllBeforeThePoint)
{
    EXPECT_EQ(lengthText(0), "0");
    EXPECT_EQ(lengthText(10), "10");
    EXPECT_EQ(lengthText(-0.5), "-0.5");
    EXPECT_EQ(lengthText(12.34567), "12.346");
    EXPECT_EQ(lengthText(123456.7), "123457");
    EXPECT_EQ(lengthText(0.00001), "0");
    EXPECT_EQ(lengthText(-0.00001), "0");
}

TEST(SceneFactsTests, CountsAnObjectAndWhatIsBelowIt)
{
    const auto box = VX::Test::makeBox("Box", {0, 0, 0}, {2, 2, 2});
    auto cloud = std::make_shared<PointCloud>();
    cloud->points = {{5, 0, 0}, {6, 0, 0}};
    box->addChild(std::make_shared<ObjectPoints>(cloud));
    auto lines = std::make_shared<Lines>();
    lines->points = {{0, 0, 0}, {0, 0, 9}};
    lines->segments = {{0, 1}};
    box->addChild(std::make_shared<ObjectLines>(lines));

    SceneFacts facts;
    facts.add(*box);
    EXPECT_EQ(facts.objects, 3U);
    EXPECT_EQ(facts.triangles, 12U);
    EXPECT_EQ(facts.vertices, 8U);
    EXPECT_EQ(facts.points, 2U);
    EXPECT_EQ(facts.segments, 1U);
    EXPECT_TRUE(facts.box.min().isApprox(Vector3d(0, 0, 0)));
    EXPECT_TRUE(facts.box.max().isApprox(Vector3d(6, 2, 9)));
}

} // namespace VX
