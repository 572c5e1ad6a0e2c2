#include "SceneFilesFixture.h"

namespace VX
{

using testing::ElementsAre;

class CloseQuestionTests : public VX::Test::SceneFilesFixture
{
protected:
    CloseQuestionTests()
    {
        open_(path_);
        renameFirst_("Renamed");
    }

    /// What the button of the window's frame does.
    void closeWindow_()
    {
        session_.window().requestClose(true);
        driver_.settle();
    }

    [[nodiscard]] bool isClosing_() const { return session_.window().isCloseRequested(); }

    [[nodiscard]] static bool asks_() { return UiTree::instance().hasWindow("Save Changes"); }

    std::filesystem::path path_ = sceneFile_("scene.vxu");
};

TEST_F(CloseQuestionTests, ClosesAtOnceWhereAllIsSaved)
{
    viewer_.getGlobalHistoryStore()->undo();
    closeWindow_();
    EXPECT_FALSE(asks_());
    EXPECT_TRUE(isClosing_());
}

TEST_F(CloseQuestionTests, AsksWhereSomethingIsNotSaved)
{
    closeWindow_();
    EXPECT_TRUE(asks_());
    EXPECT_FALSE(isClosing_());
}

TEST_F(CloseQuestionTests, SavesAndCloses)
{
    closeWindow_();
    driver_.press("Save", "Save Changes");
    EXPECT_TRUE(driver_.waitFor([&] { return isClosing_(); }));
    EXPECT_THAT(namesIn_(path_), ElementsAre("Renamed"));
}

TEST_F(CloseQuestionTests, SavesWithEnter)
{
    closeWindow_();
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_TRUE(driver_.waitFor([&] { return isClosing_(); }));
    EXPECT_THAT(namesIn_(path_), ElementsAre("Renamed"));
}

TEST_F(CloseQuestionTests, ClosesWithoutSaving)
{
    closeWindow_();
    driver_.press("Don't Save", "Save Changes");
    EXPECT_TRUE(isClosing_());
    EXPECT_THAT(namesIn_(path_), ElementsAre("Box"));
}

TEST_F(CloseQuestionTests, StaysOpenAfterCancelOrEscape)
{
    closeWindow_();
    driver_.press("Cancel", "Save Changes");
    EXPECT_FALSE(asks_());
    EXPECT_FALSE(isClosing_());
    menu_->askToClose();
    driver_.settle();
    EXPECT_TRUE(asks_());
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(asks_());
    EXPECT_FALSE(isClosing_());
}

TEST_F(CloseQuestionTests, AsksForTheFileFirstWhereThereIsNone)
{
    viewer_.setSceneFile({});
    closeWindow_();
    driver_.press("Save", "Save Changes");
    EXPECT_FALSE(isClosing_());
    const auto target = folder_.path() / "new.vxu";
    chooseFile_(target);
    EXPECT_TRUE(driver_.waitFor([&] { return isClosing_(); }));
    EXPECT_THAT(namesIn_(target), ElementsAre("Renamed"));
}

TEST_F(CloseQuestionTests, StaysOpenWhereTheFileIsNotChosen)
{
    viewer_.setSceneFile({});
    closeWindow_();
    driver_.press("Save", "Save Changes");
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(UiTree::instance().hasWindow("File Dialog"));
    files_().saveAs();
    chooseFile_(folder_.path() / "later.vxu");
    EXPECT_FALSE(isClosing_());
}

TEST_F(CloseQuestionTests, StaysOpenWithAMessageWhereSavingFails)
{
    std::filesystem::remove(path_);
    std::filesystem::create_directory(path_);
    closeWindow_();
    driver_.press("Save", "Save Changes");
    ASSERT_TRUE(driver_.waitFor([&] { return UiTree::instance().hasWindow("Error Modal"); }));
    EXPECT_FALSE(isClosing_());
    EXPECT_TRUE(hasUnsavedChanges(viewer_));
}

TEST_F(CloseQuestionTests, WaitsForAFileThatIsBeingWritten)
{
    files_().save();
    session_.window().requestClose(true);
    EXPECT_TRUE(driver_.waitFor([&] { return !files_().isSaving() && isClosing_(); }));
    EXPECT_FALSE(asks_());
    EXPECT_THAT(namesIn_(path_), ElementsAre("Renamed"));
}

TEST_F(CloseQuestionTests, NeverAsksWhenTheProgramEndsByItself)
{
    viewer_.requestClose();
    driver_.settle();
    EXPECT_FALSE(asks_());
    EXPECT_TRUE(isClosing_());
}

TEST_F(CloseQuestionTests, DoesNotAskAboutAnEmptyScene)
{
    viewer_.scene().setChildren({});
    closeWindow_();
    EXPECT_TRUE(isClosing_());
}

} // namespace VX
