#include "ItemsFixture.h"

#define GLFW_INCLUDE_NONE
#include <VXViewer/ColorTheme.h>
#include <VXViewer/FileDialogSignals.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/ImageFile.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/RecentFiles.h>
#include <VXViewer/ViewerSettingsManager.h>

#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

namespace VX
{

using testing::ElementsAre;
using testing::IsEmpty;

class PanelItemsTests : public VX::Test::ItemsFixture
{
protected:
    ~PanelItemsTests() override { ColorTheme::setupDefaultDark(); }

    void open_(const std::string& name)
    {
        EXPECT_TRUE(menu_->pressItem(name)) << item_(name).unavailableReason();
        driver_.settle();
        EXPECT_TRUE(item_(name).isActive());
    }

    void drag_(const Vector2f& position, bool begins)
    {
        if (begins)
            session_.window().inject(MouseButtonEvent{0, true, 0, position, 1});
        else
            session_.window().inject(MouseMoveEvent{position, 0});
        driver_.settle();
    }

    void release_(const Vector2f& position)
    {
        session_.window().inject(MouseButtonEvent{0, false, 0, position, 1});
        driver_.settle();
    }

    /// Puts the cursor into the field `label` and replaces its text.
    void typeInto_(const std::string& label, const std::string& window, const std::string& text)
    {
        const auto field = driver_.find(label, window);
        ASSERT_TRUE(field);
        driver_.click({field->min.x() + 10, (field->min.y() + field->max.y()) / 2}, 0, 0, 2);
        driver_.key(GLFW_KEY_A, GLFW_MOD_CONTROL);
        driver_.type(text);
        driver_.key(GLFW_KEY_ENTER);
        driver_.settle();
    }
};

TEST_F(PanelItemsTests, TheHistoryListsTheStepsAndJumpsToOne)
{
    a_->setSelected(true);
    for (const char* name : {"Hide", "Show All", "Duplicate"})
        EXPECT_TRUE(menu_->pressItem(name));
    open_("History");
    driver_.press("Hide", "History");
    EXPECT_EQ(history_().position(), 1U);
    EXPECT_FALSE(a_->isVisible());
    driver_.press("Duplicate", "History");
    EXPECT_EQ(history_().position(), 3U);
    driver_.press("As at the beginning", "History");
    EXPECT_EQ(history_().position(), 0U);
}

TEST_F(PanelItemsTests, AnOpenPanelIsClosedByEscapeOrASecondPress)
{
    open_("History");
    driver_.key(GLFW_KEY_ESCAPE);
    driver_.settle();
    EXPECT_FALSE(item_("History").isActive());
    open_("History");
    EXPECT_TRUE(menu_->pressItem("History"));
    EXPECT_FALSE(item_("History").isActive());
}

TEST_F(PanelItemsTests, ATypedColorIsOneStep)
{
    a_->setSelected(true);
    a_->setColor({1, 2, 3, 100});
    open_("Object Color");
    typeInto_("Color", "Object Color", "#FF8000");
    EXPECT_EQ(a_->color(), (Color{255, 128, 0, 100}));
    EXPECT_EQ(history_().position(), 1U);
    history_().undo();
    EXPECT_EQ(a_->color(), (Color{1, 2, 3, 100}));
}

TEST_F(PanelItemsTests, ADragOfTheTransparencyIsOneStepForAllThatIsSelected)
{
    a_->setSelected(true);
    b_->addChild(c_);
    b_->setSelected(true);
    open_("Object Color");
    driver_.hover("Transparency", "Object Color");
    const auto slider = driver_.find("Transparency", "Object Color");
    ASSERT_TRUE(slider);
    const float y = (slider->min.y() + slider->max.y()) / 2;
    // A frame for each part of it, as for a user's hand.
    for (const float x : {8.0F, 30.0F, 60.0F})
        drag_({slider->min.x() + x, y}, x == 8.0F);
    EXPECT_EQ(history_().position(), 0U);
    release_({slider->min.x() + 60, y});
    for (const auto& box : {a_, b_, c_})
        EXPECT_LT(box->color().a, 255);
    EXPECT_EQ(history_().position(), 1U);
    history_().undo();
    for (const auto& box : {a_, b_, c_})
        EXPECT_EQ(box->color(), VisualObject::defaultColor());
}

TEST_F(PanelItemsTests, NothingIsUndoneWhileAColorIsDragged)
{
    const Color before{1, 2, 3, 4};
    a_->setColor(before);
    a_->setSelected(true);
    open_("Object Color");
    driver_.press("Reset", "Object Color");
    driver_.hover("Transparency", "Object Color");
    const auto slider = driver_.find("Transparency", "Object Color");
    ASSERT_TRUE(slider);
    const Vector2f middle(slider->min.x() + 60, (slider->min.y() + slider->max.y()) / 2);
    drag_(middle, true);
    EXPECT_FALSE(menu_->pressItem("Undo"));
    release_(middle);
    EXPECT_EQ(history_().position(), 2U);
    history_().undo();
    EXPECT_EQ(a_->color(), VisualObject::defaultColor());
    history_().undo();
    EXPECT_EQ(a_->color(), before);
}

TEST_F(PanelItemsTests, ADraggedColorIsAStepOfItsName)
{
    a_->setSelected(true);
    open_("Object Color");
    driver_.press("Transparency", "Object Color");
    EXPECT_EQ(history_().lastActionName(), "Object Color");
}

TEST_F(PanelItemsTests, TheColorGoesBackToThatOfANewObject)
{
    a_->setColor({1, 2, 3, 4});
    a_->setSelected(true);
    open_("Object Color");
    driver_.press("Reset", "Object Color");
    EXPECT_EQ(a_->color(), VisualObject::defaultColor());
    EXPECT_EQ(history_().position(), 1U);
}

TEST_F(PanelItemsTests, TheBackgroundFollowsTheThemeAtFirst)
{
    ColorTheme::setupDefaultLight();
    EXPECT_EQ(viewer_.view().options().backgroundTop, ColorTheme::viewportTop());
    EXPECT_EQ(viewer_.view().options().backgroundBottom, ColorTheme::viewportBottom());
}

TEST_F(PanelItemsTests, AChosenBackgroundStaysAndIsKept)
{
    viewer_.setSettingsManager(std::make_unique<ViewerSettingsManager>());
    open_("Background");
    driver_.press("One color", "Background");
    driver_.settle();
    typeInto_("Color", "Background", "#102030");
    ColorTheme::setupDefaultLight();
    const SceneOptions& options = viewer_.view().options();
    EXPECT_EQ(options.backgroundTop, (Color{0x10, 0x20, 0x30}));
    EXPECT_EQ(options.backgroundBottom, (Color{0x10, 0x20, 0x30}));
    viewer_.view().options().backgroundTop = {};
    registerViewerItems(viewer_);
    EXPECT_EQ(options.backgroundTop, (Color{0x10, 0x20, 0x30}));
    EXPECT_EQ(history_().position(), 0U);
}

TEST_F(PanelItemsTests, AChosenBackgroundStaysThoughItIsAsTheThemes)
{
    const Color top = ColorTheme::viewportTop();
    const Color bottom = ColorTheme::viewportBottom();
    open_("Background");
    driver_.press("From top to bottom", "Background");
    driver_.settle();
    ColorTheme::setupDefaultLight();
    EXPECT_EQ(viewer_.view().options().backgroundTop, top);
    EXPECT_EQ(viewer_.view().options().backgroundBottom, bottom);
}

TEST_F(PanelItemsTests, TheBackgroundFollowsTheThemeAgainWhereThatIsChosen)
{
    open_("Background");
    for (const char* kind : {"One color", "As the color theme"})
    {
        driver_.press(kind, "Background");
        driver_.settle();
    }
    ColorTheme::setupDefaultLight();
    EXPECT_EQ(viewer_.view().options().backgroundTop, ColorTheme::viewportTop());
    EXPECT_EQ(viewer_.view().options().backgroundBottom, ColorTheme::viewportBottom());
}

TEST_F(PanelItemsTests, TheBackgroundGoesFromOneColorToAnother)
{
    open_("Background");
    driver_.press("From top to bottom", "Background");
    driver_.settle();
    typeInto_("Bottom", "Background", "#FF0000");
    EXPECT_EQ(viewer_.view().options().backgroundBottom, (Color{255, 0, 0}));
    EXPECT_EQ(viewer_.view().options().backgroundTop, ColorTheme::viewportTop());
}

class ScreenshotTests : public PanelItemsTests
{
protected:
    void typeNumber_(const std::string& label, const std::string& number)
    {
        driver_.doublePress(label, "Screenshot");
        driver_.type(number);
        driver_.key(GLFW_KEY_ENTER);
        driver_.settle();
    }

