#include "FaceSetNumbers.h"

#include <VXMesh/ObjectMesh.h>
#include <VXMesh/Primitives.h>

#include <gmock/gmock.h>

#include <memory>

namespace VX
{

namespace
{

using testing::ElementsAre;

std::shared_ptr<const Mesh> cube()
{
    return std::make_shared<const Mesh>(makeCube({}));
}

} // namespace

TEST(FaceSet, HoldsWhatWasSet)
{
    FaceSet set(200);
    EXPECT_FALSE(set.any());
    set.set(0);
    set.set(63);
    set.set(64);
    set.set(199);
    set.set(64, false);
    EXPECT_TRUE(set.test(63));
    EXPECT_FALSE(set.test(64));
    EXPECT_THAT(facesOf(set), ElementsAre(0, 63, 199));
    EXPECT_EQ(set.count(), 3U);
}

TEST(FaceSet, BitsPastTheLastFaceStayOut)
{
    FaceSet set(70, true);
    EXPECT_EQ(set.count(), 70U);
    set.flip();
    EXPECT_FALSE(set.any());
    set.flip();
    EXPECT_EQ(set, FaceSet(70, true));
}

TEST(FaceSet, ASetOfNoMeshIsEmpty)
{
    FaceSet set;
    set.flip();
    EXPECT_EQ(set.size(), 0U);
    EXPECT_FALSE(set.any());
}

TEST(FaceSet, UnitesIntersectsAndSubtracts)
{
    const FaceSet a = setOf(100, {1, 2, 80});
    const FaceSet b = setOf(100, {2, 80, 81});
    EXPECT_THAT(facesOf(FaceSet(a) |= b), ElementsAre(1, 2, 80, 81));
    EXPECT_THAT(facesOf(FaceSet(a) &= b), ElementsAre(2, 80));
    EXPECT_THAT(facesOf(FaceSet(a) -= b), ElementsAre(1));
}

TEST(ObjectMesh, KeepsItsSelectedFaces)
{
    ObjectMesh object(cube());
    const std::uint64_t before = object.revision();
    const auto faces = std::make_shared<const FaceSet>(setOf(12, {3}));
    object.setSelectedFaces(faces);
    EXPECT_EQ(object.selectedFaces(), faces);
    EXPECT_GT(object.revision(), before);
}

TEST(ObjectMesh, AnEmptySetSelectsNothing)
{
    ObjectMesh object(cube());
    object.setSelectedFaces(std::make_shared<const FaceSet>(12));
    EXPECT_EQ(object.selectedFaces(), nullptr);
}

TEST(ObjectMesh, ASetOfAnotherMeshSelectsNothing)
{
    ObjectMesh object(cube());
    object.setSelectedFaces(std::make_shared<const FaceSet>(13, true));
    EXPECT_EQ(object.selectedFaces(), nullptr);
}

TEST(ObjectMesh, LosesItsSelectedFacesWithTheMesh)
{
    ObjectMesh object(cube());
    object.setSelectedFaces(std::make_shared<const FaceSet>(12, true));
    object.setMesh(cube());
    EXPECT_NE(object.selectedFaces(), nullptr);
    object.setMesh(std::make_shared<const Mesh>(makePlane({})));
    EXPECT_EQ(object.selectedFaces(), nullptr);
}

} // namespace VX
