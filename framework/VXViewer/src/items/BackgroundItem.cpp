#include "BackgroundItem.h"

#include "ColorField.h"
#include "menu/Translate.h"

#include <VXViewer/ColorTheme.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>

#include <imgui.h>

namespace VX
{

namespace
{

constexpr float panelWidth = 260;
constexpr float fieldWidth = 140;

constexpr const char* kindKey = "background";
constexpr const char* topKey = "backgroundTop";
constexpr const char* bottomKey = "backgroundBottom";

int toNumber(Color color)
{
    return color.r << 16 | color.g << 8 | color.b;
}

Color toColor(int number)
{
    const auto byte = [number](int shift) { return static_cast<std::uint8_t>(number >> shift & 0xFF); };
    return {byte(16), byte(8), byte(0), 255};
}

} // namespace

BackgroundItem::BackgroundItem(Viewer& viewer)
    : PanelItem("Background", viewer, {translatable("Background"), panelWidth})
{
    load_();
    if (kind_ != Kind::Theme)
        apply_();
}

void BackgroundItem::load_()
{
    const ViewerSettingsManager* settings = viewer_().settingsManager();
    top_ = ColorTheme::viewportTop();
    bottom_ = ColorTheme::viewportBottom();
    if (!settings)
        return;
    const int kind = settings->loadInt(kindKey, 0);
    kind_ = kind == 1 || kind == 2 ? static_cast<Kind>(kind) : Kind::Theme;
    top_ = toColor(settings->loadInt(topKey, toNumber(top_)));
    bottom_ = toColor(settings->loadInt(bottomKey, toNumber(bottom_)));
}

void BackgroundItem::store_() const
{
    const ViewerSettingsManager* settings = viewer_().settingsManager();
    if (!settings)
        return;
    settings->saveInt(kindKey, static_cast<int>(kind_));
    settings->saveInt(topKey, toNumber(top_));
    settings->saveInt(bottomKey, toNumber(bottom_));
}

void BackgroundItem::apply_() const
{
    SceneView& view = viewer_().view();
    if (kind_ == Kind::Theme)
        view.followThemeBackground();
    else
        view.setBackground(top_, kind_ == Kind::OneColor ? top_ : bottom_);
}

void BackgroundItem::drawContent_()
{
    auto kind = static_cast<int>(kind_);
    bool changed = UI::radio(tr("As the color theme"), kind, static_cast<int>(Kind::Theme));
    changed |= UI::radio(tr("One color"), kind, static_cast<int>(Kind::OneColor));
    changed |= UI::radio(tr("From top to bottom"), kind, static_cast<int>(Kind::Gradient));
    kind_ = static_cast<Kind>(kind);
    if (kind_ != Kind::Theme)
    {
        ImGui::SetNextItemWidth(UI::px(fieldWidth));
        changed |= colorField(kind_ == Kind::OneColor ? tr("Color") : tr("Top"), top_);
    }
    if (kind_ == Kind::Gradient)
    {
        ImGui::SetNextItemWidth(UI::px(fieldWidth));
        changed |= colorField(tr("Bottom"), bottom_);
    }
    if (!changed)
        return;
    apply_();
    store_();
}

} // namespace VX