    Image save_()
    {
        const std::filesystem::path path = folder_.path() / "picture.png";
        driver_.press("Save", "Screenshot");
        driver_.settle();
        driver_.type(path.string());
        driver_.press("Save", "File Dialog");
        EXPECT_TRUE(driver_.waitFor([&] { return std::filesystem::exists(path) && !ProgressBar::isOrdered(); }));
        driver_.settle();
        auto image = readPng(path);
        EXPECT_TRUE(image);
        return image ? std::move(*image) : Image();
    }
};

TEST_F(ScreenshotTests, SavesAPictureOfTheGivenSize)
{
    open_("Screenshot");
    typeNumber_("Width", "320");
    typeNumber_("Height", "200");
    EXPECT_EQ(save_().size, (PixelSize{320, 200}));
}

TEST_F(ScreenshotTests, HasTheSizeOfTheViewAtFirst)
{
    open_("Screenshot");
    const PixelRect& area = viewer_.view().area();
    EXPECT_EQ(save_().size, (PixelSize{area.width, area.height}));
}

TEST_F(ScreenshotTests, LeavesTheBackgroundTransparent)
{
    open_("Screenshot");
    driver_.press("Transparent background", "Screenshot");
    const Image image = save_();
    ASSERT_FALSE(image.isEmpty());
    EXPECT_EQ(image.at(0, 0).a, 0);
    EXPECT_FALSE(viewer_.view().options().transparentBackground);
}

TEST_F(ScreenshotTests, TellsOthersWhereThePictureWasSaved)
{
    std::vector<std::filesystem::path> saved;
    const boost::signals2::scoped_connection connection =
        FileDialogSignals::instance().onSave.connect([&](const auto& paths) { saved = paths; });
    open_("Screenshot");
    save_();
    EXPECT_THAT(saved, ElementsAre(folder_.path() / "picture.png"));
}

TEST_F(ScreenshotTests, CannotBeCopiedWhereThereIsNoScreen)
{
    open_("Screenshot");
    const auto button = driver_.find("Copy", "Screenshot");
    ASSERT_TRUE(button);
    EXPECT_FALSE(button->enabled);
}

TEST_F(PanelItemsTests, OpensARecentFile)
{
    viewer_.recentFiles().setRecording(true);
    viewer_.recentFiles().add(folder_.write("part.stl", VX::Test::triangleStl()));
    open_("Open recent");
    driver_.press("part.stl", "Recent Files");
    EXPECT_TRUE(driver_.waitFor([&] { return viewer_.fileOpening().isIdle(); }));
    EXPECT_EQ(viewer_.scene().children().size(), 4U);
    EXPECT_FALSE(item_("Open recent").isActive());
}

TEST_F(PanelItemsTests, ForgetsTheRecentFiles)
{
    viewer_.recentFiles().setRecording(true);
    viewer_.recentFiles().add(folder_.write("part.stl", VX::Test::triangleStl()));
    open_("Open recent");
    driver_.press("Clear List", "Recent Files");
    EXPECT_THAT(viewer_.recentFiles().list(), IsEmpty());
}

} // namespace VX
