#include "AgentFixture.h"

#include <VXViewer/FileOpening.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/SceneFiles.h>

#include <gtest/gtest.h>

#include <atomic>
#include <future>

namespace VX
{

using testing::ElementsAre;
using testing::HasSubstr;

class FileToolsTests : public VX::Test::AgentFixture
{
protected:
    [[nodiscard]] std::string withPath_(const std::filesystem::path& path, const std::string& more = {}) const
    {
        return R"({"path": ")" + path.string() + "\"" + (more.empty() ? "" : ", " + more) + "}";
    }

    /// Files ".box" hold a box, and take until `letOn_`.
    void openSlowly_()
    {
        viewer_.setFileOpener(".box",
                              [let = let_](const std::filesystem::path& path,
                                           const ProgressCallback& progress) -> tl::expected<LoadedObjects, std::string>
                              {
                                  bool goOn = true;
                                  while (goOn &&
                                         let.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
                                      goOn = progress(0.5F);
                                  if (!goOn)
                                      return tl::unexpected(operationCanceledText());
                                  LoadedObjects loaded;
                                  loaded.objects.push_back(VX::Test::makeBox(path.stem().string()));
                                  return loaded;
                              });
    }

    std::promise<void> letOn_;
    std::shared_future<void> let_ = letOn_.get_future().share();
};

TEST_F(FileToolsTests, LoadsAFileAndTellsWhatCameOfIt)
{
    const Json::Value loaded =
        callAsStep_("scene.loadFile", withPath_(folder_.write("part.stl", VX::Test::triangleStl())));
    ASSERT_EQ(loaded["objects"].size(), 1U);
    EXPECT_EQ(loaded["objects"][0]["triangles"].asInt(), 1);
    EXPECT_EQ(loaded["objects"][0]["id"].asUInt64(), viewer_.scene().children().back()->id());
}

TEST_F(FileToolsTests, SaysWhatIsWrongWithADamagedFileInPlaceOfAMessageToTheUser)
{
    int messages = 0;
    viewer_.fileOpening().setMessageHandler([&](NotificationType, const std::string&) { ++messages; });
    EXPECT_THAT(error_("scene.loadFile", withPath_(folder_.write("part.ply", "ply\nnothing"))),
                HasSubstr("\"part.ply\""));
    EXPECT_EQ(messages, 0);
}

TEST_F(FileToolsTests, NamesTheKindsOfFilesThatCanBeLoaded)
{
    EXPECT_THAT(error_("scene.loadFile", withPath_(folder_.write("part.xyzzy", ""))), HasSubstr(".stl"));
}

TEST_F(FileToolsTests, LoadsNoFolder)
{
    EXPECT_EQ(error_("scene.loadFile", withPath_(folder_.path())),
              "\"" + folder_.path().string() + "\" is a folder. Name a file in it.");
}

TEST_F(FileToolsTests, LoadsNothingFromElsewhere)
{
    const VX::Test::TempDir elsewhere;
    EXPECT_THAT(error_("scene.loadFile", withPath_(elsewhere.write("part.stl", VX::Test::triangleStl()))),
                HasSubstr("in no folder that agents may use"));
    EXPECT_EQ(viewer_.scene().children().size(), 3U);
}

TEST_F(FileToolsTests, ReportsProgressWhileAFileLoads)
{
    openSlowly_();
    std::atomic<double> reported = 0;
    const Running running = begin_("scene.loadFile", withPath_(folder_.write("part.box", "")),
                                   [&](double value, double total, const std::string&) { reported = value / total; });
    EXPECT_TRUE(driver_.waitFor([&] { return reported == 0.5; }));
    letOn_.set_value();
    EXPECT_FALSE(finish_(running).isError);
}

TEST_F(FileToolsTests, StopsLoadingWhereTheCallIsCanceled)
{
    openSlowly_();
    const Running running = begin_("scene.loadFile", withPath_(folder_.write("part.box", "")));
    EXPECT_TRUE(driver_.waitFor([&] { return ProgressBar::isOrdered(); }));
    running.call->cancel();
    EXPECT_TRUE(driver_.waitFor([&] { return !ProgressBar::isOrdered(); }));
    EXPECT_EQ(viewer_.scene().children().size(), 3U);
}

TEST_F(FileToolsTests, LoadsInTheBackgroundWhereNobodyWaits)
{
    openSlowly_();
    const Json::Value begun = call_("scene.loadFile", withPath_(folder_.write("part.box", ""), R"("wait": false)"));
    const std::string job = R"({"job": )" + begun["job"].asString() + "}";
    EXPECT_TRUE(driver_.waitFor([&] { return call_("jobs.status", job)["state"] == "running"; }));
    EXPECT_EQ(call_("jobs.list", R"({"limit": 1})")["total"].asInt(), 1);
    letOn_.set_value();
    EXPECT_TRUE(driver_.waitFor([&] { return !ProgressBar::isOrdered(); }));
    const Json::Value ended = call_("jobs.status", job);
    EXPECT_EQ(ended["state"].asString(), "done");
    EXPECT_THAT(namesOf_(ended["result"]["objects"]), ElementsAre("part"));
}

TEST_F(FileToolsTests, CancelsAJob)
{
    openSlowly_();
    const Json::Value begun = call_("scene.loadFile", withPath_(folder_.write("part.box", ""), R"("wait": false)"));
    EXPECT_EQ(call_("jobs.cancel", R"({"job": )" + begun["job"].asString() + "}")["state"].asString(), "canceled");
    EXPECT_FALSE(ProgressBar::isOrdered());
}

TEST_F(FileToolsTests, ListsJobsInParts)
{
    for (const char* name : {"first.stl", "second.stl"})
        call_("scene.loadFile", withPath_(folder_.write(name, VX::Test::triangleStl())));
    const Json::Value first = call_("jobs.list", R"({"limit": 1})");
    ASSERT_EQ(first["jobs"].size(), 1U);
    const Json::Value rest = call_("jobs.list", R"({"cursor": ")" + first["nextCursor"].asString() + "\"}");
    ASSERT_EQ(rest["jobs"].size(), 1U);
    EXPECT_NE(rest["jobs"][0]["job"], first["jobs"][0]["job"]);
}

