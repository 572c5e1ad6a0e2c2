#include "RibbonJson.h"

#include <VXViewer/RibbonConfig.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/Viewer.h>

namespace VX
{

namespace
{

std::optional<bool> switchOf(const Json::Value& structure, const char* key)
{
    const Json::Value& value = RibbonJson::member(structure, key);
    return value.isBool() ? std::optional(value.asBool()) : std::nullopt;
}

} // namespace

RibbonConfig createRibbonConfigFromJson(const Json::Value& root)
{
    const Json::Value& structure = RibbonJson::member(root, "RibbonStructure");
    const auto names = [&](const char* key) { return RibbonJson::names(RibbonJson::member(structure, key)); };
    RibbonConfig config;
    config.drawHeader = switchOf(structure, "drawHeader");
    config.drawQuickAccess = switchOf(structure, "drawQuickAccess");
    config.drawToolbar = switchOf(structure, "drawToolbar");
    config.drawSceneList = switchOf(structure, "drawSceneList");
    config.hiddenTabs = names("hiddenTabs");
    config.hiddenItems = names("hiddenItems");
    config.tabOrder = names("tabOrder");
    config.quickAccess = names("quickAccess");
    config.toolbar = names("toolbar");
    const Json::Value& tabs = RibbonJson::member(structure, "tabs");
    if (tabs.isArray())
        config.tabs = RibbonJson::tabs(tabs);
    return config;
}

void applyRibbonConfig(const RibbonConfig& config)
{
    if (const auto menu = std::dynamic_pointer_cast<RibbonMenu>(getViewerInstance().getMenuPlugin()))
        menu->applyConfig(config);
}

} // namespace VX
