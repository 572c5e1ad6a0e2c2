#include "UiTestScene.h"
#include "tests/support/ui/UiDriver.h"

#include <VXViewer/FileOpening.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerPlugin.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

namespace
{

/// A menu with something before it, on which there is a button.
class CoveredMenu : public RibbonMenu
{
public:
    [[nodiscard]] bool isCovered() const override { return covered; }

    [[nodiscard]] bool isStartingUp() const override { return startingUp; }

    void drawAdditionalWindows() override
    {
        UI::beginWindow("Gate", ImGuiWindowFlags_AlwaysAutoResize);
        UI::button("Enter");
        UI::endWindow();
    }

    bool covered = true;
    bool startingUp = false;
};

class KeyCounter : public ViewerPlugin
{
public:
    bool handleSceneInput(const InputEvent& event) override
    {
        keys += std::holds_alternative<KeyEvent>(event) ? 1 : 0;
        return false;
    }

    int keys = 0;
};

} // namespace

class CoveredMenuTests : public testing::Test
{
protected:
    CoveredMenuTests()
    {
        menu_->shortcutManager()->set({{GLFW_KEY_K, 0}, "Count", ShortcutCategory::Edit, [this] { ++shortcuts_; }});
    }

    void drop_()
    {
        session_.window().inject(DropEvent{{folder_.write("dropped.stl", VX::Test::triangleStl())}, {500, 400}});
        driver_.settle();
    }

    const VX::Test::TempDir folder_;
    std::shared_ptr<CoveredMenu> menu_ = std::make_shared<CoveredMenu>();
    VX::Test::ViewerSession session_{menu_};
    Viewer& viewer_ = session_.viewer();
    VX::Test::UiDriver driver_{session_};
    int shortcuts_ = 0;
};

TEST_F(CoveredMenuTests, GetsNoKeysNorDoWhatIsBehindIt)
{
    const auto plugin = std::make_shared<KeyCounter>();
    viewer_.addPlugin(plugin);
    driver_.key(GLFW_KEY_K);
    EXPECT_EQ(shortcuts_, 0);
    EXPECT_EQ(plugin->keys, 0);
}

TEST_F(CoveredMenuTests, GetsTheKeysOnceItIsNotCovered)
{
    menu_->covered = false;
    driver_.key(GLFW_KEY_K);
    EXPECT_EQ(shortcuts_, 1);
}

TEST_F(CoveredMenuTests, LetsTheKeyboardIntoWhatIsBeforeIt)
{
    driver_.key(GLFW_KEY_TAB);
    driver_.settle();
    const auto button = driver_.find("Enter");
    ASSERT_TRUE(button);
    EXPECT_TRUE(button->focused);
}

TEST_F(CoveredMenuTests, LeavesDroppedFilesClosed)
{
    drop_();
    EXPECT_TRUE(viewer_.fileOpening().isIdle());
    EXPECT_TRUE(viewer_.scene().children().empty());
}

TEST_F(CoveredMenuTests, OpensDroppedFilesOnceItIsNotCovered)
{
    menu_->covered = false;
    drop_();
    EXPECT_TRUE(driver_.waitFor([&] { return viewer_.scene().children().size() == 1; }));
}

TEST_F(CoveredMenuTests, CountsNothingAsLoadedWhileItStartsUp)
{
    menu_->startingUp = true;
    bool loaded = false;
    viewer_.loop().whenLoaded([&] { loaded = true; });
    driver_.settle();
    EXPECT_FALSE(loaded);
    menu_->startingUp = false;
    viewer_.postEmptyEvent();
    driver_.settle();
    EXPECT_TRUE(loaded);
}

} // namespace VX
