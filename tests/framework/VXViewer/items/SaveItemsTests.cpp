#include "ItemsFixture.h"

#include <VXMesh/ObjectFile.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/SceneEdit.h>
#include <VXViewer/SceneFiles.h>

#include <gtest/gtest.h>

namespace VX
{

using testing::ElementsAre;

class SaveItemsTests : public VX::Test::ItemsFixture
{
protected:
    void press_(const std::string& name)
    {
        EXPECT_TRUE(menu_->pressItem(name)) << item_(name).unavailableReason();
        driver_.settle();
    }

    void waitForTheFile_()
    {
        ASSERT_TRUE(driver_.waitFor([&] { return !menu_->sceneFiles().isSaving(); }));
        driver_.settle();
    }

    void renameFirst_(const std::string& name)
    {
        SceneEdit edit(history_(), "Rename");
        edit.touch(viewer_.scene().children().front());
        viewer_.scene().children().front()->setName(name);
    }

    /// The names of the objects in the file that the dialog asks for.
    std::vector<std::string> chosenFile_()
    {
        EXPECT_TRUE(UiTree::instance().hasWindow("File Dialog"));
        driver_.type(file_.string());
        driver_.press("Save", "File Dialog");
        waitForTheFile_();
        return namesInFile_();
    }

    [[nodiscard]] std::vector<std::string> namesInFile_() const
    {
        const auto loaded = loadObjectFromFile(file_, {});
        if (!loaded)
            return {loaded.error()};
        std::vector<std::string> names;
        for (const std::shared_ptr<Object>& object : loaded->objects)
            names.push_back(object->name());
        return names;
    }

    const std::filesystem::path file_ = folder_.path() / "scene.vxu";
};

TEST_F(SaveItemsTests, SaveAsksForAFileOnceAndWritesItFromThenOn)
{
    renameFirst_("First");
    press_("Save");
    EXPECT_THAT(chosenFile_(), ElementsAre("First", "B", "C"));
    renameFirst_("Second");
    press_("Save");
    EXPECT_FALSE(UiTree::instance().hasWindow("File Dialog"));
    waitForTheFile_();
    EXPECT_THAT(namesInFile_(), ElementsAre("Second", "B", "C"));
    EXPECT_EQ(item_("Save").unavailableReason(), "Everything is saved.");
}

TEST_F(SaveItemsTests, SaveAsAsksForAFile)
{
    press_("Save Scene As");
    EXPECT_THAT(chosenFile_(), ElementsAre("A", "B", "C"));
    EXPECT_EQ(viewer_.sceneFile(), file_);
}

TEST_F(SaveItemsTests, SaveSelectedWritesTheSelectedObjects)
{
    b_->setSelected(true);
    press_("Save selected");
    EXPECT_THAT(chosenFile_(), ElementsAre("B"));
    EXPECT_TRUE(viewer_.sceneFile().empty());
}

} // namespace VX
