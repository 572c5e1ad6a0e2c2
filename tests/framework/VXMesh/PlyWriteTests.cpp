#include "FormatTestSupport.h"

#include <VXMesh/ObjectFile.h>
#include <VXMesh/ObjectPoints.h>

#include <gmock/gmock.h>

namespace VX
{

TEST(PlyWrite, SavedMeshReadsBackTheSame)
{
    Mesh mesh = makeTetrahedron();
    for (std::uint8_t i = 0; i < 4; ++i)
    {
        mesh.normals.push_back(Vector3f(1.0F, static_cast<float>(i), 0.0F).normalized());
        mesh.vertexColors.push_back({i, 1, 2, 200});
        mesh.faceColors.push_back({3, i, 4, 255});
    }
    const TempDir folder;
    const auto path = folder.path() / "part.ply";
    ASSERT_TRUE(saveObjectToFile(*makeMeshObject(mesh), path, {}).has_value());
    const auto object = onlyMesh(loadObjectFromFile(path, {}));
    ASSERT_TRUE(object);
    EXPECT_EQ(object->mesh()->points, mesh.points);
    EXPECT_EQ(object->mesh()->triangles, mesh.triangles);
    EXPECT_EQ(object->mesh()->vertexColors, mesh.vertexColors);
    EXPECT_EQ(object->mesh()->faceColors, mesh.faceColors);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_TRUE(object->mesh()->normals[i].isApprox(mesh.normals[i], 1e-6F));
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
    const TempDir folder;
    const auto path = folder.path() / "part.ply";
    ASSERT_TRUE(saveObjectToFile(*root, path, {}).has_value());
    const auto object = onlyMesh(loadObjectFromFile(path, {}));
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
    const TempDir folder;
    const auto path = folder.path() / "part.ply";
    ASSERT_TRUE(saveObjectToFile(*mesh, path, {}).has_value());
    const auto object = onlyMesh(loadObjectFromFile(path, {}));
    ASSERT_TRUE(object);
    EXPECT_NEAR(object->worldBox().min().x(), 5e6, 1e-9);
    EXPECT_NEAR(object->worldBox().sizes().x(), 0.001, 1e-9);
}

TEST(PlyWrite, SavingPointsWritesNoFaces)
{
    auto cloud = std::make_shared<PointCloud>();
    cloud->points = {{1.0F, 2.0F, 3.0F}, {4.0F, 5.0F, 6.0F}};
    const ObjectPoints points(cloud);
    const TempDir folder;
    const auto path = folder.path() / "points.ply";
    ASSERT_TRUE(saveObjectToFile(points, path, {}).has_value());
    const auto object = onlyPoints(loadObjectFromFile(path, {}));
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
