#include "FormatTestSupport.h"

#include <VXMesh/ObjectFile.h>
#include <VXMesh/ObjectPoints.h>

#include <gmock/gmock.h>

namespace VX
{

TEST(PlyWrite, SavedMeshReadsBackTheSame)
{
    expectMeshReadsBackTheSame("part.ply");
}

TEST(PlyWrite, SavingMergesObjectsAndKeepsTheirColors)
{
    const auto root = std::make_shared<Object>();
    const auto red = makeMeshObject(makeTetrahedron());
    const auto mirrored = makeMeshObject(makeTetrahedron());
    red->setColor({255, 0, 0, 255});
    mirrored->setTransform(Transform(Eigen::Translation3d(5.0, 0.0, 0.0) * Eigen::Scaling(1.0, 1.0, -2.0)));
    root->addChild(red);
    root->addChild(mirrored);
    const auto object = onlyMesh(saveAndLoad(*root, "part.ply"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points.size(), 8U);
    EXPECT_DOUBLE_EQ(sixfoldVolume(*object), 3.0);
    ASSERT_EQ(object->mesh()->faceColors.size(), 8U);
    EXPECT_EQ(object->mesh()->faceColors.front(), (Color{255, 0, 0, 255}));
    EXPECT_EQ(object->mesh()->faceColors.back(), VisualObject::defaultColor());
}

TEST(PlyWrite, SavingFarFromTheOriginKeepsTheDetail)
{
    const auto mesh = makeMeshObject(makeTetrahedron());
    mesh->setTransform(Transform(Eigen::Translation3d(5e6, 0.0, 0.0) * Eigen::Scaling(0.001)));
    const auto object = onlyMesh(saveAndLoad(*mesh, "part.ply"));
    ASSERT_TRUE(object);
    EXPECT_NEAR(object->worldBox().min().x(), 5e6, 1e-9);
    EXPECT_NEAR(object->worldBox().sizes().x(), 0.001, 1e-9);
}

TEST(PlyWrite, SavingPointsWritesNoFaces)
{
    auto cloud = std::make_shared<PointCloud>();
    cloud->points = {{1.0F, 2.0F, 3.0F}, {4.0F, 5.0F, 6.0F}};
    const ObjectPoints points(cloud);
    const auto object = onlyPoints(saveAndLoad(points, "points.ply"));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->pointCloud()->points, cloud->points);
}

TEST(PlyWrite, SavingNothingIsAnError)
{
    const TempDir folder;
    EXPECT_EQ(saveObjectToFile(Object(), folder.path() / "part.ply", {}).error(),
              "Cannot write \"part.ply\": nothing with points is visible.");
}

} // namespace VX
