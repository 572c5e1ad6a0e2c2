#include "AgentFixture.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/NotificationType.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/SceneFiles.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;

class ViewToolsTests : public VX::Test::AgentFixture
{
};

TEST_F(ViewToolsTests, PlacesTheCameraWhereItIsToldTo)
{
    const Json::Value set =
        call_("camera.set", R"({"eye": [0, -50, 10], "target": [0, 0, 10], "projection": "orthographic"})");
    const Camera& camera = viewer_.view().camera();
    EXPECT_TRUE(camera.eye().isApprox(Vector3d(0, -50, 10)));
    EXPECT_TRUE(camera.up().isApprox(Vector3d::UnitZ()));
    EXPECT_EQ(camera.projection(), Projection::Orthographic);
    EXPECT_EQ(set["camera"], call_("camera.get")["camera"]);
}

TEST_F(ViewToolsTests, TurnsToAStandardDirectionAndShowsAll)
{
    call_("camera.set", R"({"view": "top"})");
    const Camera& camera = viewer_.view().camera();
    EXPECT_TRUE(camera.direction().isApprox(Vector3d(0, 0, -1)));
    const PixelRect& area = viewer_.view().area();
    const auto pixel = camera.project({11, 2, 2}, {area.width, area.height});
    ASSERT_TRUE(pixel);
    EXPECT_TRUE(pixel->x() > 0 && pixel->x() < area.width);
}

TEST_F(ViewToolsTests, StaysWhereItIsPlacedAlsoWhereAStandardDirectionIsNamed)
{
    call_("camera.set", R"({"view": "top", "eye": [0, -70, 10], "target": [0, 0, 10]})");
    EXPECT_TRUE(viewer_.view().camera().eye().isApprox(Vector3d(0, -70, 10)));
}

TEST_F(ViewToolsTests, KeepsAStandardDirectionWhereTheTargetOrTheEyeAloneIsNamed)
{
    call_("camera.set", R"({"view": "bottom", "target": [50, 60, 70]})");
    const Camera& camera = viewer_.view().camera();
    EXPECT_TRUE(camera.direction().isApprox(Vector3d::UnitZ()));
    EXPECT_TRUE(camera.up().isApprox(-Vector3d::UnitY()));
    EXPECT_TRUE(camera.target().isApprox(Vector3d(50, 60, 70)));
    const double distance = camera.distance();
    call_("camera.set", R"({"view": "front", "eye": [1, 2, 3]})");
    EXPECT_TRUE(camera.eye().isApprox(Vector3d(1, 2, 3)));
    EXPECT_TRUE(camera.target().isApprox(Vector3d(1, 2 + distance, 3)));
}

TEST_F(ViewToolsTests, ComesBackFromFarAway)
{
    call_("camera.set", R"({"view": "front"})");
    const Vector3d target = viewer_.view().camera().target();
    const double distance = viewer_.view().camera().distance();
    call_("camera.set", R"({"eye": [7e11, -9.9e11, 3e11], "target": [7e11, -9e11, 3e11]})");
    call_("camera.fit");
    EXPECT_NEAR((viewer_.view().camera().target() - target).norm(), 0, 1e-9);
    EXPECT_NEAR(viewer_.view().camera().distance(), distance, 1e-9);
    EXPECT_THAT(error_("camera.set", R"({"eye": [0, -1e12, 0]})"), HasSubstr("1e12"));
}

TEST_F(ViewToolsTests, LooksStraightDownWithoutBeingToldWhatIsUp)
{
    call_("camera.set", R"({"eye": [0, 0, 50], "target": [0, 0, 0]})");
    EXPECT_TRUE(viewer_.view().camera().up().isApprox(Vector3d::UnitY()));
}

TEST_F(ViewToolsTests, RefusesAnUpThatIsTheDirectionOfLooking)
{
    EXPECT_THAT(error_("camera.set", R"({"eye": [0, 0, 50], "target": [0, 0, 0], "up": [0, 0, 1]})"),
                HasSubstr("\"up\" must point elsewhere"));
}

TEST_F(ViewToolsTests, MovesNothingWhereThereIsNothingToDoOrToSee)
{
    EXPECT_THAT(error_("camera.set"), HasSubstr("say how to look"));
    EXPECT_THAT(error_("camera.set", R"({"eye": [1, 1, 1], "up": [0, 0, 0]})"), HasSubstr("must not be 0, 0, 0"));
    a_->setVisible(false);
    EXPECT_THAT(error_("camera.fit", R"({"ids": [)" + id_(*a_) + "]}"), HasSubstr("None of these objects shows"));
    const double distance = viewer_.view().camera().distance();
    call_("camera.fit", R"({"ids": [)" + id_(*b_) + "]}");
    const double alone = viewer_.view().camera().distance();
    call_("camera.fit", fmt::format(R"({{"ids": [{}, {}]}})", a_->id(), b_->id()));
    EXPECT_NE(alone, distance);
    EXPECT_DOUBLE_EQ(viewer_.view().camera().distance(), alone);
}

