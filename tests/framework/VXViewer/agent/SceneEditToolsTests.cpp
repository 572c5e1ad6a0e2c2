#include "AgentFixture.h"

#include <gtest/gtest.h>

namespace VX
{

using testing::ElementsAre;
using testing::HasSubstr;

class SceneEditToolsTests : public VX::Test::AgentFixture
{
protected:
    [[nodiscard]] std::string withIds_(const std::vector<std::shared_ptr<ObjectMesh>>& objects,
                                       const std::string& more = {}) const
    {
        std::string ids;
        for (const auto& object : objects)
            ids += (ids.empty() ? "" : ", ") + id_(*object);
        return R"({"ids": [)" + ids + "]" + (more.empty() ? "" : ", " + more) + "}";
    }
};

TEST_F(SceneEditToolsTests, RemovesObjects)
{
    EXPECT_EQ(callAsStep_("scene.remove", withIds_({a_, c_}))["removed"].asInt(), 2);
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("B"));
    EXPECT_EQ(history_().lastActionName(), "Remove Objects");
}

TEST_F(SceneEditToolsTests, RemovingLeavesOtherObjectsSelected)
{
    b_->setSelected(true);
    c_->addChild(a_);
    callAsStep_("scene.remove", withIds_({a_, c_}));
    EXPECT_THAT(selectedNames_(), ElementsAre("B"));
}

TEST_F(SceneEditToolsTests, RemovesNothingWhereOneOfTheIdsIsUnknown)
{
    EXPECT_THAT(error_("scene.remove", R"({"ids": [)" + id_(*a_) + ", 999999999]}"), HasSubstr("scene.list"));
    EXPECT_EQ(viewer_.scene().children().size(), 3U);
}

TEST_F(SceneEditToolsTests, LeavesTheRootAlone)
{
    EXPECT_THAT(error_("scene.remove", R"({"ids": [)" + id_(viewer_.scene()) + "]}"), HasSubstr("root of the scene"));
}

TEST_F(SceneEditToolsTests, RenamesAnObject)
{
    const Json::Value object = callAsStep_("scene.rename", R"({"id": )" + id_(*a_) + R"(, "name": " Wheel "})");
    EXPECT_EQ(object["name"].asString(), "Wheel");
    EXPECT_EQ(a_->name(), "Wheel");
}

TEST_F(SceneEditToolsTests, RefusesANameOfBlanks)
{
    EXPECT_THAT(error_("scene.rename", R"({"id": )" + id_(*a_) + R"(, "name": " "})"), HasSubstr("needs a letter"));
}

TEST_F(SceneEditToolsTests, TakesTheSameNamesEverywhere)
{
    const std::string wrong = R"("name": "Two\nlines")";
    EXPECT_THAT(error_("scene.rename", R"({"id": )" + id_(*a_) + ", " + wrong + "}"), HasSubstr("control characters"));
    EXPECT_THAT(error_("scene.group", withIds_({a_}, wrong)), HasSubstr("control characters"));
    EXPECT_THAT(error_("scene.createObject", R"({"shape": "cube", )" + wrong + "}"), HasSubstr("control characters"));
    a_->setName(std::string(255, 'x'));
    EXPECT_EQ(callAsStep_("scene.duplicate", withIds_({a_}))["objects"][0]["name"].asString().size(), 255U);
}

TEST_F(SceneEditToolsTests, HidesAndShowsObjects)
{
    callAsStep_("scene.setVisibility", withIds_({a_, b_}, R"("visible": false)"));
    EXPECT_FALSE(a_->isVisible() || b_->isVisible());
    callAsStep_("scene.setVisibility", withIds_({b_}, R"("visible": true)"));
    EXPECT_TRUE(b_->isVisible());
}

