#include "MenuFixture.h"

#include <VXMesh/Object.h>
#include <VXMesh/UserFolders.h>
#include <VXViewer/ColorTheme.h>
#include <VXViewer/FileDialogSignals.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/NotificationType.h>
#include <VXViewer/RibbonNotification.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EmptyStep : public HistoryAction
{
public:
    using HistoryAction::HistoryAction;

    void undo() override {}

    void redo() override {}

    [[nodiscard]] std::size_t heapBytes() const override { return 0; }
};

class MenuSessionLogsTest : public VX::Test::MenuFixture
{
protected:
    [[nodiscard]] HistoryStore& history_() const { return *viewer_().getGlobalHistoryStore(); }

    static std::shared_ptr<HistoryAction> step_(const std::string& name) { return std::make_shared<EmptyStep>(name); }
};

TEST_F(MenuSessionLogsTest, tellOfAnItemThatWasPressed)
{
    addItem_("Undo");
    start_();
    EXPECT_TRUE(menu_->pressItem("Undo"));
    EXPECT_THAT(reported_(), ElementsAre("Tool Activated: Undo"));
}

TEST_F(MenuSessionLogsTest, areSilentAboutAnItemThatCannotBePressed)
{
    const auto item = addItem_("Undo");
    start_();
    EXPECT_FALSE(menu_->itemPressed_(item, "There is nothing to undo."));
    EXPECT_THAT(reported_(), IsEmpty());
}

TEST_F(MenuSessionLogsTest, areSilentAboutAnItemThatTheSchemaDoesNotHave)
{
    start_();
    const auto item = std::make_shared<VX::Test::CountingItem>("Elsewhere");
    EXPECT_TRUE(menu_->itemPressed_(item, {}));
    EXPECT_EQ(item->presses, 1);
    EXPECT_THAT(reported_(), IsEmpty());
}

TEST_F(MenuSessionLogsTest, tellOfTheSearchAndOfAnItemStartedFromIt)
{
    addItem_("Undo");
    RibbonEntry entry;
    entry.item = "Undo";
    RibbonSchemaHolder::schema().tabs.front().groups = {{"Edit", {entry}}};
    RibbonSchemaHolder::markChanged();
    start_();
    driver_->key(GLFW_KEY_P, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT);
    driver_->settle();
    EXPECT_THAT(reported_(), ElementsAre("Search Focused"));
    driver_->type("undo");
    driver_->settle();
    driver_->key(GLFW_KEY_ENTER);
    driver_->settle();
    EXPECT_THAT(reported_(), ElementsAre("Search Focused", "Search Tool Activated", "Tool Activated: Undo"));
}

TEST_F(MenuSessionLogsTest, tellOnceOfEachContextMenuOfTheSceneList)
{
    addItem_("Hide");
    start_();
    const auto object = std::make_shared<Object>();
    object->setName("Part");
    viewer_().scene().addChild(object);
    driver_->settle();
    const auto row = driver_->find("Part", "Scene");
    ASSERT_TRUE(row);
    const Vector2f middle = (row->visibleMin + row->visibleMax) / 2;
    driver_->click(middle, 1);
    driver_->settle();
    EXPECT_THAT(reported_(), ElementsAre("Scene Context Opened"));
    driver_->key(GLFW_KEY_ESCAPE);
    driver_->settle();
    driver_->click(middle, 1);
    driver_->settle();
    EXPECT_THAT(reported_(), ElementsAre("Scene Context Opened", "Scene Context Opened"));
}

TEST_F(MenuSessionLogsTest, tellOfAStepOfTheHistory)
{
    start_();
    history_().append(step_("Delete Objects"));
    EXPECT_THAT(reported_(), ElementsAre("History Added: Delete Objects"));
}

TEST_F(MenuSessionLogsTest, tellOfStepsInAScopeOnceAsOne)
{
    start_();
    {
        const HistoryScope scope(history_(), "Group Objects");
        history_().append(step_("Move Object"));
        history_().append(step_("Move Object"));
        EXPECT_THAT(reported_(), IsEmpty());
    }
    EXPECT_THAT(reported_(), ElementsAre("History Added: Group Objects"));
}

TEST_F(MenuSessionLogsTest, tellOnceOfAStepThatIsAloneInItsScope)
{
    start_();
    {
        const HistoryScope scope(history_(), "Object Color");
        history_().append(step_("Object Color"));
    }
    EXPECT_THAT(reported_(), ElementsAre("History Added: Object Color"));
}

TEST_F(MenuSessionLogsTest, areSilentAboutOtherChangesOfTheHistory)
{
    start_();
    history_().append(step_("Delete Objects"));
    history_().undo();
    history_().redo();
    history_().clear();
    EXPECT_THAT(reported_(), ElementsAre("History Added: Delete Objects"));
}

TEST_F(MenuSessionLogsTest, areSilentAboutASignalWhileAScopeIsOpen)
{
    start_();
    const HistoryScope scope(history_(), "Group Objects");
    history_().changed(history_(), HistoryChange::ActionAdded);
    EXPECT_THAT(reported_(), IsEmpty());
}

