#include "framework/VXViewer/src/SceneSnapshot.h"

#include "UiTestScene.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectPoints.h>

#include <gtest/gtest.h>

namespace VX
{

TEST(SceneSnapshotTests, CopiesTheTreeAndSharesTheGeometry)
{
    const auto root = std::make_shared<Object>();
    const auto box = VX::Test::makeBox("Box");
    box->setColor({1, 2, 3, 255});
    box->setFlatShaded(true);
    box->setVisible(false);
    box->setTransform(Transform(Eigen::Translation3d(1, 2, 3)));
    const auto points = std::make_shared<ObjectPoints>(std::make_shared<PointCloud>());
    const auto lines = std::make_shared<ObjectLines>(std::make_shared<Lines>());
    root->addChild(box);
    box->addChild(points);
    box->addChild(lines);

    const std::shared_ptr<Object> copy = copyTree(*root);
    ASSERT_EQ(copy->children().size(), 1U);
    const auto boxCopy = std::dynamic_pointer_cast<ObjectMesh>(copy->children().front());
    ASSERT_TRUE(boxCopy);
    EXPECT_NE(boxCopy, box);
    EXPECT_EQ(boxCopy->mesh(), box->mesh());
    EXPECT_EQ(boxCopy->name(), "Box");
    EXPECT_EQ(boxCopy->color(), (Color{1, 2, 3, 255}));
    EXPECT_TRUE(boxCopy->isFlatShaded());
    EXPECT_FALSE(boxCopy->isVisible());
    EXPECT_TRUE(boxCopy->transform().isApprox(box->transform()));
    ASSERT_EQ(boxCopy->children().size(), 2U);
    EXPECT_EQ(dynamic_cast<const ObjectPoints&>(*boxCopy->children()[0]).pointCloud(), points->pointCloud());
    EXPECT_EQ(dynamic_cast<const ObjectLines&>(*boxCopy->children()[1]).lines(), lines->lines());
}

} // namespace VX