TEST_F(ViewToolsTests, ShowsChosenObjectsLarge)
{
    call_("camera.fit");
    const double all = viewer_.view().camera().distance();
    call_("camera.fit", R"({"ids": [)" + id_(*a_) + "]}");
    EXPECT_LT(viewer_.view().camera().distance(), all / 2);
}

TEST_F(ViewToolsTests, UndoesAndRedoesSteps)
{
    call_("scene.rename", R"({"id": )" + id_(*a_) + R"(, "name": "X"})");
    call_("scene.remove", R"({"ids": [)" + id_(*b_) + "]}");
    const Json::Value undone = call_("history.undo", R"({"steps": 5})");
    EXPECT_EQ(undone["undone"].size(), 2U);
    EXPECT_EQ(undone["undone"][0].asString(), "Remove Objects");
    EXPECT_FALSE(undone["canUndo"].asBool());
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("A", "B", "C"));
    EXPECT_EQ(call_("history.redo")["redone"].size(), 1U);
    EXPECT_EQ(a_->name(), "X");
    EXPECT_THAT(error_("history.redo", R"({"steps": 0})"), HasSubstr("nothing to redo"));
}

TEST_F(ViewToolsTests, ListsTheStepsTheLatestFirst)
{
    call_("scene.rename", R"({"id": )" + id_(*a_) + R"(, "name": "X"})");
    call_("scene.remove", R"({"ids": [)" + id_(*b_) + "]}");
    call_("history.undo");
    const Json::Value list = call_("history.list");
    EXPECT_THAT(namesOf_(list["steps"]), ElementsAre("Remove Objects", "Rename"));
    EXPECT_FALSE(list["steps"][0]["done"].asBool());
    EXPECT_EQ(list["position"].asInt(), 1);
}

TEST_F(ViewToolsTests, NothingIsUnsavedInAnEmptyScene)
{
    call_("scene.remove", fmt::format(R"({{"ids": [{}, {}, {}]}})", a_->id(), b_->id(), c_->id()));
    EXPECT_FALSE(call_("viewer.getStatus")["scene"]["unsavedChanges"].asBool());
    EXPECT_FALSE(call_("history.list")["unsavedChanges"].asBool());
}

TEST_F(ViewToolsTests, NamesTheObjectsOfAStep)
{
    call_("scene.setVisibility", fmt::format(R"({{"ids": [{}, {}], "visible": false}})", a_->id(), c_->id()));
    call_("scene.remove", R"({"ids": [)" + id_(*b_) + "]}");
    const Json::Value steps = call_("history.list")["steps"];
    EXPECT_THAT(namesOf_(steps[0]["objects"]), ElementsAre("B"));
    EXPECT_EQ(steps[0]["objects"][0]["id"].asUInt64(), b_->id());
    EXPECT_EQ(steps[1]["objectCount"].asInt(), 2);
    EXPECT_THAT(namesOf_(steps[1]["objects"]), ElementsAre("A", "C"));
}

TEST_F(ViewToolsTests, NamesTheFirstObjectsOfAStepAndCountsAll)
{
    std::string ids;
    for (int i = 0; i < 7; ++i)
        ids += (i > 0 ? ", " : "") + id_(*addBox_("More", {0, 0, 0}, {1, 1, 1}));
    call_("scene.remove", R"({"ids": [)" + ids + "]}");
    const Json::Value step = call_("history.list")["steps"][0];
    EXPECT_EQ(step["objects"].size(), 5U);
    EXPECT_EQ(step["objectCount"].asInt(), 7);
}

TEST_F(ViewToolsTests, SaysSoWhereThereIsNothingToUndo)
{
    EXPECT_THAT(error_("history.undo"), HasSubstr("nothing to undo"));
}

TEST_F(ViewToolsTests, ListsRibbonItemsWithTheReasonWhereOneIsNotAvailable)
{
    const Json::Value items = call_("ribbon.items", R"({"search": "duplicate"})");
    ASSERT_EQ(items["items"].size(), 1U);
    EXPECT_FALSE(items["items"][0]["available"].asBool());
    EXPECT_EQ(items["items"][0]["reason"].asString(), "No object is selected.");
}

TEST_F(ViewToolsTests, PressesARibbonItem)
{
    a_->setSelected(true);
    callAsStep_("ribbon.press", R"({"name": "Duplicate"})");
    EXPECT_THAT(namesBelow_(viewer_.scene()), ElementsAre("A", "A 2", "B", "C"));
}

