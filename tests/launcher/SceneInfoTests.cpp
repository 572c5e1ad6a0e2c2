#include "launcher/SceneInfo.h"

#include <VXMesh/Json.h>
#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>

#include <gtest/gtest.h>
#include <json/json.h>

namespace VX
{

namespace
{

std::shared_ptr<const Mesh> makeTriangle()
{
    Mesh mesh;
    mesh.points = {{0, 0, 0}, {1, 0, 0}, {0, 2, 0}};
    mesh.triangles = {{0, 1, 2}};
    return std::make_shared<const Mesh>(std::move(mesh));
}

class SceneInfo : public testing::Test
{
protected:
    SceneInfo()
    {
        root_->setName("Scene");
        part_->setName("Fläche");
        part_->setColor({255, 0, 16, 255});
        Transform moved = Transform::Identity();
        moved.translate(Vector3d(10, 0, 5));
        part_->setTransform(moved);
        root_->addChild(part_);
    }

    [[nodiscard]] Json::Value info() const { return deserializeJsonValue(sceneInfo(*root_)).value_or(Json::Value()); }

    std::shared_ptr<Object> root_ = std::make_shared<Object>();
    std::shared_ptr<ObjectMesh> part_ = std::make_shared<ObjectMesh>(makeTriangle());
};

TEST_F(SceneInfo, TellsNameTypeAndCountsOfEachObject)
{
    const auto part = info()["children"][0];
    EXPECT_EQ(part["name"].asString(), "Fläche");
    EXPECT_EQ(part["type"].asString(), "ObjectMesh");
    EXPECT_EQ(part["points"].asInt(), 3);
    EXPECT_EQ(part["triangles"].asInt(), 1);
    EXPECT_EQ(part["id"].asUInt64(), part_->id());
    EXPECT_EQ(part["children"].size(), 0U);
}

TEST_F(SceneInfo, GivesTheBoxOfABranchInSceneCoordinates)
{
    for (const auto& node : {info(), info()["children"][0]})
    {
        EXPECT_EQ(node["box"]["min"][0].asDouble(), 10);
        EXPECT_EQ(node["box"]["max"][1].asDouble(), 2);
        EXPECT_EQ(node["box"]["max"][2].asDouble(), 5);
    }
}

TEST_F(SceneInfo, HasNoBoxWithoutGeometry)
{
    root_->removeChild(*part_);
    EXPECT_TRUE(info()["box"].isNull());
}

TEST_F(SceneInfo, WritesTheTransformRowByRow)
{
    const auto transform = info()["children"][0]["transform"];
    ASSERT_EQ(transform.size(), 16U);
    EXPECT_EQ(transform[3].asDouble(), 10);
    EXPECT_EQ(transform[11].asDouble(), 5);
    EXPECT_EQ(transform[15].asDouble(), 1);
}

TEST_F(SceneInfo, GivesAColorOnlyToWhatIsDrawn)
{
    EXPECT_EQ(info()["children"][0]["color"].asString(), "#ff0010");
    EXPECT_FALSE(info().isMember("color"));
}

TEST_F(SceneInfo, TellsWhetherAnObjectIsVisible)
{
    EXPECT_TRUE(info()["children"][0]["visible"].asBool());
    part_->setVisible(false);
    EXPECT_FALSE(info()["children"][0]["visible"].asBool());
}

TEST_F(SceneInfo, EndsWithANewline)
{
    EXPECT_TRUE(sceneInfo(*root_).ends_with("}\n"));
}

} // namespace

} // namespace VX
