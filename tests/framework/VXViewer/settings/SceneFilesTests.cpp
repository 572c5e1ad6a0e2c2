#include "SceneFilesFixture.h"

#include <VXViewer/FileDialogSignals.h>
#include <VXViewer/OffscreenWindow.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/RecentFiles.h>

namespace VX
{

using testing::ElementsAre;
using testing::IsEmpty;

class SceneFilesTests : public VX::Test::SceneFilesFixture
{
protected:
    void save_()
    {
        files_().save();
        ASSERT_TRUE(driver_.waitFor([&] { return !files_().isSaving(); }));
        driver_.settle();
    }

    std::vector<std::filesystem::path> signalled_;
    boost::signals2::scoped_connection connection_ = FileDialogSignals::instance().onSave.connect(
        [this](const std::vector<std::filesystem::path>& paths) { signalled_ = paths; });
};

TEST_F(SceneFilesTests, SaveGoesToTheSceneFileThatTheSceneCameFrom)
{
    const auto path = sceneFile_("scene.vxu");
    open_(path);
    renameFirst_("Renamed");
    EXPECT_TRUE(hasUnsavedChanges(viewer_));
    save_();
    EXPECT_FALSE(UiTree::instance().hasWindow("File Dialog"));
    EXPECT_THAT(namesIn_(path), ElementsAre("Renamed"));
    EXPECT_FALSE(hasUnsavedChanges(viewer_));
    EXPECT_THAT(signalled_, IsEmpty());
}

TEST_F(SceneFilesTests, SaveAsksForAFileWhereTheSceneCameFromAnotherFormat)
{
    open_(folder_.write("part.stl", VX::Test::triangleStl()));
    renameFirst_("Renamed");
    files_().save();
    const auto target = folder_.path() / "new.vxu";
    chooseFile_(target);
    EXPECT_THAT(namesIn_(target), ElementsAre("Renamed"));
    EXPECT_EQ(viewer_.sceneFile(), target);
    EXPECT_EQ(viewer_.sceneName(), "new.vxu");
    EXPECT_FALSE(hasUnsavedChanges(viewer_));
}

TEST_F(SceneFilesTests, SaveAsTellsWhatWasSavedAndRemembersIt)
{
    open_(sceneFile_("scene.vxu"));
    files_().saveAs();
    const auto target = folder_.path() / "copy.vxu";
    chooseFile_(target);
    EXPECT_THAT(signalled_, ElementsAre(target));
    EXPECT_EQ(viewer_.recentFiles().list().front(), target);
}

TEST_F(SceneFilesTests, SaveSelectedWritesThatAndLeavesTheSceneUnsaved)
{
    viewer_.scene().addChild(VX::Test::makeBox("One"));
    viewer_.scene().addChild(VX::Test::makeBox("Two"));
    viewer_.scene().children().back()->setSelected(true);
    renameFirst_("Renamed");
    files_().saveSelected();
    const auto target = folder_.path() / "selected.vxu";
    chooseFile_(target);
    EXPECT_THAT(namesIn_(target), ElementsAre("Two"));
    EXPECT_THAT(signalled_, ElementsAre(target));
    EXPECT_TRUE(hasUnsavedChanges(viewer_));
    EXPECT_TRUE(viewer_.sceneFile().empty());
}

TEST_F(SceneFilesTests, SaveSelectedKeepsWhatIsBelowOnceAndWhereItStands)
{
    auto group = std::make_shared<Object>();
    group->setTransform(Transform(Eigen::Translation3d(5, 0, 0)));
    const auto box = VX::Test::makeBox("Box");
    const auto inner = VX::Test::makeBox("Inner");
    viewer_.scene().addChild(group);
    group->addChild(box);
    box->addChild(inner);
    box->setSelected(true);
    inner->setSelected(true);
    files_().saveSelected();
    const auto target = folder_.path() / "selected.vxu";
    chooseFile_(target);
    const auto loaded = loadObjectFromFile(target, {});
    ASSERT_TRUE(loaded);
    ASSERT_EQ(loaded->objects.size(), 1U);
    EXPECT_EQ(loaded->objects.front()->children().size(), 1U);
    EXPECT_DOUBLE_EQ(loaded->objects.front()->worldBox().min().x(), 5);
}

TEST_F(SceneFilesTests, AFileIsCompleteThoughTheProgramEndsWhileItIsWritten)
{
    const auto path = sceneFile_("scene.vxu");
    open_(path);
    renameFirst_("Renamed");
    files_().save();
    ProgressBar::shutdown();
    EXPECT_THAT(namesIn_(path), ElementsAre("Renamed"));
}

TEST_F(SceneFilesTests, AWindowThatTakesThePlaceOfAnotherEndsWhatTheOldOneDid)
{
    open_(sceneFile_("scene.vxu"));
    renameFirst_("Renamed");
    files_().save();
    auto window = OffscreenWindow::create({400, 300}, 1);
    ASSERT_TRUE(window);
    viewer_.setWindow(std::move(*window));
    EXPECT_FALSE(ProgressBar::isOrdered());
    viewer_.startUi();
    EXPECT_FALSE(files_().isSaving());
}

TEST_F(SceneFilesTests, SaysThatThereIsNothingToSave)
{
    files_().saveAs();
    driver_.settle();
    EXPECT_TRUE(driver_.shows("There is nothing to save. Open a file first."));
    driver_.press("OK");
    viewer_.scene().addChild(VX::Test::makeBox("One"));
    files_().saveSelected();
    driver_.settle();
    EXPECT_TRUE(driver_.shows("Nothing is selected. Select what is to be saved first."));
}

TEST_F(SceneFilesTests, AFailedSaveIsToldAndLeavesTheSceneUnsaved)
{
    const auto path = sceneFile_("scene.vxu");
    open_(path);
    renameFirst_("Renamed");
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    save_();
    EXPECT_TRUE(UiTree::instance().hasWindow("Error Modal"));
    EXPECT_TRUE(hasUnsavedChanges(viewer_));
    EXPECT_THAT(signalled_, IsEmpty());
}

TEST_F(SceneFilesTests, WhatIsDoneWhileTheFileIsWrittenIsNotSaved)
{
    open_(sceneFile_("scene.vxu"));
    renameFirst_("Renamed");
    files_().save();
    renameFirst_("Later");
    ASSERT_TRUE(driver_.waitFor([&] { return !files_().isSaving(); }));
    EXPECT_TRUE(hasUnsavedChanges(viewer_));
}

TEST_F(SceneFilesTests, AFileThatComesIntoASceneFileIsAChangeOfIt)
{
    open_(sceneFile_("scene.vxu"));
    EXPECT_FALSE(hasUnsavedChanges(viewer_));
    open_(folder_.write("part.stl", VX::Test::triangleStl()));
    EXPECT_TRUE(hasUnsavedChanges(viewer_));
}

TEST_F(SceneFilesTests, FilesDroppedOverAPanelAreOpened)
{
    const auto path = sceneFile_("scene.vxu");
    session_.window().inject(DropEvent{{path}, {20, 300}});
    EXPECT_TRUE(driver_.waitFor([&] { return !viewer_.scene().children().empty(); }));
    EXPECT_EQ(viewer_.sceneFile(), path);
}

TEST_F(SceneFilesTests, SaveAsksForAFileWhereOpeningTheSceneFileWasUndone)
{
    const auto path = sceneFile_("scene.vxu");
    open_(path);
    viewer_.getGlobalHistoryStore()->undo();
    viewer_.scene().addChild(VX::Test::makeBox("New"));
    files_().save();
    driver_.settle();
    EXPECT_TRUE(UiTree::instance().hasWindow("File Dialog"));
    ASSERT_TRUE(driver_.waitFor([&] { return !files_().isSaving(); }));
    EXPECT_THAT(namesIn_(path), ElementsAre("Box"));
}

} // namespace VX
