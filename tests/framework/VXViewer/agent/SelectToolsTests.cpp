#include "AgentFixture.h"

#include <VXMesh/Primitives.h>

#include <gtest/gtest.h>

namespace VX
{

using testing::ElementsAre;
using testing::HasSubstr;

class SelectToolsTests : public VX::Test::AgentFixture
{
protected:
    /// A ray from above onto the middle of `object`.
    [[nodiscard]] static std::string rayOnto_(const Object& object, const std::string& more = {})
    {
        const Vector3d middle = object.worldBox().center();
        return fmt::format(R"({{"ray": {{"origin": [{}, {}, 100], "direction": [0, 0, -1]}}{}{}}})", middle.x(),
                           middle.y(), more.empty() ? "" : ", ", more);
    }

    /// What is told of a picture of `objects` alone, from above onto where A is at first.
    [[nodiscard]] Json::Value pictureOf_(const std::vector<std::shared_ptr<ObjectMesh>>& objects)
    {
        std::vector<std::uint64_t> ids;
        std::ranges::transform(objects, std::back_inserter(ids), &ObjectMesh::id);
        return call_("viewer.captureScreenshot",
                     R"({"maxSize": 200, "camera": {"eye": [0.5, 0.5, 100], "target": [0.5, 0.5, 0]}, "ids": [)" +
                         fmt::format("{}", fmt::join(ids, ", ")) + "]}");
    }

