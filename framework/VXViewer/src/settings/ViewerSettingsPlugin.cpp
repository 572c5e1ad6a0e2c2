#include "SettingRow.h"
#include "SettingsPage.h"
#include "menu/Translate.h"
#include "ui/UiDrawing.h"

#include <VXViewer/ColorTheme.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/UiTree.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsPlugin.h>

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace VX
{

namespace
{

constexpr ImVec2 usualSize{560, 600};
constexpr ImVec2 padding{16, 12};
constexpr float margin = 8;
constexpr float controlHeight = 28;

/// A setting of another part.
struct External
{
    std::shared_ptr<ViewerSettingsPlugin::ExternalSettings> settings;
    /// Its first widget says the same as a headline would.
    bool namesItself = false;
};

/// Places the next window, at first in the middle below the ribbon, where there is room; it is never larger than the
/// program's window.
void placeWindow()
{
    const ImGuiViewport& viewport = *ImGui::GetMainViewport();
    const float space = UI::px(margin);
    const ImVec2 size(std::max(1.0F, std::min(UI::px(usualSize.x), viewport.Size.x - 2 * space)),
                      std::max(1.0F, std::min(UI::px(usualSize.y), viewport.Size.y - 2 * space)));
    const PixelRect& scene = getViewerInstance().view().area();
    const float middle = static_cast<float>(scene.y) + static_cast<float>(scene.height) / 2;
    const float top = std::max(space, std::min(middle - size.y / 2, viewport.Size.y - space - size.y));
    ImGui::SetNextWindowSize(size);
    ImGui::SetNextWindowPos({std::round((viewport.Size.x - size.x) / 2), std::round(top)}, ImGuiCond_Appearing);
}

} // namespace

struct ViewerSettingsPlugin::Tab
{
    TabType type;
    const char* name;
    std::unique_ptr<SettingsPage> page; ///< null: nothing of the viewer's own
    std::vector<External> external;

    [[nodiscard]] bool isEmpty() const { return !page && external.empty(); }
};

ViewerSettingsPlugin::ExternalSettings::~ExternalSettings() = default;

void ViewerSettingsPlugin::ExternalSettings::reset() {}

const std::shared_ptr<ViewerSettingsPlugin>& ViewerSettingsPlugin::instance()
{
    static const std::shared_ptr<ViewerSettingsPlugin> plugin(new ViewerSettingsPlugin);
    return plugin;
}

ViewerSettingsPlugin::ViewerSettingsPlugin()
    : RibbonMenuItem("Viewer settings")
{
    const auto add = [this](TabType type, const char* name, std::unique_ptr<SettingsPage> page)
    { tabs_.push_back(std::make_unique<Tab>(Tab{type, name, std::move(page), {}})); };
    add(TabType::Quick, translatable("Quick"), nullptr);
    add(TabType::Application, translatable("Application"), makeApplicationSettings());
    add(TabType::Control, translatable("Control"), makeControlSettings());
    add(TabType::View, translatable("View"), makeViewSettings());
}

ViewerSettingsPlugin::~ViewerSettingsPlugin() = default;

void ViewerSettingsPlugin::press()
{
    setEnabled(!enabled_);
}

bool ViewerSettingsPlugin::isActive() const
{
    return enabled_;
}

void ViewerSettingsPlugin::deactivate()
{
    setEnabled(false);
}

void ViewerSettingsPlugin::setEnabled(bool enabled)
{
    if (enabled && !enabled_)
        ColorTheme::updateUserThemesList();
    appearing_ = enabled && !enabled_;
    selectTab_ = selectTab_ || appearing_;
    enabled_ = enabled;
    getViewerInstance().incrementForceRedrawFrames(2);
}

void ViewerSettingsPlugin::setActiveTab(TabType tab)
{
    activeTab_ = tab;
    selectTab_ = true;
    getViewerInstance().incrementForceRedrawFrames(2);
}

ViewerSettingsPlugin::Tab& ViewerSettingsPlugin::tab_(TabType type) const
{
    return **std::find_if(tabs_.begin(), tabs_.end(), [type](const auto& tab) { return tab->type == type; });
}

void ViewerSettingsPlugin::addComboSettings(TabType tab, std::shared_ptr<ExternalSettings> settings)
{
    std::vector<External>& external = tab_(tab).external;
    const bool isThere = std::any_of(external.begin(), external.end(),
                                     [&](const External& entry) { return entry.settings == settings; });
    if (settings && !isThere)
        external.push_back({std::move(settings)});
}

void ViewerSettingsPlugin::removeSettings(const std::shared_ptr<ExternalSettings>& settings)
{
    for (const auto& tab : tabs_)
        std::erase_if(tab->external, [&](const External& entry) { return entry.settings == settings; });
}

void ViewerSettingsPlugin::reset()
{
    for (const auto& tab : tabs_)
        tab->external.clear();
    activeTab_ = TabType::Application;
    selectTab_ = true;
    enabled_ = false;
}

void ViewerSettingsPlugin::drawPanel()
{
    if (!enabled_)
        return;
    placeWindow();
    if (std::exchange(appearing_, false))
        ImGui::SetNextWindowFocus();
    bool open = true;
    const std::string title = tr("Settings") + "###ViewerSettings";
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(padding.x), UI::px(padding.y)));
    const bool visible = UI::beginWindow(title.c_str(),
                                         ImGuiWindowFlags_NoCollapse | ImGuiWindowFlags_NoResize |
                                             ImGuiWindowFlags_NoScrollbar | ImGuiWindowFlags_NoSavedSettings,
                                         &open);
    ImGui::PopStyleVar();
    if (visible)
    {
        UI::keepInside();
        drawTabs_(UI::px(controlHeight) + 2 * ImGui::GetStyle().ItemSpacing.y);
        drawButtons_();
        open = !UI::escapePressed() && open;
    }
    UI::endWindow();
    if (!open)
        setEnabled(false);
}

