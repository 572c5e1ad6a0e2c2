#include "panels/MeshMeasure.h"

#include "tests/framework/VXViewer/UiTestScene.h"

#include <gtest/gtest.h>

namespace VX
{

TEST(MeshMeasure, MeasuresABox)
{
    const auto box = VX::Test::makeBox("Box", {1, 1, 1}, {3, 4, 5});
    const MeshMeasure measure = measureMesh(*box->mesh(), Transform::Identity());
    EXPECT_NEAR(measure.area, 52, 1e-9);
    ASSERT_TRUE(measure.volume);
    EXPECT_NEAR(*measure.volume, 24, 1e-9);
}

TEST(MeshMeasure, MeasuresItWhereItStands)
{
    const auto box = VX::Test::makeBox("Box");
    Transform toScene = Transform::Identity();
    toScene.translate(Vector3d(1e6, 0, 0)).scale(2);
    const MeshMeasure measure = measureMesh(*box->mesh(), toScene);
    EXPECT_NEAR(measure.area, 24, 1e-9);
    EXPECT_NEAR(measure.volume.value_or(0), 8, 1e-9);
}

TEST(MeshMeasure, TakesNoMirrorImageForInsideOut)
{
    const auto box = VX::Test::makeBox("Box");
    Transform mirror = Transform::Identity();
    mirror.scale(Vector3d(-1, 1, 1));
    EXPECT_NEAR(measureMesh(*box->mesh(), mirror).volume.value_or(0), 1, 1e-9);
}

TEST(MeshMeasure, KnowsNoVolumeOfAnOpenSurface)
{
    Mesh mesh = *VX::Test::makeBox("Box")->mesh();
    mesh.triangles.pop_back();
    const MeshMeasure measure = measureMesh(mesh, Transform::Identity());
    EXPECT_NEAR(measure.area, 5.5, 1e-9);
    EXPECT_FALSE(measure.volume);
}

TEST(MeshMeasure, MindsNoTriangleWithACornerTwice)
{
    Mesh mesh = *VX::Test::makeBox("Box")->mesh();
    mesh.triangles.emplace_back(0, 0, 1);
    EXPECT_NEAR(measureMesh(mesh, Transform::Identity()).volume.value_or(0), 1, 1e-9);
}

TEST(MeshMeasure, KnowsNoVolumeOfASurfaceWithATurnedFace)
{
    Mesh mesh = *VX::Test::makeBox("Box")->mesh();
    std::swap(mesh.triangles[0][1], mesh.triangles[0][2]);
    EXPECT_FALSE(measureMesh(mesh, Transform::Identity()).volume);
}

TEST(MeshMeasure, FindsNothingInAnEmptyMesh)
{
    EXPECT_EQ(measureMesh(Mesh(), Transform::Identity()).area, 0);
}

} // namespace VX