TEST_F(FileToolsTests, TellsThatThereIsNoSuchJob)
{
    EXPECT_THAT(error_("jobs.status", R"({"job": 987654})"), HasSubstr("jobs.list"));
}

TEST_F(FileToolsTests, SavesTheSceneWhichHasNoUnsavedChangesThen)
{
    call_("scene.remove", R"({"ids": [)" + id_(*a_) + "]}");
    EXPECT_FALSE(history_().isSaved());
    const Json::Value saved = call_("scene.saveFile", withPath_(folder_.path() / "scene.vxu"));
    EXPECT_EQ(saved["bytes"].asUInt64(), std::filesystem::file_size(folder_.path() / "scene.vxu"));
    EXPECT_TRUE(history_().isSaved());
    EXPECT_EQ(viewer_.sceneName(), "scene.vxu");
}

TEST_F(FileToolsTests, SavesChosenObjectsAlone)
{
    call_("scene.saveFile", withPath_(folder_.path() / "one.stl", R"("ids": [)" + id_(*b_) + "]"));
    const Json::Value loaded = call_("scene.loadFile", withPath_(folder_.path() / "one.stl"));
    EXPECT_EQ(loaded["objects"][0]["triangles"].asInt(), 12);
    EXPECT_EQ(loaded["objects"][0]["box"]["min"][0].asDouble(), 3);
}

TEST_F(FileToolsTests, SavesAHiddenObjectThatIsNamed)
{
    b_->setVisible(false);
    const Json::Value saved =
        call_("scene.saveFile", withPath_(folder_.path() / "one.stl", R"("ids": [)" + id_(*b_) + "]"));
    EXPECT_TRUE(saved["warnings"].empty());
    EXPECT_EQ(call_("scene.loadFile", withPath_(folder_.path() / "one.stl"))["objects"][0]["triangles"].asInt(), 12);
    EXPECT_FALSE(b_->isVisible());
}

TEST_F(FileToolsTests, SavesOnceWhatIsNamedTwice)
{
    a_->addChild(b_);
    const std::string ids = R"("ids": [)" + id_(*b_) + ", " + id_(*a_) + ", " + id_(*b_) + "]";
    call_("scene.saveFile", withPath_(folder_.path() / "two.stl", ids));
    EXPECT_EQ(call_("scene.loadFile", withPath_(folder_.path() / "two.stl"))["objects"][0]["triangles"].asInt(), 24);
}

