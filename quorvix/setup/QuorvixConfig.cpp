#include <quorvix/menu/QuorvixRibbonMenu.h>
#include <quorvix/setup/QuorvixConfig.h>

#include <VXMesh/Config.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/ViewportMask.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/CornerControllerObject.h>
#include <VXViewer/ItemEnabledPerViewport.h>
#include <VXViewer/RibbonFontManager.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>

#include <spdlog/spdlog.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

/// The member `name` of `parent`; null where there is none or `parent` is no object.
const Json::Value& member(const Json::Value& parent, const char* name)
{
    return parent.isObject() ? parent[name] : Json::Value::nullSingleton();
}

std::optional<bool> boolMember(const Json::Value& parent, const char* name)
{
    const Json::Value& value = member(parent, name);
    return value.isBool() ? std::optional(value.asBool()) : std::nullopt;
}

void readMenuLayout(const Json::Value& layout, QuorvixConfig& config)
{
    if (!layout.isObject())
        return;
    const auto menu = QuorvixRibbonMenu::instance();
    QuorvixMenuUIConfig& switches =
        config.menuUIConfig.emplace(menu ? menu->quorvixMenuConfig() : QuorvixMenuUIConfig());
    static constexpr std::pair<const char*, bool QuorvixMenuUIConfig::*> keys[]{
        {"drawWelcomeWindow", &QuorvixMenuUIConfig::drawWelcomeWindow},
        {"allowBaseShortcuts", &QuorvixMenuUIConfig::allowBaseShortcuts},
        {"allowHistoryShortcuts", &QuorvixMenuUIConfig::allowHistoryShortcuts},
        {"drawLogo", &QuorvixMenuUIConfig::drawLogo},
        {"drawGetDesktop", &QuorvixMenuUIConfig::drawGetDesktop},
    };
    for (const auto& [name, field] : keys)
        switches.*field = boolMember(layout, name).value_or(switches.*field);
}

/// From the last dot of the file name on, in lower case. Unlike the library's extension, that of ".ttf" is ".ttf".
std::string extensionOf(const std::filesystem::path& file)
{
    const std::string name = utf8string(file.filename());
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos ? std::string() : toLower(name.substr(dot));
}

/// The path of a font file; empty where `text` names none.
std::filesystem::path fontPath(const std::string& text)
{
    // The system would take the path to end there.
    if (text.find('\0') != std::string::npos)
        return {};
    std::filesystem::path file = pathFromUtf8(text);
    const std::string extension = extensionOf(file);
    std::error_code error;
    const bool isFont = (extension == ".ttf" || extension == ".otf") &&
                        std::filesystem::symlink_status(file, error).type() == std::filesystem::file_type::regular;
    return isFont ? std::move(file) : std::filesystem::path();
}

void readFonts(const Json::Value& fonts, QuorvixConfig& config)
{
    const char* cjk = member(fonts, "RegularCJK").isString() ? "RegularCJK" : "RegularSC";
    const char* const keys[]{"Regular", cjk, "SemiBold", "Monospace"};
    for (std::size_t slot = 0; slot < std::size(keys); ++slot)
    {
        const Json::Value& path = member(fonts, keys[slot]);
        if (path.isString())
            config.fontPaths[slot] = fontPath(path.asString());
    }
}

void applyFonts(const std::array<std::filesystem::path, 5>& replacements, RibbonFontManager& fonts)
{
    auto paths = fonts.getCurrentFontPaths();
    bool replaced = false;
    for (std::size_t slot = 0; slot < paths.size(); ++slot)
    {
        if (replacements[slot].empty())
            continue;
        paths[slot] = replacements[slot];
        replaced = true;
    }
    if (replaced)
        fonts.setNewFontPaths(paths);
}

void enableItem(std::string_view name, ViewportMask viewports)
{
    const RibbonItemInfo* const found = RibbonSchemaHolder::find(name);
    if (!found)
        return;
    if (const auto item = std::dynamic_pointer_cast<ItemEnabledPerViewport>(found->item))
        item->setEnabledViewports(viewports);
}

void enableViewportController(ViewportMask viewports)
{
    enableItem("Show_Hide Global Basis", viewports);
    enableItem("Toggle Projection Mode", viewports);
    Viewer& viewer = getViewerInstance();
    if (CornerControllerObject* corner = viewer.cornerController())
        corner->enable(viewports);
    viewer.view().options().globalBasis = viewports;
}

void replaceSettings(const Json::Value& document)
{
    Config::instance().setDocument(document);
    CommandLoop::appendCommand(
        []
        {
            Viewer& viewer = getViewerInstance();
            if (ViewerSettingsManager* settings = viewer.settingsManager())
                settings->loadSettings(viewer);
        },
        StartPosition::SetupDone);
}

} // namespace

QuorvixConfig createQuorvixConfigFromJson(const Json::Value& root)
{
    QuorvixConfig config;
    config.ribbonConfig = createRibbonConfigFromJson(root);
    readMenuLayout(member(root, "MenuLayout"), config);
    const Json::Value& decoration = member(root, "ViewportDecoration");
    config.scaleIndicator = boolMember(decoration, "scaleIndicator");
    config.viewportController = boolMember(decoration, "viewportController");
    if (const Json::Value& settings = member(root, "Config"); settings.isObject())
        config.config = settings;
    readFonts(member(root, "Fonts"), config);
    return config;
}

void applyQuorvixConfig(const QuorvixConfig& config)
{
    const auto menu = QuorvixRibbonMenu::instance();
    if (!menu)
    {
        spdlog::warn("Cannot apply layout config");
        return;
    }
    const auto mask = [](bool enabled) { return enabled ? ViewportMask::all() : ViewportMask(); };
    if (config.menuUIConfig)
        menu->setQuorvixMenuConfig(*config.menuUIConfig);
    applyFonts(config.fontPaths, menu->fontManager());
    applyRibbonConfig(config.ribbonConfig);
    if (config.scaleIndicator)
        enableItem("Draw Scale Indicator", mask(*config.scaleIndicator));
    if (config.viewportController)
        enableViewportController(mask(*config.viewportController));
    if (config.config)
        replaceSettings(*config.config);
}

} // namespace VX
