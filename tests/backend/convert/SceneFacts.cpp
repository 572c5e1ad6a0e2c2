#include "SceneFacts.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

namespace VX::Test
{

namespace
{

std::string hex(Color color)
{
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%02x%02x%02x", color.r, color.g, color.b);
    return text.data();
}

void addMesh(SceneFacts& facts, const ObjectMesh& object)
{
    const Mesh& mesh = *object.mesh();
    facts.parts.push_back(&object);
    facts.meshes.insert(&mesh);
    facts.triangles += mesh.triangles.size();
    for (const Vector3f& point : mesh.points)
        facts.isFinite = facts.isFinite && point.allFinite();
    for (const Triangle& t : mesh.triangles)
        facts.area += (mesh.points[t[1]] - mesh.points[t[0]]).cross(mesh.points[t[2]] - mesh.points[t[0]]).norm() / 2;
    if (mesh.faceColors.empty())
        facts.colors.insert(hex(object.color()));
    for (const Color& color : mesh.faceColors)
        facts.colors.insert(hex(color));
}

} // namespace

SceneFacts factsOf(const Object& scene)
{
    SceneFacts facts;
    visitObjects(scene,
                 [&](const Object& object)
                 {
                     if (object.typeName() != "ObjectLines" && !object.name().empty())
                         facts.names.insert(object.name());
                     if (const auto* mesh = dynamic_cast<const ObjectMesh*>(&object))
                         addMesh(facts, *mesh);
                 });
    return facts;
}

void expectBox(const Object& scene, const Box3d& expected)
{
    const Box3d box = scene.worldBox();
    const double tolerance = 0.001 * expected.diagonal().norm();
    for (int axis = 0; axis < 3; ++axis)
    {
        EXPECT_NEAR(box.min()[axis], expected.min()[axis], tolerance) << axis;
        EXPECT_NEAR(box.max()[axis], expected.max()[axis], tolerance) << axis;
    }
}

} // namespace VX::Test