    /// The same of A alone, where B covers A.
    [[nodiscard]] Json::Value pictureOfA_()
    {
        b_->setTransform(Transform(Eigen::Translation3d(-4, -1, 10)));
        return pictureOf_({a_});
    }
};

TEST_F(SelectToolsTests, PicksAndSelectsTheObjectAlongARay)
{
    const Json::Value hit = callAsStep_("select.pick", rayOnto_(*b_));
    EXPECT_TRUE(hit["hit"].asBool());
    EXPECT_EQ(hit["object"]["name"].asString(), "B");
    EXPECT_NEAR(hit["point"][2].asDouble(), 4, 1e-4);
    EXPECT_THAT(selectedNames_(), ElementsAre("B"));
}

TEST_F(SelectToolsTests, PicksWhatAPictureShowsAtAPixel)
{
    const Mcp::ToolResult taken = run_("viewer.captureScreenshot", R"({"view": "top", "maxSize": 400})");
    Json::Value arguments;
    arguments["x"] = taken.structured["width"].asInt() / 2;
    arguments["y"] = taken.structured["height"].asInt() / 2;
    for (const char* field : {"width", "height", "camera"})
        arguments["picture"][field] = taken.structured[field];
    EXPECT_EQ(call_("select.pick", arguments.toStyledString())["object"]["name"].asString(), "B");
}

TEST_F(SelectToolsTests, TakesThePictureAsItWasAnswered)
{
    const Json::Value& known = tool_("select.pick").inputSchema["properties"]["picture"]["properties"];
    const Json::Value taken = call_("viewer.captureScreenshot", R"({"maxSize": 100})");
    const Json::Value window = call_("viewer.captureScreenshot", R"({"maxSize": 100, "area": "window"})");
    const Json::Value montage = call_("viewer.captureMontage", R"({"maxSize": 100, "ids": [)" + id_(*a_) + "]}");
    for (const Json::Value& picture : {taken, window, montage["views"][0]})
    {
        for (const std::string& field : picture.getMemberNames())
            EXPECT_TRUE(known.isMember(field)) << field;
    }
}

TEST_F(SelectToolsTests, PicksWhatAViewOfAMontageShowsAtAPixelOfTheWhole)
{
    const Json::Value montage = call_("viewer.captureMontage", R"({"views": ["front", "right", "left", "top"]})");
    const Json::Value& top = montage["views"][3];
    ASSERT_GT(top["x"].asInt() * top["y"].asInt(), 0);
    Json::Value arguments;
    arguments["picture"] = top;
    arguments["x"] = top["x"].asInt() + top["width"].asInt() / 2;
    arguments["y"] = top["y"].asInt() + top["height"].asInt() / 2;
    EXPECT_EQ(call_("select.pick", arguments.toStyledString())["object"]["name"].asString(), "B");
}

TEST_F(SelectToolsTests, HitsOnlyTheObjectsThatThePictureShows)
{
    Json::Value arguments;
    arguments["picture"] = pictureOfA_();
    arguments["x"] = arguments["picture"]["width"].asInt() / 2;
    arguments["y"] = arguments["picture"]["height"].asInt() / 2;
    EXPECT_EQ(callAsStep_("select.pick", arguments.toStyledString())["object"]["name"].asString(), "A");
    EXPECT_THAT(selectedNames_(), ElementsAre("A"));
    arguments["picture"].removeMember("ids");
    EXPECT_EQ(call_("select.pick", arguments.toStyledString())["object"]["name"].asString(), "B");
}

TEST_F(SelectToolsTests, SelectsInARectangleOnlyTheTrianglesThatThePictureShows)
{
    Json::Value arguments;
    arguments["picture"] = pictureOfA_();
    arguments["x0"] = arguments["y0"] = 0;
    arguments["x1"] = arguments["picture"]["width"];
    arguments["y1"] = arguments["picture"]["height"];
    const Json::Value found = callAsStep_("select.rectangle", arguments.toStyledString());
    ASSERT_EQ(found["meshes"].size(), 1U);
    EXPECT_EQ(found["meshes"][0]["id"].asUInt64(), a_->id());
    EXPECT_EQ(found["found"].asInt(), 2);
}

TEST_F(SelectToolsTests, PicksWhatAPictureOfTheWindowShowsAtAPixel)
{
    driver_.settle();
    const PixelRect& area = viewer_.view().area();
    const Vector2d inView = viewer_.view().camera().project(c_->worldBox().center(), {area.width, area.height}).value();
    Json::Value arguments;
    arguments["picture"] = call_("viewer.captureScreenshot", R"({"area": "window", "maxSize": 500})");
    arguments["x"] = (area.x + inView.x()) / 2;
    arguments["y"] = (area.y + inView.y()) / 2;
    // The user looks elsewhere meanwhile.
    call_("camera.set", R"({"view": "bottom"})");
    EXPECT_EQ(call_("select.pick", arguments.toStyledString())["object"]["name"].asString(), "C");
    arguments["x"] = 1;
    EXPECT_THAT(error_("select.pick", arguments.toStyledString()), HasSubstr("outside of the picture"));
}

TEST_F(SelectToolsTests, SelectsNothingWhereNothingIs)
{
    b_->setSelected(true);
    const Json::Value hit =
        callAsStep_("select.pick", R"({"ray": {"origin": [100, 100, 100], "direction": [0, 0, -1]}})");
    EXPECT_FALSE(hit["hit"].asBool());
    EXPECT_TRUE(selectedNames_().empty());
}

TEST_F(SelectToolsTests, OnlyLooksWhereAskedTo)
{
    EXPECT_TRUE(call_("select.pick", rayOnto_(*b_, R"("select": "nothing")"))["hit"].asBool());
    EXPECT_TRUE(selectedNames_().empty());
    EXPECT_EQ(history_().position(), 0U);
}

TEST_F(SelectToolsTests, AsksWhereToLook)
{
    EXPECT_THAT(error_("select.pick"), HasSubstr("\"ray\""));
    EXPECT_THAT(error_("select.pick", R"({"x": 5000, "y": 1})"), HasSubstr("outside of the picture"));
    EXPECT_THAT(error_("select.pick", rayOnto_(*b_, R"("x": 5, "y": 5)")), HasSubstr("in one way"));
}

TEST_F(SelectToolsTests, AsksWhereTheRegionBegins)
{
    const std::string where = "Say where to look: \"x\" and \"y\", \"ray\", or \"id\" with \"face\".";
    EXPECT_EQ(error_("select.primitive", R"({"id": )" + id_(*b_) + "}"), where);
    EXPECT_EQ(error_("select.primitive", R"({"face": 0})"), where);
    EXPECT_EQ(error_("select.primitive"), where);
    EXPECT_THAT(error_("select.primitive", rayOnto_(*b_, R"("face": 0)")), HasSubstr("in one way"));
}

TEST_F(SelectToolsTests, SelectsObjectsByTheirIds)
{
    callAsStep_("select.objects", R"({"ids": [)" + id_(*a_) + "]}");
    callAsStep_("select.objects", R"({"mode": "add", "ids": [)" + id_(*c_) + "]}");
    EXPECT_THAT(selectedNames_(), ElementsAre("A", "C"));
    callAsStep_("select.objects", R"({"mode": "remove", "ids": [)" + id_(*a_) + "]}");
    EXPECT_THAT(selectedNames_(), ElementsAre("C"));
}

TEST_F(SelectToolsTests, SelectingOtherObjectsSelectsNoTrianglesAnyMore)
{
    call_("select.primitive", R"({"face": 0, "id": )" + id_(*b_) + "}");
    EXPECT_EQ(callAsStep_("select.objects", R"({"ids": [)" + id_(*a_) + "]}")["faces"].asInt(), 0);
    EXPECT_EQ(call_("select.delete")["deletedObjects"].asInt(), 1);
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("B", "C"));
}

