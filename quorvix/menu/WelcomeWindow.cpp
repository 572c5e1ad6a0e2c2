#include <quorvix/menu/QuorvixRibbonMenu.h>
#include <quorvix/menu/ShowWelcomeWindowSetting.h>
#include <quorvix/menu/WebsiteLink.h>
#include <quorvix/menu/WelcomeWindow.h>
#include <quorvix/setup/Translate.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/Config.h>
#include <VXMesh/VisualObject.h>
#include <VXViewer/ColorTheme.h>
#include <VXViewer/RibbonIcons.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsPlugin.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace VX
{

namespace
{

// Units of the design.
constexpr ImVec2 smallestArea{898, 540};
constexpr float rounding = 8;
constexpr float cardWidth = 425;
constexpr float tallCard = 476;
constexpr float lowCard = 230;
constexpr float checkboxHeight = 28;
constexpr float left = -433; ///< of the cards at the left
constexpr float right = 8;
constexpr float top = -238;
constexpr float bottom = 238;
constexpr float middle = 8; ///< the top of the lower card

constexpr ImVec2 titlePosition{36, 23};
constexpr ImVec2 linesPosition{36, 69};
constexpr float lineGap = 4;
constexpr ImVec2 buttonPosition{36, 170.2F};
constexpr ImVec2 buttonSize{110, 36};
constexpr ImVec2 dropPicture{148.5F, 102};
constexpr ImVec2 videoPicture{308, 95.2F};
constexpr float pictureSize = 128;
constexpr float dropSource = 128;
constexpr float videoSource = 130;
constexpr float dropTitleTop = 269;
constexpr float dropNoteTop = 361;

constexpr ImU32 grey = 0xFF7F7F7F;

constexpr ImVec2 shapeSize{64, 50};
constexpr float shapeIcon = 16;
constexpr float shapeGap = 8;
constexpr float shapesBottom = 206.2F;

struct Shape
{
    const char* label;
    const char* icon;
};

/// Row by row.
constexpr int shapeColumns = 2;
constexpr int shapeRows = 3;
constexpr std::array<Shape, std::size_t{shapeColumns} * shapeRows> shapes{{{translatable("Cube"), "cube"},
                                                                           {translatable("Cylinder"), "cylinder"},
                                                                           {translatable("Sphere"), "sphere"},
                                                                           {translatable("Prism"), "prism"},
                                                                           {translatable("Torus"), "torus"},
                                                                           {translatable("Arrow"), "arrow"}}};

bool holdsVisualObject(const Object& object)
{
    return dynamic_cast<const VisualObject*>(&object) != nullptr ||
           std::ranges::any_of(object.children(), [](const auto& child) { return holdsVisualObject(*child); });
}

ImVec2 scaled(ImVec2 units)
{
    return {units.x * UI::scale(), units.y * UI::scale()};
}

/// A line in the middle of the card; the next one comes below it.
void centeredLine(const std::string& text)
{
    ImGui::SetCursorPosX(std::round((cardWidth * UI::scale() - ImGui::CalcTextSize(text.c_str()).x) / 2));
    UI::text(text);
}

void drawTitle(const std::string& text)
{
    const UI::ScopedFont headline(UI::Font::Headline);
    ImGui::SetCursorPos(scaled(titlePosition));
    UI::text(text);
}

void drawLines(const std::array<std::string, 3>& lines)
{
    ImGui::PushStyleColor(ImGuiCol_Text, grey);
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, UI::px(lineGap)));
    ImGui::SetCursorPos(scaled(linesPosition));
    for (const std::string& line : lines)
    {
        ImGui::SetCursorPosX(scaled(linesPosition).x);
        UI::text(line);
    }
    ImGui::PopStyleVar();
    ImGui::PopStyleColor();
}

