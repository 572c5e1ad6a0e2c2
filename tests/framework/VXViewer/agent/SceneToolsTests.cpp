#include "AgentFixture.h"

#include <VXViewer/MainLoop.h>

#include <gtest/gtest.h>

namespace VX
{

using testing::ElementsAre;
using testing::HasSubstr;

class SceneToolsTests : public VX::Test::AgentFixture
{
};

TEST_F(SceneToolsTests, ListsTheObjectsInTheOrderOfTheScene)
{
    a_->addChild(c_);
    const Json::Value list = call_("scene.list");
    EXPECT_THAT(namesOf_(list["objects"]), ElementsAre("A", "C", "B"));
    EXPECT_EQ(list["total"].asInt(), 3);
    EXPECT_EQ(list["root"].asUInt64(), viewer_.scene().id());
    EXPECT_EQ(list["objects"][1]["parent"].asUInt64(), a_->id());
    EXPECT_EQ(list["objects"][0]["triangles"].asInt(), 12);
    EXPECT_EQ(list["objects"][0]["box"]["max"][0].asDouble(), 11);
}

TEST_F(SceneToolsTests, ListsTheLargestObjectFirst)
{
    EXPECT_THAT(namesOf_(call_("scene.list", R"({"sortBy": "size"})")["objects"]), ElementsAre("B", "C", "A"));
}

TEST_F(SceneToolsTests, ListsOnlyWhatIsAskedFor)
{
    a_->addChild(c_);
    EXPECT_THAT(namesOf_(call_("scene.list", R"({"recursive": false})")["objects"]), ElementsAre("A", "B"));
    EXPECT_THAT(namesOf_(call_("scene.list", R"({"parent": )" + id_(*a_) + "}")["objects"]), ElementsAre("C"));
    EXPECT_THAT(namesOf_(call_("scene.list", R"({"nameContains": "b"})")["objects"]), ElementsAre("B"));
    EXPECT_TRUE(call_("scene.list", R"({"type": "ObjectPoints"})")["objects"].empty());
}

TEST_F(SceneToolsTests, GoesOnWhereTheListBeforeEnded)
{
    const Json::Value first = call_("scene.list", R"({"limit": 2})");
    EXPECT_THAT(namesOf_(first["objects"]), ElementsAre("A", "B"));
    const Json::Value second =
        call_("scene.list", fmt::format(R"({{"limit": 2, "cursor": "{}"}})", first["nextCursor"].asString()));
    EXPECT_THAT(namesOf_(second["objects"]), ElementsAre("C"));
    EXPECT_FALSE(second.isMember("nextCursor"));
}

TEST_F(SceneToolsTests, RefusesACursorThatNoListGave)
{
    EXPECT_THAT(error_("scene.list", R"({"cursor": "x"})"), HasSubstr("none that a list gave"));
}

TEST_F(SceneToolsTests, MeasuresAMesh)
{
    const Json::Value object = call_("scene.getObject", R"({"id": )" + id_(*b_) + "}");
    EXPECT_NEAR(object["area"].asDouble(), 96, 1e-6);
    EXPECT_NEAR(object["volume"].asDouble(), 64, 1e-6);
    EXPECT_TRUE(object["closed"].asBool());
    EXPECT_EQ(object["components"].asInt(), 1);
    EXPECT_EQ(object["holes"].asInt(), 0);
    EXPECT_EQ(object["transform"].size(), 16U);
    EXPECT_EQ(object["color"].asString(), "#c8ccd2");
}

TEST_F(SceneToolsTests, CountsTheHolesOfAnOpenMesh)
{
    auto mesh = std::make_shared<Mesh>(*a_->mesh());
    mesh->triangles.erase(mesh->triangles.begin() + 2, mesh->triangles.begin() + 4);
    mesh->triangles.erase(mesh->triangles.begin());
    a_->setMesh(mesh);
    const Json::Value object = call_("scene.getObject", R"({"id": )" + id_(*a_) + "}");
    EXPECT_EQ(object["holes"].asInt(), 2);
    EXPECT_EQ(object["borderEdges"].asInt(), 7);
    EXPECT_FALSE(object["closed"].asBool());
    EXPECT_TRUE(object["volume"].isNull());
}

TEST_F(SceneToolsTests, MeasuresNothingWhereASummaryIsEnough)
{
    const Json::Value object = call_("scene.getObject", R"({"detail": "summary", "id": )" + id_(*b_) + "}");
    EXPECT_FALSE(object.isMember("area"));
}

TEST_F(SceneToolsTests, TellsWhereToFindIdsWhenThereIsNoSuchObject)
{
    EXPECT_EQ(error_("scene.getObject", R"({"id": 999999999})"),
              "No object has the id 999999999. Call \"scene.list\" for the ids of the objects that there are.");
}

TEST_F(SceneToolsTests, SaysSoWhereTheArgumentsAreOfAnotherKind)
{
    EXPECT_THAT(error_("scene.getObject", R"({"id": "x"})"), HasSubstr("do not fit the tool's input schema"));
}

TEST_F(SceneToolsTests, AnswersThatTheViewerClosesWhenItDoes)
{
    const Running running = begin_("scene.list");
    viewer_.reset();
    ASSERT_TRUE(running.isDone());
    EXPECT_TRUE(running.result.get().isError);
    EXPECT_THAT(running.result.get().content.front().text, HasSubstr("The viewer is closing"));
}

TEST_F(SceneToolsTests, ReadingDrawsNoFrame)
{
    driver_.settle();
    const std::uint64_t frames = viewer_.loop().framesDrawn();
    call_("scene.list");
    EXPECT_EQ(viewer_.loop().framesDrawn(), frames);
}

} // namespace VX