TEST_F(SelectToolsTests, AddingObjectsKeepsTheTrianglesSelected)
{
    call_("select.primitive", R"({"face": 0, "id": )" + id_(*b_) + "}");
    const Json::Value selected = call_("select.objects", R"({"mode": "add", "ids": [)" + id_(*a_) + "]}");
    EXPECT_EQ(selected["faces"].asInt(), 2);
}

TEST_F(SelectToolsTests, CountsNoTrianglesOfAHiddenObjectWhichAreNotDeleted)
{
    call_("select.primitive", R"({"face": 0, "id": )" + id_(*b_) + "}");
    b_->setVisible(false);
    const Json::Value selected = call_("select.get");
    EXPECT_EQ(selected["selected"]["faces"].asInt(), 0);
    EXPECT_TRUE(selected["objects"].empty());
    EXPECT_THAT(error_("select.delete", R"({"what": "faces"})"), HasSubstr("No faces of a mesh that shows"));
}

TEST_F(SelectToolsTests, SelectsNoTrianglesOfAHiddenObject)
{
    b_->setVisible(false);
    EXPECT_THAT(error_("select.primitive", R"({"face": 0, "id": )" + id_(*b_) + "}"), HasSubstr("is hidden"));
    EXPECT_EQ(b_->selectedFaces(), nullptr);
}

TEST_F(SelectToolsTests, SelectsNoTrianglesBelowAHiddenObject)
{
    a_->addChild(b_);
    a_->setVisible(false);
    EXPECT_THAT(error_("select.primitive", R"({"face": 0, "id": )" + id_(*b_) + "}"), HasSubstr("all above it"));
    EXPECT_EQ(b_->selectedFaces(), nullptr);
}

TEST_F(SelectToolsTests, SelectsNoTrianglesOfAHiddenObjectThatAPictureShows)
{
    a_->setVisible(false);
    Json::Value arguments;
    arguments["picture"] = pictureOfA_();
    arguments["x0"] = arguments["y0"] = 0;
    arguments["x1"] = arguments["picture"]["width"];
    arguments["y1"] = arguments["picture"]["height"];
    EXPECT_THAT(error_("select.rectangle", arguments.toStyledString()), HasSubstr("is hidden"));
    EXPECT_EQ(a_->selectedFaces(), nullptr);
}

TEST_F(SelectToolsTests, PicksInAPictureWhatWasNamedBelowAHiddenObjectThatWasNot)
{
    b_->addChild(c_);
    c_->addChild(a_);
    c_->setVisible(false);
    Json::Value arguments;
    arguments["picture"] = pictureOf_({b_, a_});
    arguments["x"] = arguments["picture"]["width"].asInt() / 2;
    arguments["y"] = arguments["picture"]["height"].asInt() / 2;
    EXPECT_EQ(call_("select.pick", arguments.toStyledString())["object"]["name"].asString(), "A");
}

