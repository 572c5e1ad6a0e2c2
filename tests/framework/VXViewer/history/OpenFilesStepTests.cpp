#include "tests/framework/VXViewer/UiTestScene.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/FileOpening.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/Viewer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>

namespace VX
{

using testing::ElementsAre;
using testing::IsEmpty;

class OpenFilesStepTests : public testing::Test
{
protected:
    OpenFilesStepTests()
    {
        viewer_.setFileOpener(".box",
                              [](const std::filesystem::path& path, const ProgressCallback&)
                              {
                                  LoadedObjects loaded;
                                  loaded.objects.push_back(VX::Test::makeBox(path.stem().string()));
                                  return loaded;
                              });
    }

    void open_(const std::vector<std::filesystem::path>& paths)
    {
        viewer_.openFiles(paths);
        ASSERT_TRUE(driver_.waitFor([&] { return viewer_.fileOpening().isIdle(); }));
    }

    [[nodiscard]] std::vector<std::string> names_() const
    {
        std::vector<std::string> names;
        for (const auto& child : viewer_.scene().children())
            names.push_back(child->name());
        return names;
    }

    VX::Test::ViewerSession session_{nullptr};
    Viewer& viewer_ = session_.viewer();
    HistoryStore& store_ = *viewer_.getGlobalHistoryStore();
    VX::Test::UiDriver driver_{session_};
};

TEST_F(OpenFilesStepTests, FilesOpenedTogetherAreOneStep)
{
    open_({"a.box", "b.box", "c.box"});
    EXPECT_EQ(store_.actions().size(), 1U);
    EXPECT_EQ(store_.lastActionName(), "Open Files");
    store_.undo();
    EXPECT_THAT(names_(), IsEmpty());
    store_.redo();
    EXPECT_THAT(names_(), ElementsAre("a", "b", "c"));
}

TEST_F(OpenFilesStepTests, FilesOpenedOneAfterAnotherAreStepsOfTheirOwn)
{
    open_({"a.box"});
    open_({"b.box"});
    store_.undo();
    EXPECT_THAT(names_(), ElementsAre("a"));
}

TEST_F(OpenFilesStepTests, AnEditBetweenTwoFilesKeepsItsPlaceInTheHistory)
{
    std::promise<void> edited;
    viewer_.setFileOpener(".late",
                          [wait = edited.get_future().share()](const std::filesystem::path&, const ProgressCallback&)
                          {
                              wait.wait();
                              LoadedObjects loaded;
                              loaded.objects.push_back(VX::Test::makeBox("late"));
                              return loaded;
                          });
    viewer_.openFiles({"a.box", "b.late"});
    const bool arrived = driver_.waitFor([&] { return !viewer_.scene().children().empty(); });
    if (arrived)
    {
        SceneEdit edit(store_, "Rename");
        edit.touch(viewer_.scene().children().front());
        viewer_.scene().children().front()->setName("renamed");
    }
    edited.set_value();
    ASSERT_TRUE(driver_.waitFor([&] { return viewer_.fileOpening().isIdle(); }));
    ASSERT_TRUE(arrived);
    EXPECT_THAT(names_(), ElementsAre("renamed", "late"));
    store_.undo();
    EXPECT_THAT(names_(), ElementsAre("renamed"));
    store_.undo();
    EXPECT_THAT(names_(), ElementsAre("a"));
    store_.undo();
    EXPECT_THAT(names_(), IsEmpty());
    store_.jumpTo(3);
    EXPECT_THAT(names_(), ElementsAre("renamed", "late"));
}

TEST_F(OpenFilesStepTests, WhatWasJustReadNeedsNoSaving)
{
    open_({"a.box"});
    EXPECT_TRUE(store_.isSaved());
}

TEST_F(OpenFilesStepTests, AFileThatIsAddedToAChangedSceneLeavesItUnsaved)
{
    open_({"a.box"});
    {
        SceneEdit edit(store_, "Rename");
        edit.touch(viewer_.scene().children().front());
        viewer_.scene().children().front()->setName("renamed");
    }
    open_({"b.box"});
    EXPECT_FALSE(store_.isSaved());
}

TEST_F(OpenFilesStepTests, AnUndoneStepCountsTheGeometryThatItHolds)
{
    open_({"a.box"});
    const std::size_t done = store_.heapBytes();
    store_.undo();
    EXPECT_GT(store_.heapBytes(), done);
}

TEST_F(OpenFilesStepTests, AFileThatCannotBeOpenedIsNoStep)
{
    viewer_.fileOpening().setMessageHandler([](NotificationType, const std::string&) {});
    open_({"missing.stl"});
    EXPECT_TRUE(store_.actions().empty());
}

TEST_F(OpenFilesStepTests, UndoTakesTheNameAndTheFileOfTheSceneAwayAndRedoGivesThemBack)
{
    open_({"a.box"});
    store_.undo();
    EXPECT_EQ(viewer_.sceneName(), "");
    EXPECT_EQ(viewer_.sceneFile(), "");
    store_.redo();
    EXPECT_EQ(viewer_.sceneName(), "a.box");
    EXPECT_EQ(viewer_.sceneFile(), "a.box");
}

TEST_F(OpenFilesStepTests, UndoOfAFurtherFileLeavesTheFileThatTheSceneWasSavedTo)
{
    open_({"a.box"});
    open_({"b.box"});
    viewer_.setSceneFile("saved.vxu");
    store_.undo();
    EXPECT_EQ(viewer_.sceneFile(), "saved.vxu");
}

TEST_F(OpenFilesStepTests, RedoGivesTheFileBackThatTheSceneWasSavedTo)
{
    open_({"a.box"});
    viewer_.setSceneFile("saved.vxu");
    store_.undo();
    EXPECT_EQ(viewer_.sceneFile(), "");
    store_.redo();
    EXPECT_EQ(viewer_.sceneFile(), "saved.vxu");
}

TEST_F(OpenFilesStepTests, RedoSelectsNothing)
{
    open_({"a.box"});
    open_({"b.box"});
    viewer_.scene().children().back()->setSelected(true);
    store_.undo();
    viewer_.scene().children().front()->setSelected(true);
    store_.redo();
    EXPECT_FALSE(viewer_.scene().children().back()->isSelected());
}

} // namespace VX