/// @param source  of the icon's sizes, the least that will do
void drawPicture(const char* name, float source, ImVec2 position)
{
    const float size = pictureSize * UI::scale();
    ImGui::SetCursorPos(scaled(position));
    const ImVec2 corner = ImGui::GetCursorScreenPos();
    ImGui::Dummy({size, size});
    UI::record(UiKind::Icon, {}, name);
    const RibbonIcons::Icon* const found = RibbonIcons::find(name, source * UI::scale());
    if (!found)
        return;
    const ImVec2 min(std::round(corner.x), std::round(corner.y));
    ImGui::GetWindowDrawList()->AddImage(found->texture, min, {min.x + size, min.y + size}, {0, 0}, {1, 1},
                                         ColorTheme::getRibbonColor(RibbonColor::Icon));
}

bool drawButton(const std::string& label)
{
    ImGui::SetCursorPos(scaled(buttonPosition));
    return UI::button(label, scaled(buttonSize));
}

/// Shows what can be created; pressing a shape does nothing.
void drawShapes()
{
    ImGui::PushStyleColor(ImGuiCol_Button, 0);
    ImGui::PushStyleColor(ImGuiCol_ButtonHovered, 0);
    ImGui::PushStyleColor(ImGuiCol_ButtonActive, 0);
    ImGui::PushStyleColor(ImGuiCol_Text, grey);
    for (int i = 0; i < static_cast<int>(shapes.size()); ++i)
    {
        const int row = i / shapeColumns;
        const auto toRight = static_cast<float>(shapeColumns - i % shapeColumns);
        const auto toBottom = static_cast<float>(shapeRows - row);
        ImGui::SetCursorPos(scaled({cardWidth - toRight * shapeSize.x - (toRight + 1) * shapeGap,
                                    shapesBottom - toBottom * shapeSize.y - (toBottom - 1) * shapeGap}));
        const Shape& shape = shapes.at(static_cast<std::size_t>(i));
        UI::buttonIconEx(shape.icon, shapeIcon * UI::scale(), Product::tr(shape.label), scaled(shapeSize));
    }
    ImGui::PopStyleColor(4);
}

} // namespace

WelcomeWindow::WelcomeWindow() = default;

WelcomeWindow::~WelcomeWindow()
{
    shutdown();
}

void WelcomeWindow::init(QuorvixRibbonMenu* menu, ItemCallback callback)
{
    shutdown();
    menu_ = menu;
    setShowOnStartup(Config::instance().getBool(ShowWelcomeWindowSetting::configKey, true), true);
    itemCallback = std::move(callback);
    const RibbonItemInfo* settings = RibbonSchemaHolder::find("Viewer settings");
    settingsPlugin_ = settings ? std::dynamic_pointer_cast<ViewerSettingsPlugin>(settings->item) : nullptr;
    if (!settingsPlugin_)
        return;
    setting_ = std::make_shared<ShowWelcomeWindowSetting>(showOnStartup);
    settingsPlugin_->addComboSettings(ViewerSettingsPlugin::TabType::Application, setting_);
}

void WelcomeWindow::shutdown()
{
    if (settingsPlugin_)
        settingsPlugin_->removeSettings(setting_);
    settingsPlugin_.reset();
    setting_.reset();
    itemCallback = {};
    menu_ = nullptr;
}

void WelcomeWindow::setShowOnStartup(bool show, bool applyNow)
{
    if (show == showOnStartup)
        return;
    showOnStartup = show;
    if (applyNow)
        open = show;
}

bool WelcomeWindow::isSceneTaken_() const
{
    const Viewer& viewer = getViewerInstance();
    return menu_->isStartupModalShown() || holdsVisualObject(viewer.scene()) || viewer.view().hasPreview();
}

bool WelcomeWindow::hasRoom_() const
{
    const PixelSize size = getViewerInstance().framebufferSize();
    const float width = static_cast<float>(size.width) - menu_->leftPanelWidth();
    const float height = static_cast<float>(size.height) - UI::scale() * menu_->topPanelHeight();
    return width >= smallestArea.x * UI::scale() && height >= smallestArea.y * UI::scale();
}

bool WelcomeWindow::isDue() const
{
    return menu_ && (open || showOnStartup) && !isSceneTaken_() && hasRoom_();
}