TEST_F(ViewToolsTests, SaysWhyARibbonItemCannotBePressed)
{
    EXPECT_EQ(error_("ribbon.press", R"({"name": "Duplicate"})"),
              "\"Duplicate\" cannot be pressed now: No object is selected.");
    EXPECT_THAT(error_("ribbon.press", R"({"name": "Nothing"})"), HasSubstr("ribbon.items"));
}

TEST_F(ViewToolsTests, PressesTheItemThatTheUserReadsSo)
{
    a_->setSelected(true);
    EXPECT_EQ(call_("ribbon.press", R"({"name": "deselect"})")["name"].asString(), "Clear Selections");
    EXPECT_FALSE(a_->isSelected());
    EXPECT_THAT(error_("ribbon.press", R"({"name": "open"})"), HasSubstr("\"scene.loadFile\""));
}

TEST_F(ViewToolsTests, PressesNoNameThatHasNoItem)
{
    RibbonSchemaHolder::schema().items["Only a Name"];
    EXPECT_THAT(error_("ribbon.press", R"({"name": "Only a Name"})"), HasSubstr("There is no ribbon item"));
    RibbonSchemaHolder::schema().items.erase("Only a Name");
}

TEST_F(ViewToolsTests, NoViewTurnsAnyMoreBehindTheAnswer)
{
    call_("ribbon.press", R"({"name": "View Front"})");
    EXPECT_TRUE(viewer_.view().camera().direction().isApprox(Vector3d::UnitY()));
}

TEST_F(ViewToolsTests, NamesTheToolInPlaceOfAnItemThatAsksTheUser)
{
    a_->setSelected(true);
    EXPECT_EQ(error_("ribbon.press", R"({"name": "Open files"})"),
              "\"Open files\" asks the user. Call \"scene.loadFile\" instead.");
    EXPECT_THAT(error_("ribbon.press", R"({"name": "Save"})"), HasSubstr("scene.saveFile"));
    EXPECT_THAT(error_("ribbon.press", R"({"name": "Save Scene As"})"), HasSubstr("scene.saveFile"));
    EXPECT_THAT(error_("ribbon.press", R"({"name": "Save selected"})"), HasSubstr("\"ids\""));
    EXPECT_THAT(error_("ribbon.press", R"({"name": "Rename"})"), HasSubstr("scene.rename"));
    EXPECT_FALSE(call_("viewer.getStatus").isMember("waitingWindow"));
}

TEST_F(ViewToolsTests, SavesToTheSceneFileWithoutAsking)
{
    call_("scene.saveFile", R"({"path": ")" + (folder_.path() / "scene.vxu").string() + "\"}");
    call_("scene.remove", R"({"ids": [)" + id_(*b_) + "]}");
    call_("ribbon.press", R"({"name": "Save"})");
    EXPECT_TRUE(driver_.waitFor([&] { return history_().isSaved(); }));
}

TEST_F(ViewToolsTests, PressesNothingWhileTheUserChoosesAFile)
{
    folder_.write("secret.stl", "");
    viewer_.getMenuPlugin()->chooseFilesToOpen();
    driver_.settle();
    EXPECT_EQ(call_("viewer.getStatus")["waitingWindow"].asString(), "File Dialog");
    EXPECT_THAT(error_("ribbon.press", R"({"name": "Select all"})"), HasSubstr("\"File Dialog\" waits"));
    driver_.type(folder_.path().string());
    driver_.key(GLFW_KEY_ENTER);
    ASSERT_TRUE(driver_.shows("secret.stl"));
    for (const Json::Value& widget : call_("ui.tree", R"({"window": "File Dialog"})")["widgets"])
        EXPECT_THAT(widget["kind"].asString(), AnyOf("window", "button"));
    EXPECT_THAT(error_("viewer.captureScreenshot", R"({"area": "window"})"), HasSubstr("choosing a file"));
    driver_.press("Cancel", "File Dialog");
    EXPECT_FALSE(call_("viewer.getStatus").isMember("waitingWindow"));
}

TEST_F(ViewToolsTests, TellsThatAMessageWaitsWhichKeepsNobodyFromPressing)
{
    viewer_.getMenuPlugin()->showModalMessage("Look out.", NotificationType::Warning);
    driver_.settle();
    EXPECT_EQ(call_("viewer.getStatus")["waitingWindow"].asString(), "Warning Modal");
    call_("ribbon.press", R"({"name": "Select all"})");
}

TEST_F(ViewToolsTests, ClosesAWindowThatItOpened)
{
    call_("ribbon.press", R"({"name": "Shortcuts"})");
    driver_.settle();
    EXPECT_EQ(call_("viewer.getStatus")["waitingWindow"].asString(), "Shortcuts");
    call_("ribbon.press", R"({"name": "Shortcuts"})");
    driver_.settle();
    EXPECT_FALSE(driver_.shows("Filter", "Shortcuts"));
}