TEST_F(MenuSessionLogsTest, tellOfAnotherPresetOfColours)
{
    start_();
    ColorTheme::setupDefaultLight();
    ColorTheme::setupDefaultDark();
    EXPECT_THAT(reported_(), ElementsAre("Color Theme Changed: Light", "Color Theme Changed: Dark"));
}

TEST_F(MenuSessionLogsTest, tellNothingOfTheNameOfAUsersTheme)
{
    start_();
    const auto folder = getUserConfigDir() / "themes";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "Secret.json") << R"({"colors": {}})";
    ColorTheme::updateUserThemesList();
    ASSERT_TRUE(ColorTheme::setupUserTheme("Secret"));
    EXPECT_THAT(reported_(), ElementsAre("Color Theme Changed: Custom"));
    ColorTheme::setupDefaultDark();
}

TEST_F(MenuSessionLogsTest, tellOfAnErrorShown)
{
    start_();
    menu_->showModalMessage("It does not work.", NotificationType::Error);
    EXPECT_THAT(reported_(), ElementsAre("Error Modal"));
}

TEST_F(MenuSessionLogsTest, tellOfAWarningShown)
{
    start_();
    menu_->showModalMessage("It works in part.", NotificationType::Warning);
    EXPECT_THAT(reported_(), ElementsAre("Warning Modal"));
}

TEST_F(MenuSessionLogsTest, areSilentAboutOtherMessages)
{
    start_();
    menu_->showModalMessage("It works.", NotificationType::Info);
    EXPECT_THAT(reported_(), IsEmpty());
}

TEST_F(MenuSessionLogsTest, areSilentAboutACancelledOperationWhichIsShownAllTheSame)
{
    start_();
    menu_->showModalMessage("Operation was canceled", NotificationType::Error);
    menu_->showModalMessage("Operation was canceled", NotificationType::Warning);
    driver_->settle();
    EXPECT_TRUE(driver_->shows("Operation was canceled"));
    EXPECT_THAT(reported_(), IsEmpty());
}

TEST_F(MenuSessionLogsTest, tellOfAMessageThatOnlyResemblesACancellation)
{
    start_();
    menu_->showModalMessage("Operation was canceled.", NotificationType::Error);
    EXPECT_THAT(reported_(), ElementsAre("Error Modal"));
}

TEST_F(MenuSessionLogsTest, tellOfANotificationOfAnError)
{
    start_();
    RibbonNotification notification;
    notification.text = "It does not work.";
    notification.type = NotificationType::Error;
    menu_->pushNotification(notification);
    driver_->settle();
    EXPECT_THAT(reported_(), ElementsAre("Error Notification"));
}

TEST_F(MenuSessionLogsTest, areSilentAboutOtherNotifications)
{
    start_();
    for (const NotificationType type : {NotificationType::Warning, NotificationType::Info})
    {
        RibbonNotification notification;
        notification.text = "It works.";
        notification.type = type;
        menu_->pushNotification(notification);
    }
    EXPECT_THAT(reported_(), IsEmpty());
}

TEST_F(MenuSessionLogsTest, tellWhatKindOfFileWasSaved)
{
    start_();
    FileDialogSignals::instance().onSave({"/home/ann/Secret.STL"});
    FileDialogSignals::instance().onSave({"/home/ann/a.stl", "/home/ann/b.ply", "/home/ann/c.obj"});
    EXPECT_THAT(reported_(), ElementsAre("Save STL file", "Save 3 files"));
}

TEST_F(MenuSessionLogsTest, tellOfTheEndEvenWhereTheyAreNotAllowed)
{
    start_();
    SessionLogs::allow(false);
    end_();
    EXPECT_THAT(actions_(), ElementsAre("Forbid Telemetry", "Close Application"));
}

TEST_F(MenuSessionLogsTest, tellNothingMoreOfTheHistoryAfterTheEnd)
{
    start_();
    const std::shared_ptr<HistoryStore> history = viewer_().getGlobalHistoryStore();
    end_();
    history->append(step_("Delete Objects"));
    ColorTheme::setupDefaultLight();
    FileDialogSignals::instance().onSave({"a.stl"});
    ColorTheme::setupDefaultDark();
    EXPECT_THAT(reported_(), ElementsAre("Close Application"));
}

TEST_F(MenuSessionLogsTest, areSentWithAFrameOnceAMinuteHasPassed)
{
    start_();
    SessionLogs::logAction("First", false);
    SessionLogs::flushIfNeeded(true);
    SessionLogs::logAction("Second", false);
    now_ += std::chrono::seconds(59);
    viewer_().incrementForceRedrawFrames();
    driver_->settle();
    EXPECT_THAT(actions_(), ElementsAre("First"));
    now_ += std::chrono::seconds(1);
    viewer_().incrementForceRedrawFrames();
    driver_->settle();
    EXPECT_THAT(actions_(), ElementsAre("First", "Second"));
}

} // namespace

} // namespace VX
