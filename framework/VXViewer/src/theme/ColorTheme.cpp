#include "../ui/UiState.h"
#include "Palette.h"
#include "ThemeFile.h"

#include <VXMesh/Config.h>
#include <VXViewer/ColorTheme.h>
#include <VXViewer/Viewer.h>

#include <boost/signals2/signal.hpp>
#include <spdlog/spdlog.h>

#include <utility>

namespace VX
{

namespace
{

constexpr const char* configKey = "theme";
constexpr const char* presetKey = "preset";
constexpr const char* userKey = "user";

struct ThemeState
{
    ColorTheme::Preset preset = ColorTheme::Preset::Dark;
    std::string userTheme; ///< empty: the preset
    std::vector<std::string> found;
    boost::signals2::signal<void()> changed;

    static ThemeState& instance()
    {
        static ThemeState state;
        return state;
    }
};

/// The roles in the order of `RibbonColor`.
constexpr std::array ribbonRoles{ThemeRole::Window,        ThemeRole::Panel,         ThemeRole::Panel,
                                 ThemeRole::Border,        ThemeRole::SecondaryText, ThemeRole::RaisedHovered,
                                 ThemeRole::RaisedPressed, ThemeRole::Selection,     ThemeRole::SecondaryText,
                                 ThemeRole::Text,          ThemeRole::Accent,        ThemeRole::Panel,
                                 ThemeRole::DisabledText,  ThemeRole::Text,          ThemeRole::Icon,
                                 ThemeRole::AccentHovered, ThemeRole::Raised};

void remember()
{
    const ThemeState& state = ThemeState::instance();
    Json::Value choice(Json::objectValue);
    if (state.userTheme.empty())
        choice[presetKey] = state.preset == ColorTheme::Preset::Light ? "light" : "dark";
    else
        choice[userKey] = state.userTheme;
    Config& config = Config::instance();
    if (config.getJson(configKey, Json::nullValue) != choice)
        config.setJson(configKey, choice);
}

void show(ColorTheme::Preset preset, const Palette& palette, std::string userTheme)
{
    ThemeState& state = ThemeState::instance();
    if (state.preset == preset && state.userTheme == userTheme && Palette::current() == palette)
        return;
    state.preset = preset;
    state.userTheme = std::move(userTheme);
    Palette::current() = palette;
    UiState::instance().styleOutdated = true;
    getViewerInstance().incrementForceRedrawFrames(framesForAChange);
    state.changed();
}

void showPreset(ColorTheme::Preset preset)
{
    show(preset, preset == ColorTheme::Preset::Light ? Palette::light() : Palette::dark(), {});
}

tl::expected<void, std::string> showUserTheme(const std::string& name)
{
    const auto file = ThemeFile::read(name);
    if (!file)
        return tl::unexpected(file.error());
    show(file->base, file->palette, name);
    return {};
}

} // namespace

boost::signals2::connection ColorTheme::onChanged(const std::function<void()>& slot)
{
    return ThemeState::instance().changed.connect(slot);
}

void ColorTheme::setupDefaultDark()
{
    showPreset(Preset::Dark);
    remember();
}

void ColorTheme::setupDefaultLight()
{
    showPreset(Preset::Light);
    remember();
}

tl::expected<void, std::string> ColorTheme::setupUserTheme(const std::string& name)
{
    auto shown = showUserTheme(name);
    if (shown)
        remember();
    return shown;
}

void ColorTheme::restore()
{
    const Json::Value choice = Config::instance().getJson(configKey, Json::objectValue);
    if (!choice.isObject())
    {
        showPreset(Preset::Dark);
        return;
    }
    const Json::Value& user = choice[userKey];
    if (user.isString())
    {
        const auto shown = showUserTheme(user.asString());
        if (shown)
            return;
        spdlog::warn("The color theme that was chosen last cannot be used: the dark one is shown.");
        spdlog::debug("{}", shown.error());
    }
    showPreset(choice[presetKey] == Json::Value("light") ? Preset::Light : Preset::Dark);
}

void ColorTheme::updateUserThemesList()
{
    ThemeState::instance().found = ThemeFile::findAll();
}

const std::vector<std::string>& ColorTheme::foundUserThemes()
{
    return ThemeState::instance().found;
}

ColorTheme::Type ColorTheme::getType()
{
    return ThemeState::instance().userTheme.empty() ? Type::Preset : Type::User;
}

ColorTheme::Preset ColorTheme::getPreset()
{
    return ThemeState::instance().preset;
}

const std::string& ColorTheme::getUserThemeName()
{
    return ThemeState::instance().userTheme;
}

std::string ColorTheme::getPresetName(Preset preset)
{
    return preset == Preset::Light ? "Light" : "Dark";
}

ImU32 ColorTheme::getRibbonColor(int index)
{
    const bool known = index >= 0 && index < static_cast<int>(ribbonRoles.size());
    const ThemeRole role = known ? ribbonRoles.at(static_cast<std::size_t>(index)) : ThemeRole::Text;
    const Color color = Palette::current().get(role);
    return IM_COL32(color.r, color.g, color.b, color.a);
}

Color ColorTheme::viewportTop()
{
    return Palette::current().get(ThemeRole::ViewportTop);
}

Color ColorTheme::viewportBottom()
{
    return Palette::current().get(ThemeRole::ViewportBottom);
}

Color ColorTheme::selectedFaces()
{
    return Palette::current().get(ThemeRole::SelectedFaces);
}

} // namespace VX