TEST_F(FileToolsTests, SavesWhatIsNamedBelowAHiddenObjectThatIsNot)
{
    a_->addChild(b_);
    b_->addChild(c_);
    a_->setTransform(Transform(Eigen::Translation3d(100, 0, 0)));
    b_->setVisible(false);
    const Box3d place = c_->worldBox();
    const std::string ids = R"("ids": [)" + id_(*a_) + ", " + id_(*c_) + "]";
    const Json::Value saved = call_("scene.saveFile", withPath_(folder_.path() / "two.obj", ids));
    EXPECT_THAT(saved["warnings"][0].asString(), HasSubstr("1 hidden object was left out"));
    call_("scene.loadFile", withPath_(folder_.path() / "two.obj"));
    const Object& both = *viewer_.scene().children().back();
    ASSERT_THAT(namesBelow_(both), ElementsAre("A", "C"));
    EXPECT_TRUE(both.children().back()->worldBox().isApprox(place, 1e-6));
}

TEST_F(FileToolsTests, SaysHowManyHiddenObjectsAreNotInTheFile)
{
    b_->setVisible(false);
    const Json::Value saved = call_("scene.saveFile", withPath_(folder_.path() / "scene.obj"));
    ASSERT_EQ(saved["warnings"].size(), 1U);
    EXPECT_THAT(saved["warnings"][0].asString(), HasSubstr("1 hidden object was left out"));
    EXPECT_TRUE(call_("scene.saveFile", withPath_(folder_.path() / "scene.vxu"))["warnings"].empty());
}

TEST_F(FileToolsTests, CancelsAlsoWhileTheUserIsAskedToSave)
{
    openSlowly_();
    call_("scene.rename", R"({"name": "X", "id": )" + id_(*a_) + "}");
    const Json::Value begun = call_("scene.loadFile", withPath_(folder_.write("slow.box", ""), R"("wait": false)"));
    ASSERT_FALSE(viewer_.getMenuPlugin()->sceneFiles().mayClose());
    EXPECT_EQ(call_("jobs.cancel", R"({"job": )" + begun["job"].asString() + "}")["state"].asString(), "canceled");
}

TEST_F(FileToolsTests, NeverReplacesAFileUnlessTold)
{
    const std::filesystem::path path = folder_.write("part.stl", "mine");
    EXPECT_THAT(error_("scene.saveFile", withPath_(path)), HasSubstr("\"overwrite\": true"));
    EXPECT_EQ(VX::Test::readFile(path), "mine");
    call_("scene.saveFile", withPath_(path, R"("overwrite": true)"));
    EXPECT_NE(VX::Test::readFile(path), "mine");
}

TEST_F(FileToolsTests, KeepsAFileThatCameWhileTheSavingWaited)
{
    // More than run at once.
    constexpr std::size_t others = 16;
    for (std::size_t i = 0; i < others; ++i)
        ProgressBar::orderWriting("Other",
                                  [let = let_](const ProgressCallback&) { return let.wait(), ProgressBar::Finish(); });
    const Running running = begin_("scene.saveFile", withPath_(folder_.path() / "part.stl"));
    EXPECT_TRUE(driver_.waitFor([&] { return ProgressBar::tasks().size() == others + 1; }));
    const std::filesystem::path path = folder_.write("part.stl", "mine");
    letOn_.set_value();
    const Mcp::ToolResult result = finish_(running);
    ASSERT_TRUE(result.isError);
    EXPECT_THAT(result.content.front().text, HasSubstr("\"overwrite\": true"));
    EXPECT_EQ(VX::Test::readFile(path), "mine");
}

TEST_F(FileToolsTests, ASceneSavedToAFileThatCannotKeepAllOfItHasUnsavedChanges)
{
    call_("scene.remove", R"({"ids": [)" + id_(*a_) + "]}");
    call_("scene.saveFile", withPath_(folder_.path() / "scene.obj"));
    EXPECT_FALSE(history_().isSaved());
    EXPECT_TRUE(viewer_.sceneFile().empty());
    EXPECT_THAT(error_("viewer.shutdown"), HasSubstr("scene.saveFile"));
}

TEST_F(FileToolsTests, NamesTheKindsOfFilesThatCanBeWritten)
{
    EXPECT_THAT(error_("scene.saveFile", withPath_(folder_.path() / "part.step")), HasSubstr(".vxu"));
}

TEST_F(FileToolsTests, SavesNothingOfAnEmptyScene)
{
    viewer_.scene().setChildren({});
    EXPECT_THAT(error_("scene.saveFile", withPath_(folder_.path() / "part.stl")), HasSubstr("The scene is empty"));
}

} // namespace VX
