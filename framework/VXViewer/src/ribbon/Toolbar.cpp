#include "RibbonButtons.h"
#include "RibbonJson.h"
#include "RibbonLayout.h"
#include "ToolbarWindow.h"
#include "menu/PanelWindow.h"
#include "menu/Translate.h"

#include <VXMesh/Config.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/Toolbar.h>
#include <VXViewer/UI.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace VX
{

namespace
{

constexpr const char* configKey = "toolbar";
constexpr float padding = 4;
constexpr float edge = 8;
constexpr float button = 28;

/// The room that the view cube takes at the right.
constexpr float cubeRoom = 120;

Json::Value toJson(const std::vector<std::string>& names)
{
    Json::Value list(Json::arrayValue);
    for (const std::string& name : names)
        list.append(name);
    return list;
}

} // namespace

struct Toolbar::State
{
    Migrations migrations;
    std::vector<std::string> defaults;
    int defaultsVersion = 1;
    std::vector<std::string> items;
    bool loaded = false;
    bool isUsersChoice = false;
    ToolbarWindow window;
};

Toolbar::Toolbar()
    : state_(std::make_unique<State>())
{
}

Toolbar::~Toolbar() = default;

void Toolbar::setItemsListMigrations(const Migrations& migrations)
{
    state_->migrations = migrations;
    state_->loaded = false;
}

void Toolbar::setDefaults(std::vector<std::string> names, int version)
{
    state_->defaults = std::move(names);
    state_->defaultsVersion = version;
    state_->loaded = false;
}

void Toolbar::reload()
{
    state_->loaded = false;
}

int Toolbar::version_() const
{
    const Migrations& migrations = state_->migrations;
    return std::max(state_->defaultsVersion, migrations.empty() ? 1 : migrations.rbegin()->first);
}

void Toolbar::load_() const
{
    state_->loaded = true;
    const Json::Value saved = Config::instance().getJson(configKey, Json::Value());
    auto names = RibbonJson::names(RibbonJson::member(saved, "items"));
    state_->isUsersChoice = names.has_value();
    if (!names)
    {
        state_->items = state_->defaults;
        return;
    }
    const Json::Value& version = RibbonJson::member(saved, "version");
    const int savedVersion = version.isInt() ? version.asInt() : 1;
    for (const auto& [to, migrate] : state_->migrations)
    {
        if (to > savedVersion && migrate)
            migrate(*names);
    }
    state_->items = std::move(*names);
}

const std::vector<std::string>& Toolbar::items() const
{
    if (!state_->loaded)
        load_();
    return state_->items;
}

void Toolbar::setItems(std::vector<std::string> names)
{
    state_->loaded = true;
    state_->isUsersChoice = true;
    state_->items = std::move(names);
    save_();
}

void Toolbar::save_()
{
    Json::Value saved(Json::objectValue);
    saved["items"] = toJson(state_->items);
    saved["version"] = version_();
    Config::instance().setJson(configKey, saved);
}

void Toolbar::resetItems()
{
    Config::instance().setJson(configKey, Json::Value());
    state_->loaded = false;
}

void Toolbar::openCustomize()
{
    state_->window.open();
}

void Toolbar::draw(const PixelRect& area, const RibbonLayout& layout, RibbonButtons& buttons)
{
    drawStrip_(area, layout, buttons);
    state_->window.draw(*this, area, layout);
}

int Toolbar::depth()
{
    return static_cast<int>(std::ceil(UI::px(edge + button + 2 * padding)));
}

void Toolbar::drawStrip_(const PixelRect& area, const RibbonLayout& layout, RibbonButtons& buttons)
{
    std::vector<RibbonButton> shown;
    for (const std::string& name : items())
    {
        if (layout.isHidden(name))
            continue;
        if (auto made = makeRibbonButton(RibbonSchemaHolder::schema(), name))
            shown.push_back(std::move(*made));
    }
    // In the middle where the view cube leaves the room, else beside it. What does not fit is left out.
    const float areaLeft = static_cast<float>(area.x);
    const float areaWidth = static_cast<float>(area.width);
    const float room = areaWidth - UI::px(cubeRoom + edge);
    const auto most = static_cast<std::size_t>(std::max(0.0F, (room - UI::px(button + 2 * padding)) / UI::px(button)));
    const bool fitsNone = most == 0 && !shown.empty();
    shown.resize(std::min(shown.size(), most));
    const float width = UI::px(button) * static_cast<float>(shown.size() + 1) + UI::px(2 * padding);
    if (fitsNone || room < width)
        return;
    const float left = areaLeft + std::floor(std::min((areaWidth - width) / 2, areaWidth - UI::px(cubeRoom) - width));
    ImGui::SetNextWindowPos({left, static_cast<float>(area.y) + UI::px(edge)});
    ImGui::SetNextWindowSize({width, UI::px(button + 2 * padding)});
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(padding), UI::px(padding)));
    ImGui::PushStyleVar(ImGuiStyleVar_ItemSpacing, ImVec2(0, 0));
    ImGui::PushStyleVar(ImGuiStyleVar_WindowMinSize, ImVec2(1, 1));
    UI::beginWindow("Toolbar", barFlags);
    ImGui::PopStyleVar();
    for (const RibbonButton& each : shown)
    {
        buttons.draw(each, RibbonButtonForm::Icon, UI::px(button));
        ImGui::SameLine();
    }
    RibbonButton more;
    more.caption = tr("Customize the toolbar");
    more.icon = "dots-vertical";
    if (buttons.drawPlain("##customize", more, RibbonButtonForm::Icon, UI::px(button), state_->window.isOpen()))
        state_->window.open();
    ImGui::PopStyleVar(2);
    UI::tooltip(more.caption);
    UI::endWindow();
}

} // namespace VX