TEST_F(ViewToolsTests, NamesTheWindowsWhereOneIsUnknown)
{
    driver_.settle();
    EXPECT_THAT(error_("ui.tree", R"({"window": "Nowhere"})"), HasSubstr("\"Ribbon Header\""));
}

TEST_F(ViewToolsTests, TellsWhatTheInterfaceShows)
{
    driver_.settle();
    const Json::Value header = call_("ui.tree", R"({"window": "Ribbon Header"})");
    ASSERT_FALSE(header["widgets"].empty());
    bool hasTab = false;
    for (const Json::Value& widget : header["widgets"])
        hasTab |= widget["kind"].asString() == "tab" && widget["box"].size() == 4 && widget["box"][3].asInt() > 0;
    EXPECT_TRUE(hasTab);
}

TEST_F(ViewToolsTests, TellsTheStateOfTheViewer)
{
    const Json::Value status = call_("viewer.getStatus");
    EXPECT_EQ(status["scene"]["objects"].asInt(), 3);
    EXPECT_EQ(status["scene"]["triangles"].asInt(), 36);
    EXPECT_FALSE(status["window"]["onScreen"].asBool());
    EXPECT_EQ(status["files"]["folders"][0].asString(), std::filesystem::canonical(folder_.path()).string());
}

TEST_F(ViewToolsTests, ClosesTheViewerBehindTheAnswer)
{
    EXPECT_TRUE(call_("viewer.shutdown")["closing"].asBool());
    EXPECT_TRUE(driver_.waitFor([&] { return viewer_.isClosing(); }));
}

TEST_F(ViewToolsTests, ClosesAnUnsavedSceneOnlyWhereToldTo)
{
    call_("scene.remove", R"({"ids": [)" + id_(*a_) + "]}");
    EXPECT_THAT(error_("viewer.shutdown"), HasSubstr("scene.saveFile"));
    EXPECT_FALSE(viewer_.isClosing());
    call_("viewer.shutdown", R"({"discardChanges": true})");
    EXPECT_TRUE(driver_.waitFor([&] { return viewer_.isClosing(); }));
}

TEST_F(ViewToolsTests, ChangesNothingWhileTheUserIsInTheMiddleOfAnEdit)
{
    const HistoryScope drag(history_(), "Drag");
    EXPECT_THAT(error_("scene.rename", R"({"id": )" + id_(*a_) + R"(, "name": "X"})"), HasSubstr("middle of an edit"));
    EXPECT_EQ(a_->name(), "A");
    EXPECT_EQ(call_("scene.list")["total"].asInt(), 3);
}

TEST_F(ViewToolsTests, ChangesNothingWhileTheUserIsAskedToSaveBeforeTheEnd)
{
    call_("scene.rename", R"({"id": )" + id_(*a_) + R"(, "name": "X"})");
    ASSERT_FALSE(viewer_.getMenuPlugin()->sceneFiles().mayClose());
    driver_.settle();
    EXPECT_THAT(error_("scene.remove", R"({"ids": [)" + id_(*a_) + "]}"), HasSubstr("before it closes"));
    EXPECT_THAT(error_("viewer.shutdown", R"({"discardChanges": true})"), HasSubstr("before it closes"));
    EXPECT_EQ(call_("scene.list")["total"].asInt(), 3);
    driver_.press("Cancel");
    call_("scene.remove", R"({"ids": [)" + id_(*a_) + "]}");
}

TEST_F(ViewToolsTests, ACallThatIsCanceledBeforeItBeginsSaysSo)
{
    const Running running = begin_("scene.remove", R"({"ids": [)" + id_(*a_) + "]}");
    running.call->cancel();
    const Mcp::ToolResult result = finish_(running);
    ASSERT_TRUE(result.isError);
    EXPECT_EQ(result.content.front().text, "Operation was canceled");
    EXPECT_EQ(viewer_.scene().children().size(), 3U);
}

TEST_F(ViewToolsTests, EveryToolTellsWhatItIsForAndWhatItTakesAndGives)
{
    for (const Mcp::Tool& tool : tools_)
    {
        EXPECT_FALSE(tool.title.empty()) << tool.name;
        EXPECT_GT(tool.description.size(), 30U) << tool.name;
        EXPECT_EQ(tool.inputSchema["type"].asString(), "object") << tool.name;
        EXPECT_FALSE(tool.inputSchema["additionalProperties"].asBool()) << tool.name;
        EXPECT_EQ(tool.outputSchema["type"].asString(), "object") << tool.name;
        for (const std::string& name : tool.inputSchema["properties"].getMemberNames())
            EXPECT_FALSE(tool.inputSchema["properties"][name]["description"].asString().empty()) << tool.name << name;
    }
}

} // namespace VX
