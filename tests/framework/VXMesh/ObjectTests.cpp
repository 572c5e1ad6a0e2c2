#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>
#include <vector>

namespace VX
{

namespace
{

Transform translation(double x, double y, double z)
{
    return Transform(Eigen::Translation3d(x, y, z));
}

std::shared_ptr<const Mesh> makeTriangleMesh()
{
    auto mesh = std::make_shared<Mesh>();
    mesh->points = {{0.0F, 0.0F, 0.0F}, {2.0F, 0.0F, 0.0F}, {0.0F, 2.0F, 0.0F}};
    mesh->triangles = {Triangle(0, 1, 2)};
    return mesh;
}

} // namespace

TEST(Object, EveryObjectHasAnIdOfItsOwn)
{
    const Object first;
    const Object second;
    EXPECT_GT(first.id(), 0U);
    EXPECT_GT(second.id(), first.id());
}

TEST(Object, TypesTellTheirNames)
{
    EXPECT_EQ(Object().typeName(), "Object");
    EXPECT_EQ(ObjectMesh().typeName(), "ObjectMesh");
    EXPECT_EQ(ObjectPoints().typeName(), "ObjectPoints");
    EXPECT_EQ(ObjectLines().typeName(), "ObjectLines");
}

TEST(Object, ChildLeavesItsOldParentWhenAddedToAnother)
{
    const auto oldParent = std::make_shared<Object>();
    const auto newParent = std::make_shared<Object>();
    const auto child = std::make_shared<Object>();
    ASSERT_TRUE(oldParent->addChild(child));
    ASSERT_TRUE(newParent->addChild(child));
    EXPECT_TRUE(oldParent->children().empty());
    EXPECT_EQ(child->parent(), newParent.get());
}

TEST(Object, RefusesAnAncestorAsChild)
{
    const auto grandparent = std::make_shared<Object>();
    const auto parent = std::make_shared<Object>();
    const auto child = std::make_shared<Object>();
    grandparent->addChild(parent);
    parent->addChild(child);
    EXPECT_FALSE(child->addChild(grandparent));
    EXPECT_FALSE(child->addChild(child));
    EXPECT_FALSE(child->addChild(nullptr));
    EXPECT_EQ(grandparent->parent(), nullptr);
}

TEST(Object, RemovedChildHasNoParent)
{
    const auto parent = std::make_shared<Object>();
    const auto child = std::make_shared<Object>();
    parent->addChild(child);
    EXPECT_TRUE(parent->removeChild(*child));
    EXPECT_EQ(child->parent(), nullptr);
    EXPECT_FALSE(parent->removeChild(*child));
}

TEST(Object, TakesAListOfChildrenInItsOrder)
{
    const auto parent = std::make_shared<Object>();
    const auto other = std::make_shared<Object>();
    const auto gone = std::make_shared<Object>();
    const auto stays = std::make_shared<Object>();
    const auto comes = std::make_shared<Object>();
    parent->addChild(gone);
    parent->addChild(stays);
    other->addChild(comes);
    const std::vector<std::shared_ptr<Object>> children{comes, stays};
    EXPECT_TRUE(parent->setChildren(children));
    EXPECT_EQ(parent->children(), children);
    EXPECT_EQ(comes->parent(), parent.get());
    EXPECT_EQ(gone->parent(), nullptr);
    EXPECT_TRUE(other->children().empty());
}

TEST(Object, RefusesAListWithAnAncestorOrAnObjectTwice)
{
    const auto parent = std::make_shared<Object>();
    const auto child = std::make_shared<Object>();
    parent->addChild(child);
    const auto other = std::make_shared<Object>();
    EXPECT_FALSE(child->setChildren({parent}));
    EXPECT_FALSE(parent->setChildren({other, other}));
    EXPECT_FALSE(parent->setChildren({nullptr}));
    EXPECT_EQ(parent->children(), std::vector<std::shared_ptr<Object>>{child});
    EXPECT_EQ(other->parent(), nullptr);
}

TEST(Object, ChildOfADeadParentHasNone)
{
    auto parent = std::make_shared<Object>();
    const auto child = std::make_shared<Object>();
    parent->addChild(child);
    parent.reset();
    EXPECT_EQ(child->parent(), nullptr);
}

TEST(Object, WorldTransformIsThatOfAllAncestors)
{
    const auto parent = std::make_shared<Object>();
    const auto child = std::make_shared<Object>();
    parent->addChild(child);
    parent->setTransform(Transform(Eigen::AngleAxisd(std::numbers::pi / 2.0, Vector3d::UnitZ())));
    child->setTransform(translation(1.0, 0.0, 0.0));
    const Vector3d origin = child->worldTransform() * Vector3d::Zero();
    EXPECT_TRUE(origin.isApprox(Vector3d(0.0, 1.0, 0.0)));
}

TEST(Object, RevisionGrowsWithChangesBelow)
{
    const auto root = std::make_shared<Object>();
    const auto mesh = std::make_shared<ObjectMesh>();
    root->addChild(mesh);

    const std::vector<std::function<void()>> changes = {
        [&] { mesh->setName("part"); },
        [&] { mesh->setTransform(translation(1.0, 2.0, 3.0)); },
        [&] { mesh->setVisible(false); },
        [&] { mesh->setSelected(true); },
        [&] { mesh->setColor({1, 2, 3, 255}); },
        [&] { mesh->setMesh(makeTriangleMesh()); },
        [&] { mesh->setFlatShaded(true); },
        [&] { mesh->addChild(std::make_shared<Object>()); },
        [&] { mesh->removeChild(*mesh->children().front()); },
    };
    for (const auto& change : changes)
    {
        const std::uint64_t before = root->revision();
        change();
        EXPECT_GT(root->revision(), before);
    }
}

TEST(Object, RevisionStaysWhenASetterChangesNothing)
{
    ObjectMesh mesh;
    mesh.setName("part");
    const std::uint64_t before = mesh.revision();
    mesh.setName("part");
    mesh.setVisible(true);
    mesh.setTransform(Transform::Identity());
    mesh.setColor(mesh.color());
    EXPECT_EQ(mesh.revision(), before);
}

TEST(Object, BoxOfATreeIsInSceneCoordinates)
{
    const auto root = std::make_shared<Object>();
    const auto group = std::make_shared<Object>();
    const auto mesh = std::make_shared<ObjectMesh>(makeTriangleMesh());
    root->addChild(group);
    group->addChild(mesh);
    root->setTransform(translation(10.0, 0.0, 0.0));
    mesh->setTransform(translation(0.0, 5.0, 0.0));
    for (const Object* object : std::initializer_list<const Object*>{root.get(), group.get(), mesh.get()})
    {
        EXPECT_EQ(object->worldBox().min(), Vector3d(10.0, 5.0, 0.0));
        EXPECT_EQ(object->worldBox().max(), Vector3d(12.0, 7.0, 0.0));
    }
}

TEST(Object, BoxOfATurnedMeshIsTight)
{
    ObjectMesh mesh(makeTriangleMesh());
    mesh.setTransform(Transform(Eigen::AngleAxisd(std::numbers::pi / 4.0, Vector3d::UnitZ())));
    const Box3d box = mesh.worldBox();
    const double half = std::numbers::sqrt2;
    EXPECT_TRUE(box.min().isApprox(Vector3d(-half, 0.0, 0.0), 1e-6));
    EXPECT_TRUE(box.max().isApprox(Vector3d(half, half, 0.0), 1e-6));
}

TEST(Object, BoxWithoutGeometryIsEmpty)
{
    const auto root = std::make_shared<Object>();
    root->addChild(std::make_shared<ObjectMesh>());
    root->addChild(std::make_shared<ObjectPoints>(std::make_shared<PointCloud>()));
    root->addChild(std::make_shared<ObjectLines>());
    EXPECT_TRUE(root->worldBox().isEmpty());
}

TEST(Object, VisitReachesEverythingParentsFirst)
{
    const auto root = std::make_shared<Object>();
    const auto first = std::make_shared<Object>();
    const auto second = std::make_shared<Object>();
    const auto below = std::make_shared<Object>();
    root->addChild(first);
    root->addChild(second);
    first->addChild(below);
    std::vector<std::uint64_t> visited;
    visitObjects(std::as_const(*root), [&](const Object& object) { visited.push_back(object.id()); });
    EXPECT_EQ(visited, (std::vector{root->id(), first->id(), below->id(), second->id()}));
}

} // namespace VX