TEST_F(SceneEditToolsTests, ChangesColorOpacityAndShading)
{
    a_->addChild(b_);
    const Json::Value answer = callAsStep_("scene.setAppearance", withIds_({a_}, R"("color": "#FF8000", "opacity": 0.5,
                                                                                  "flatShaded": true)"));
    EXPECT_EQ(answer["objects"][0]["color"].asString(), "#ff8000");
    EXPECT_EQ(answer["objects"][0]["opacity"].asDouble(), 0.502);
    for (const auto& object : {a_, b_})
    {
        EXPECT_EQ(object->color(), (Color{0xFF, 0x80, 0, 128}));
        EXPECT_TRUE(object->isFlatShaded());
    }
}

TEST_F(SceneEditToolsTests, KeepsOfTheAppearanceWhatIsNotNamed)
{
    a_->setColor({1, 2, 3, 4});
    callAsStep_("scene.setAppearance", withIds_({a_}, R"("opacity": 1)"));
    EXPECT_EQ(a_->color(), (Color{1, 2, 3, 255}));
}

TEST_F(SceneEditToolsTests, SaysHowAColorIsWritten)
{
    EXPECT_THAT(error_("scene.setAppearance", withIds_({a_}, R"("color": "red")")), HasSubstr("#rrggbb"));
}

TEST_F(SceneEditToolsTests, MovesObjectsInSceneCoordinates)
{
    a_->addChild(b_);
    a_->setTransform(Transform(Eigen::AngleAxisd(1, Vector3d::UnitZ())));
    const Vector3d before = b_->worldBox().center();
    callAsStep_("scene.transform", withIds_({b_}, R"("translate": [1, 2, 3])"));
    EXPECT_TRUE(b_->worldBox().center().isApprox(before + Vector3d(1, 2, 3)));
}

TEST_F(SceneEditToolsTests, TurnsAndScalesAboutTheMiddle)
{
    callAsStep_("scene.transform", withIds_({b_}, R"("scale": 2, "rotate": {"axis": [0, 0, 1], "degrees": 90})"));
    EXPECT_TRUE(b_->worldBox().center().isApprox(Vector3d(5, 2, 2)));
    EXPECT_TRUE(b_->worldBox().sizes().isApprox(Vector3d(8, 8, 8)));
}

TEST_F(SceneEditToolsTests, MovesWhatIsBelowAnotherNamedObjectOnce)
{
    a_->addChild(b_);
    const Vector3d before = b_->worldBox().center();
    callAsStep_("scene.transform", withIds_({a_, b_}, R"("translate": [1, 0, 0])"));
    EXPECT_TRUE(b_->worldBox().center().isApprox(before + Vector3d(1, 0, 0)));
}

TEST_F(SceneEditToolsTests, RefusesToFlattenObjects)
{
    EXPECT_THAT(error_("scene.transform", withIds_({a_}, R"("scale": 0)")), HasSubstr("scale other than 0"));
}

TEST_F(SceneEditToolsTests, RefusesToMoveObjectsTooFarAway)
{
    callAsStep_("scene.transform", withIds_({a_}, R"("translate": [6e11, 0, 0])"));
    EXPECT_THAT(error_("scene.transform", withIds_({a_}, R"("translate": [6e11, 0, 0])")), HasSubstr("1e12"));
    EXPECT_THAT(error_("scene.transform", withIds_({b_}, R"("scale": 1e12)")), HasSubstr("1e12"));
    callAsStep_("scene.transform", withIds_({a_}, R"("translate": [-6e11, 0, 0])"));
}

TEST_F(SceneEditToolsTests, TellsThatThereIsNothingToChange)
{
    EXPECT_THAT(error_("scene.setAppearance", withIds_({a_})), HasSubstr("\"opacity\""));
    EXPECT_THAT(error_("scene.transform", withIds_({a_}, R"("center": [1, 2, 3])")), HasSubstr("\"translate\""));
    EXPECT_EQ(history_().position(), 0U);
}

TEST_F(SceneEditToolsTests, DuplicatesObjects)
{
    const Json::Value copies = callAsStep_("scene.duplicate", withIds_({a_, c_}));
    EXPECT_THAT(namesOf_(copies["objects"]), ElementsAre("A 2", "C 2"));
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("A", "A 2", "B", "C", "C 2"));
}

TEST_F(SceneEditToolsTests, GroupsObjectsUnderAName)
{
    const Json::Value group = callAsStep_("scene.group", withIds_({b_, c_}, R"("name": "Wheels")"));
    EXPECT_EQ(group["name"].asString(), "Wheels");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("A", "Wheels"));
}

TEST_F(SceneEditToolsTests, CreatesASimpleObject)
{
    const Json::Value object =
        callAsStep_("scene.createObject", R"({"shape": "cube", "name": "Block", "width": 2, "depth": 4, "height": 6,
                                  "position": [10, 0, 0]})");
    EXPECT_EQ(object["name"].asString(), "Block");
    EXPECT_EQ(object["box"]["min"][0].asDouble(), 9);
    EXPECT_EQ(object["box"]["max"][2].asDouble(), 3);
}

TEST_F(SceneEditToolsTests, CreatesNothingTooFarAwayOrTooLarge)
{
    EXPECT_THAT(error_("scene.createObject", R"({"shape": "cube", "position": [0, 1e12, 0]})"), HasSubstr("1e12"));
    EXPECT_THAT(error_("scene.createObject", R"({"shape": "sphere", "radius": 9e11, "position": [0, 2e11, 0]})"),
                HasSubstr("1e12"));
    const Json::Value large = callAsStep_("scene.createObject", R"({"shape": "cube", "width": 1e11, "height": 1e11,
                                                                    "depth": 1e11, "position": [5e11, 0, 0]})");
    EXPECT_EQ(call_("select.primitive", R"({"face": 0, "id": )" + large["id"].asString() + "}")["found"].asInt(), 2);
}

TEST_F(SceneEditToolsTests, RefusesASizeThatTheShapeDoesNotHave)
{
    EXPECT_EQ(error_("scene.createObject", R"({"shape": "sphere", "width": 3})"),
              "A sphere has no \"width\". It takes \"radius\", \"segments\".");
    EXPECT_EQ(error_("scene.createObject", R"({"shape": "arrow", "radius": 3})"),
              "An arrow has no \"radius\". It takes \"height\", \"segments\".");
}

TEST_F(SceneEditToolsTests, RefusesATorusWhoseTubeIsThickerThanItsRing)
{
    EXPECT_THAT(error_("scene.createObject", R"({"shape": "torus", "radius": 1, "tubeRadius": 2})"),
                HasSubstr("less than \"radius\""));
}

} // namespace VX