TEST_F(SelectToolsTests, SelectsTheCurvedRegionAroundAFace)
{
    a_->setMesh(std::make_shared<const Mesh>(makeCylinder({.radius = 1, .height = 5, .segments = 48})));
    a_->setTransform(Transform(Eigen::Translation3d(0, 20, 0)));
    const Json::Value found =
        callAsStep_("select.primitive", R"({"ray": {"origin": [-50, 20, 0.1], "direction": [1, 0, 0]}})");
    EXPECT_EQ(found["meshes"][0]["id"].asUInt64(), a_->id());
    EXPECT_EQ(found["found"].asUInt64(), found["selectedFaces"].asUInt64());
    EXPECT_GE(found["found"].asInt(), 96);
    EXPECT_LT(found["found"].asUInt64(), a_->mesh()->triangles.size());
}

TEST_F(SelectToolsTests, SelectsTheRegionOfAFaceThatIsNamed)
{
    const Json::Value found = callAsStep_("select.primitive", R"({"face": 0, "id": )" + id_(*b_) + "}");
    EXPECT_EQ(found["found"].asInt(), 2);
    EXPECT_THAT(error_("select.primitive", R"({"face": 12, "id": )" + id_(*b_) + "}"), HasSubstr("faces 0 to 11"));
}

TEST_F(SelectToolsTests, SelectsWhatIsSeenInARectangle)
{
    const Json::Value found = callAsStep_("select.rectangle", R"({"x0": 0, "y0": 0, "x1": 399, "y1": 299, "picture":
        {"width": 400, "height": 300, "camera": {"projection": "orthographic", "eye": [5, 2, 50], "target": [5, 2, 0],
        "up": [0, 1, 0]}}})");
    EXPECT_EQ(found["found"].asInt(), 6);
    EXPECT_EQ(found["meshes"].size(), 3U);
}

TEST_F(SelectToolsTests, RefusesARectangleThatIsNotInThePicture)
{
    EXPECT_THAT(error_("select.rectangle", R"({"x0": 1, "y0": 1, "x1": 500, "y1": 20, "picture":
        {"width": 400, "height": 300}})"),
                HasSubstr("outside of the picture"));
    EXPECT_THAT(error_("select.rectangle", R"({"x0": 5, "y0": 1, "x1": 5, "y1": 20})"), HasSubstr("has no size"));
    EXPECT_EQ(history_().position(), 0U);
}

TEST_F(SelectToolsTests, DeletesTheSelectedFacesAndOneUndoBringsThemBack)
{
    call_("select.primitive", R"({"face": 0, "id": )" + id_(*b_) + "}");
    const Json::Value deleted = callAsStep_("select.delete");
    EXPECT_EQ(deleted["deletedFaces"].asInt(), 2);
    EXPECT_EQ(b_->mesh()->triangles.size(), 10U);
    call_("history.undo");
    EXPECT_EQ(b_->mesh()->triangles.size(), 12U);
}

TEST_F(SelectToolsTests, DeletesTheSelectedObjectsWhereNoFacesAre)
{
    a_->setSelected(true);
    EXPECT_EQ(callAsStep_("select.delete")["deletedObjects"].asInt(), 1);
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("B", "C"));
}

TEST_F(SelectToolsTests, SaysHowToSelectWhereNothingIsToBeDeleted)
{
    EXPECT_THAT(error_("select.delete"), HasSubstr("select.objects"));
    EXPECT_THAT(error_("select.delete", R"({"what": "faces"})"), HasSubstr("select.primitive"));
}

TEST_F(SelectToolsTests, TellsAndClearsWhatIsSelected)
{
    a_->setSelected(true);
    call_("select.primitive", R"({"face": 0, "id": )" + id_(*b_) + "}");
    const Json::Value selected = call_("select.get");
    EXPECT_THAT(namesOf_(selected["objects"]), ElementsAre("A", "B"));
    EXPECT_EQ(selected["selected"]["faces"].asInt(), 2);
    const Json::Value cleared = callAsStep_("select.clear");
    EXPECT_EQ(cleared["faces"].asInt() + cleared["objects"].asInt(), 0);
}

} // namespace VX