void WelcomeWindow::draw()
{
    if (!menu_ || (!open && !showOnStartup))
        return;
    open = !isSceneTaken_();
    if (!open || !hasRoom_())
        return;
    const PixelSize size = getViewerInstance().framebufferSize();
    center_ = {(static_cast<float>(size.width) + menu_->leftPanelWidth()) / 2,
               (static_cast<float>(size.height) + UI::scale() * menu_->topPanelHeight()) / 2};
    ImGui::PushStyleVar(ImGuiStyleVar_WindowRounding, UI::px(rounding));
    drawDragDrop_();
    drawQuickstart_();
    drawCreateObject_();
    ImGui::PopStyleVar();
    drawCheckbox_();
}

void WelcomeWindow::beginCard_(const char* name, ImVec2 position, ImVec2 size)
{
    const ImVec2 offset = scaled(position);
    ImGuiMV::SetNextWindowPosMainViewport({center_.x + offset.x, center_.y + offset.y}, ImGuiCond_Always, {0, 0});
    ImGui::SetNextWindowSize(scaled(size));
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(0, 0));
    ImGui::PushStyleVar(ImGuiStyleVar_WindowMinSize, ImVec2(1, 1));
    UI::beginWindow(name, ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoScrollbar,
                    &open);
    ImGui::PopStyleVar(2);
}

void WelcomeWindow::drawDragDrop_()
{
    beginCard_("##DragDropArea", {left, top}, {cardWidth, tallCard});
    drawPicture("DragDrop", dropSource, dropPicture);
    {
        const UI::ScopedFont headline(UI::Font::Headline);
        ImGui::SetCursorPosY(dropTitleTop * UI::scale());
        centeredLine(Product::tr("Drag & Drop Files"));
        centeredLine(Product::tr("Anywhere to Open"));
    }
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, UI::px(lineGap)));
    ImGui::SetCursorPosY(dropNoteTop * UI::scale());
    centeredLine(Product::tr("To open DICOMs, RAW Voxels, TIFF use"));
    centeredLine(Product::tr("ribbon menu."));
    ImGui::PopStyleVar();
    UI::endWindow();
}

void WelcomeWindow::drawQuickstart_()
{
    beginCard_("##Quickstart", {right, top}, {cardWidth, lowCard});
    drawTitle(Product::tr("Quickstart"));
    drawLines({Product::tr("This curated video collection will"), Product::tr("quickly and efficiently guide you"),
               Product::tr("through the essentials.")});
    drawPicture("Youtube", videoSource, videoPicture);
    if (drawButton(Product::tr("Watch Video")))
    {
        SessionLogs::logAction("Welcome Screen: \"Watch Video\" Clicked", false);
        openWebsitePage("/inappvideo/onboarding_first_session");
    }
    UI::endWindow();
}

void WelcomeWindow::drawCreateObject_()
{
    beginCard_("##CreateSimpleObject", {right, middle}, {cardWidth, lowCard});
    drawTitle(Product::tr("Create Simple Object"));
    drawLines({Product::tr("Easily generate basic shapes like"), Product::tr("cubes, spheres, and more using"),
               Product::tr("default settings.")});
    drawShapes();
    if (drawButton(Product::tr("Create Object")))
    {
        SessionLogs::logAction("Welcome Screen: \"Create Object\" Clicked", false);
        const RibbonItemInfo* tool = RibbonSchemaHolder::find("Create Simple Objects");
        // A copy: the item may change the schema.
        if (const auto item = tool ? tool->item : nullptr; item && itemCallback)
            itemCallback(item, {});
    }
    UI::endWindow();
}

void WelcomeWindow::drawCheckbox_()
{
    ImGui::PushStyleColor(ImGuiCol_WindowBg, 0);
    ImGui::PushStyleColor(ImGuiCol_Border, 0);
    beginCard_("##CheckboxWindow", {left, bottom}, {cardWidth, checkboxHeight});
    ImGui::PopStyleColor(2);
    if (UI::checkbox(Product::tr("Show on Startup"), showOnStartup))
    {
        if (!showOnStartup)
            SessionLogs::logAction("Welcome Screen Disabled", false);
        Config::instance().setBool(ShowWelcomeWindowSetting::configKey, showOnStartup);
    }
    UI::endWindow();
}

} // namespace VX