void ViewerSettingsPlugin::drawTabs_(float spaceBelow)
{
    if (tab_(activeTab_).isEmpty())
        activeTab_ = TabType::Application;
    if (!UI::beginTabBar("Settings"))
        return;
    const TabType wanted = activeTab_;
    for (const auto& tab : tabs_)
    {
        if (tab->isEmpty())
            continue;
        // The tab that is shown stays the same when its name changes with the language.
        const std::string label = fmt::format("{}###{}", tr(tab->name), tab->name);
        if (!UI::tab(label, selectTab_ && tab->type == wanted))
            continue;
        if (!selectTab_ || tab->type == wanted)
        {
            activeTab_ = tab->type;
            selectTab_ = false;
        }
        // One goes on with Tab from the tabs to the settings, and from them to the buttons.
        if (ImGui::BeginChild(tab->name, {0, -spaceBelow}, false, ImGuiWindowFlags_NavFlattened))
        {
            if (tab->page)
                tab->page->draw(getViewerInstance());
            drawExternal_(*tab);
        }
        ImGui::EndChild();
    }
    UI::endTabBar();
}

void ViewerSettingsPlugin::drawExternal_(Tab& tab)
{
    // A copy: a setting may take itself away.
    const std::vector<External> all = tab.external;
    std::vector<std::string_view> drawn;
    for (const External& first : all)
    {
        const std::string_view section = first.settings->getName();
        if (std::find(drawn.begin(), drawn.end(), section) != drawn.end())
            continue;
        drawn.push_back(section);
        if (!section.empty() && !first.namesItself)
            settingSection(Locale::translate(std::string(section)));
        for (const External& entry : all)
        {
            if (entry.settings->getName() == section)
                drawOne_(tab, *entry.settings);
        }
    }
}

void ViewerSettingsPlugin::drawOne_(Tab& tab, ExternalSettings& settings)
{
    const std::size_t first = UiTree::instance().drawnCount();
    ImGui::PushID(&settings);
    settings.draw(UI::scale());
    ImGui::PopID();
    const UiItem* widget = UiTree::instance().drawnAt(first);
    const auto entry = std::find_if(tab.external.begin(), tab.external.end(),
                                    [&](const External& external) { return external.settings.get() == &settings; });
    if (widget && entry != tab.external.end())
        entry->namesItself = widget->label == Locale::translate(settings.getName());
}

void ViewerSettingsPlugin::drawButtons_()
{
    UI::separator();
    if (UI::button(tr("Reset This Tab")))
        resetTab_(tab_(activeTab_));
    UI::tooltip(tr("Brings the settings of this tab back to what they are in a new installation"));
    ImGui::SameLine();
    if (UI::button(tr("Reset All")))
    {
        for (const auto& tab : tabs_)
            resetTab_(*tab);
    }
    UI::tooltip(tr("Brings all settings back to what they are in a new installation"));
    const std::string close = tr("Close");
    const float start = ImGui::GetContentRegionMax().x - UI::buttonWidth(close);
    ImGui::SameLine();
    // In a narrow window the cross does.
    if (start < ImGui::GetCursorPosX())
    {
        ImGui::NewLine();
        return;
    }
    ImGui::SameLine(start);
    if (UI::button(close))
        setEnabled(false);
}

void ViewerSettingsPlugin::resetTab_(const Tab& tab)
{
    if (tab.page)
        tab.page->reset(getViewerInstance());
    for (const External& entry : std::vector(tab.external))
        entry.settings->reset();
}

} // namespace VX
