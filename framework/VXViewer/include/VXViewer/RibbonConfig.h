#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/RibbonSchema.h>

#include <json/value.h>

#include <optional>
#include <string>
#include <vector>

namespace VX
{

/// How a deployment reshapes the ribbon; what is not set stays as it is.
struct RibbonConfig
{
    std::optional<bool> drawHeader;      ///< the row of tabs, quick access and command search
    std::optional<bool> drawQuickAccess; ///< the items at the left of the header
    std::optional<bool> drawToolbar;     ///< the favourite items over the scene
    std::optional<bool> drawSceneList;   ///< the panel at the left

    std::optional<std::vector<std::string>> hiddenTabs;
    std::optional<std::vector<std::string>> hiddenItems; ///< in the ribbon, its search, toolbar and context menu
    std::optional<std::vector<std::string>> tabOrder;    ///< tabs that are not named follow in their own order
    std::optional<std::vector<RibbonTab>> tabs; ///< each with new groups for the tab of its name, or a tab more
    std::optional<std::vector<std::string>> quickAccess;
    std::optional<std::vector<std::string>> toolbar; ///< as it is before the user changes it
};

/// Reads the object "RibbonStructure" of `root`, as described in docs/user/ui-document.md. Whatever has another type
/// than it should counts as absent. Lists are cut at 64 tabs, 64 groups of a tab, 256 items of a group or a list, and
/// names longer than 256 bytes are left out. Never throws.
/// @threads any
[[nodiscard]] VXVIEWER_API RibbonConfig createRibbonConfigFromJson(const Json::Value& root);

/// Gives the ribbon of the running viewer this shape, in addition to what was applied before. Names that nothing has
/// are ignored. Does nothing without a ribbon.
/// @threads the UI thread
VXVIEWER_API void applyRibbonConfig(const RibbonConfig& config);

} // namespace VX
