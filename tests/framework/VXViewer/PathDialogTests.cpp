#include "tests/support/ui/UiDriver.h"

#include <VXViewer/FileDialog.h>
#include <VXViewer/ImGuiMenu.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

class PathDialogTests : public testing::Test
{
protected:
    PathDialogTests()
    {
        folder_.write("part.stl", "x");
        folder_.write("other.txt", "x");
        folder_.write("inner/deep.STL", "x");
    }

    void show_(FileDialogRequest::Mode mode)
    {
        FileDialogRequest request;
        request.mode = mode;
        request.title = "Choose";
        request.filters = {{"Meshes", {".stl"}}, {"Any file", {}}};
        menu_->fileDialog().show(request, [this](const auto& paths) { chosen_ = paths; });
        driver_.settle();
    }

    void showInFolder_(FileDialogRequest::Mode mode)
    {
        show_(mode);
        driver_.type(folder_.path().string());
        driver_.key(GLFW_KEY_ENTER);
    }

    VX::Test::TempDir folder_;
    std::shared_ptr<ImGuiMenu> menu_ = std::make_shared<ImGuiMenu>();
    VX::Test::ViewerSession session_{menu_};
    VX::Test::UiDriver driver_{session_};
    std::vector<std::filesystem::path> chosen_;
};

TEST_F(PathDialogTests, ListsFoldersAndTheFilesOfTheFilter)
{
    showInFolder_(FileDialogRequest::Mode::OpenFiles);
    EXPECT_TRUE(driver_.shows("inner/"));
    EXPECT_TRUE(driver_.shows("part.stl"));
    EXPECT_FALSE(driver_.shows("other.txt"));
}

TEST_F(PathDialogTests, ListsEveryFileWithTheLastFilter)
{
    showInFolder_(FileDialogRequest::Mode::OpenFiles);
    const std::vector<UiItem> combos = UiTree::instance().find("", "File Dialog");
    const auto combo =
        std::find_if(combos.begin(), combos.end(), [](const UiItem& item) { return item.kind == UiKind::Combo; });
    ASSERT_NE(combo, combos.end());
    EXPECT_EQ(combo->value, "Meshes");
    driver_.click((combo->visibleMin + combo->visibleMax) / 2);
    driver_.press("Any file");
    EXPECT_TRUE(driver_.shows("other.txt"));
}

TEST_F(PathDialogTests, EntersAFolderThatIsPressedAndGoesUpAgain)
{
    showInFolder_(FileDialogRequest::Mode::OpenFiles);
    driver_.press("inner/");
    EXPECT_TRUE(driver_.shows("deep.STL"));
    driver_.press("Up");
    EXPECT_TRUE(driver_.shows("part.stl"));
}

TEST_F(PathDialogTests, ChoosesTheFileThatIsPressed)
{
    showInFolder_(FileDialogRequest::Mode::OpenFiles);
    driver_.press("part.stl");
    EXPECT_TRUE(chosen_.empty());
    driver_.press("Open", "File Dialog");
    EXPECT_EQ(chosen_, std::vector<std::filesystem::path>{folder_.path() / "part.stl"});
    EXPECT_FALSE(menu_->fileDialog().isOpen());
}

TEST_F(PathDialogTests, ChoosesTheFileThatIsDoubleClicked)
{
    showInFolder_(FileDialogRequest::Mode::OpenFiles);
    driver_.doublePress("part.stl");
    EXPECT_EQ(chosen_, std::vector<std::filesystem::path>{folder_.path() / "part.stl"});
}

TEST_F(PathDialogTests, SaysWhenTheFileIsNotThereAndStaysOpen)
{
    showInFolder_(FileDialogRequest::Mode::OpenFiles);
    driver_.type("missing.stl");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_TRUE(menu_->fileDialog().isOpen());
    EXPECT_TRUE(driver_.shows("Cannot open \"missing.stl\": no such file or directory."));
}

TEST_F(PathDialogTests, TellsNobodyWhenTheUserCancels)
{
    showInFolder_(FileDialogRequest::Mode::OpenFiles);
    driver_.press("Cancel", "File Dialog");
    EXPECT_FALSE(menu_->fileDialog().isOpen());
    EXPECT_TRUE(chosen_.empty());
}

TEST_F(PathDialogTests, CompletesTheNameToSaveWithTheExtensionOfTheFilter)
{
    showInFolder_(FileDialogRequest::Mode::SaveFile);
    driver_.type("new");
    driver_.press("Save", "File Dialog");
    EXPECT_EQ(chosen_, std::vector<std::filesystem::path>{folder_.path() / "new.stl"});
}

TEST_F(PathDialogTests, WarnsBeforeItReplacesAFile)
{
    showInFolder_(FileDialogRequest::Mode::SaveFile);
    driver_.type("part");
    EXPECT_TRUE(driver_.shows("\"part.stl\" exists and will be replaced."));
    EXPECT_TRUE(driver_.shows("Replace", "File Dialog"));
}

TEST_F(PathDialogTests, StartsInTheFolderOfTheLastChoice)
{
    showInFolder_(FileDialogRequest::Mode::OpenFiles);
    driver_.press("part.stl");
    driver_.press("Open", "File Dialog");
    show_(FileDialogRequest::Mode::OpenFiles);
    EXPECT_TRUE(driver_.shows("part.stl"));
}

} // namespace VX
