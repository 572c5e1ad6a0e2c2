#include "tests/support/ui/UiDriver.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/RibbonSearch.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace VX
{

namespace
{

std::vector<RibbonSearchCommand> someCommands()
{
    return {{"Undo",
             "R\u00FCckg\u00E4ngig",
             "Nimmt den letzten Schritt zur\u00FCck",
             "arrow-back-up",
             "Start > Bearbeiten",
             "Ctrl+Z",
             "",
             {"Undo", "revert"}},
            {"Redo",
             "Wiederholen",
             "",
             "arrow-forward-up",
             "Start > Bearbeiten",
             "Ctrl+Shift+Z",
             "Es gibt nichts zu wiederholen.",
             {"Redo"}},
            {"Delete Selection",
             "Auswahl l\u00F6schen",
             "",
             "trash",
             "Start > Bearbeiten",
             "Del",
             "",
             {"Delete Selection"}},
            {"Select Primitives",
             "Grundformen ausw\u00E4hlen",
             "",
             "wand",
             "Auswahl > Fl\u00E4chen",
             "Ctrl+W",
             "",
             {"Select Primitives"}}};
}

/// A menu with the search in a window at the top.
class SearchingMenu : public ImGuiMenu
{
public:
    void drawAdditionalWindows() override
    {
        if (drawsField)
        {
            ImGui::SetNextWindowPos({UI::px(300), 0});
            UI::beginWindow("Header", ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_AlwaysAutoResize);
            search.drawField(UI::px(240));
            UI::endWindow();
        }
        const PixelSize size = viewer_()->framebufferSize();
        search.drawResults({0, 0, size.width, size.height});
        ImGuiMenu::drawAdditionalWindows();
    }

    bool drawsField = true;
    int opened = 0;
    std::vector<RibbonSearchCommand> commands = someCommands();
    std::vector<std::string> pressed;
    RibbonSearch search{[this] { return commands; }, [this](const std::string& name) { pressed.push_back(name); }};

protected:
    void setupShortcuts_() override
    {
        ImGuiMenu::setupShortcuts_();
        shortcutManager()->set({{GLFW_KEY_P, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT},
                                "Search for commands",
                                ShortcutCategory::Info,
                                [this] { search.focus(); }});
        shortcutManager()->set({{GLFW_KEY_O, GLFW_MOD_CONTROL}, "Open", ShortcutCategory::Scene, [this] { ++opened; }});
    }
};

constexpr const char* field = "Search for commands";
constexpr const char* results = "Search Results";

} // namespace

class RibbonSearchTests : public testing::Test
{
protected:
    void open_() { driver_.key(GLFW_KEY_P, GLFW_MOD_CONTROL | GLFW_MOD_SHIFT); }

    static std::vector<std::string> captions_()
    {
        std::vector<std::string> captions;
        for (const UiItem& item : UiTree::instance().items())
        {
            if (item.kind == UiKind::ListRow && item.window == results)
                captions.push_back(item.label);
        }
        return captions;
    }

    static std::string selected_()
    {
        const auto& items = UiTree::instance().items();
        const auto found = std::find_if(items.begin(), items.end(), [](const UiItem& item)
                                        { return item.kind == UiKind::ListRow && item.value == "selected"; });
        return found != items.end() ? found->label : std::string();
    }

    std::shared_ptr<SearchingMenu> menu_ = std::make_shared<SearchingMenu>();
    VX::Test::ViewerSession session_{menu_};
    VX::Test::UiDriver driver_{session_};
};

TEST_F(RibbonSearchTests, OpensWithItsShortcutAndListsEverything)
{
    open_();
    EXPECT_TRUE(menu_->search.isOpen());
    EXPECT_EQ(captions_().size(), 4U);
}

TEST_F(RibbonSearchTests, OpensWithAClickIntoTheField)
{
    driver_.press(field, "Header");
    EXPECT_TRUE(UiTree::instance().hasWindow(results));
}

TEST_F(RibbonSearchTests, FindsByTheTranslatedAndByTheEnglishCaption)
{
    open_();
    driver_.type("ruckg");
    EXPECT_EQ(selected_(), "R\u00FCckg\u00E4ngig");
    driver_.key(GLFW_KEY_A, GLFW_MOD_CONTROL);
    driver_.type("undo");
    EXPECT_EQ(selected_(), "R\u00FCckg\u00E4ngig");
}

TEST_F(RibbonSearchTests, RunsTheFirstHitWithEnterAndCloses)
{
    open_();
    driver_.type("select prim");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(menu_->pressed, std::vector<std::string>{"Select Primitives"});
    EXPECT_FALSE(UiTree::instance().hasWindow(results));
    EXPECT_EQ(driver_.find(field, "Header")->value, "");
}

TEST_F(RibbonSearchTests, RunsWhatWasTypedFasterThanItIsDrawn)
{
    const int mods = GLFW_MOD_CONTROL | GLFW_MOD_SHIFT;
    session_.window().inject(KeyEvent{GLFW_KEY_P, 0, KeyEvent::Action::Press, mods});
    session_.window().inject(KeyEvent{GLFW_KEY_P, 0, KeyEvent::Action::Release, mods});
    session_.window().inject(KeyEvent{GLFW_KEY_LEFT_SHIFT, 0, KeyEvent::Action::Release, GLFW_MOD_CONTROL});
    session_.window().inject(KeyEvent{GLFW_KEY_LEFT_CONTROL, 0, KeyEvent::Action::Release, 0});
    for (const char c : std::string("prim"))
        session_.window().inject(CharEvent{static_cast<char32_t>(c)});
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(menu_->pressed, std::vector<std::string>{"Select Primitives"});
}

TEST_F(RibbonSearchTests, MovesWithTheArrowsRoundTheList)
{
    open_();
    driver_.key(GLFW_KEY_DOWN);
    driver_.key(GLFW_KEY_DOWN);
    EXPECT_EQ(selected_(), "Auswahl l\u00F6schen");
    driver_.key(GLFW_KEY_UP);
    driver_.key(GLFW_KEY_UP);
    driver_.key(GLFW_KEY_UP);
    EXPECT_EQ(selected_(), "Grundformen ausw\u00E4hlen");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(menu_->pressed, std::vector<std::string>{"Select Primitives"});
}

TEST_F(RibbonSearchTests, RunsARowThatIsPressed)
{
    open_();
    driver_.press("Auswahl l\u00F6schen", results);
    EXPECT_EQ(menu_->pressed, std::vector<std::string>{"Delete Selection"});
    EXPECT_FALSE(menu_->search.isOpen());
}

TEST_F(RibbonSearchTests, ClosesWithEscapeAndForgetsTheText)
{
    open_();
    driver_.type("undo");
    driver_.key(GLFW_KEY_ESCAPE);
    EXPECT_FALSE(UiTree::instance().hasWindow(results));
    EXPECT_EQ(driver_.find(field, "Header")->value, "");
    EXPECT_TRUE(menu_->pressed.empty());
}

TEST_F(RibbonSearchTests, ClosesWithAPressElsewhere)
{
    open_();
    driver_.click({900, 600});
    EXPECT_FALSE(menu_->search.isOpen());
}

TEST_F(RibbonSearchTests, SaysWhyAHitIsNotAvailableAndDoesNotRunIt)
{
    open_();
    driver_.type("redo");
    EXPECT_EQ(driver_.obstacle("Wiederholen", results), "\"Wiederholen\" in \"Search Results\" is disabled");
    EXPECT_TRUE(driver_.shows("Es gibt nichts zu wiederholen.", results));
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_TRUE(menu_->pressed.empty());
    EXPECT_TRUE(menu_->search.isOpen());
    driver_.key(GLFW_KEY_A, GLFW_MOD_CONTROL);
    driver_.type("undo");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(menu_->pressed, std::vector<std::string>{"Undo"});
}

TEST_F(RibbonSearchTests, ShowsShortcutAndPathOfEachHit)
{
    open_();
    EXPECT_TRUE(driver_.shows("Ctrl+Z", results));
    EXPECT_TRUE(driver_.shows("Auswahl > Fl\u00E4chen", results));
}

TEST_F(RibbonSearchTests, SaysWhenNothingIsFound)
{
    open_();
    driver_.type("qqqq");
    EXPECT_TRUE(driver_.shows("Nothing found", results));
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_TRUE(menu_->pressed.empty());
}

TEST_F(RibbonSearchTests, TellsWhenTheFieldIsFocusedAndWhenAHitIsRun)
{
    std::vector<std::string> told;
    menu_->search.setFocusedCallback([&] { told.emplace_back("focused"); });
    menu_->search.setActivatedCallback([&] { told.emplace_back("activated"); });
    open_();
    driver_.type("undo");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(told, (std::vector<std::string>{"focused", "activated"}));
}

TEST_F(RibbonSearchTests, LetsNoShortcutFireWhileTheFieldHasTheKeyboard)
{
    driver_.key(GLFW_KEY_O, GLFW_MOD_CONTROL);
    ASSERT_EQ(menu_->opened, 1);
    open_();
    driver_.type("undo");
    driver_.key(GLFW_KEY_O, GLFW_MOD_CONTROL);
    EXPECT_EQ(menu_->opened, 1);
}

TEST_F(RibbonSearchTests, BringsItsFieldAlongWhereTheHeaderHasNone)
{
    menu_->drawsField = false;
    open_();
    driver_.type("undo");
    driver_.key(GLFW_KEY_ENTER);
    EXPECT_EQ(menu_->pressed, std::vector<std::string>{"Undo"});
}

TEST_F(RibbonSearchTests, StaysInsideASmallWindowAndScrolls)
{
    for (int i = 0; i < 50; ++i)
        menu_->commands.push_back({"Item " + std::to_string(i), "Item " + std::to_string(i), "", "", "", "", "", {}});
    session_.window().setFramebufferSize({420, 300});
    driver_.settle();
    open_();
    const UiItem window = *driver_.find(results);
    EXPECT_GE(window.min.minCoeff(), 0);
    EXPECT_LE(window.max.x(), 420);
    EXPECT_LE(window.max.y(), 300);
    driver_.key(GLFW_KEY_UP);
    EXPECT_TRUE(driver_.shows("Item 49", results));
}

} // namespace VX
