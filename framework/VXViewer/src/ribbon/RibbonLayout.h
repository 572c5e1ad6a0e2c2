#pragma once

#include <VXViewer/RibbonConfig.h>
#include <VXViewer/RibbonSchema.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace VX
{

/// An item or a drop-down as it is shown: resolved and in the user's language.
struct RibbonButton
{
    std::shared_ptr<RibbonMenuItem> item; ///< null for a drop-down
    std::string name;                     ///< in the schema
    std::string caption;
    std::string tooltip;
    std::string icon;
    RibbonItemSize size = RibbonItemSize::Large;
    std::vector<RibbonButton> dropDown;
};

struct RibbonLayoutGroup
{
    std::string name;
    std::string caption;
    std::vector<RibbonButton> buttons;
};

struct RibbonLayoutTab
{
    std::string name;
    std::string caption;
    std::string forType; ///< as in `RibbonTab`
    std::vector<RibbonLayoutGroup> groups;
};

/// What the ribbon shows: the items of the schema that are there, in the shape that a deployment gave it. Tabs and
/// groups without an item are left out.
struct RibbonLayout
{
    std::vector<RibbonLayoutTab> tabs;
    std::vector<RibbonButton> quickAccess;
    std::vector<std::string> toolbar; ///< names, before the user changes them
    std::vector<std::string> hidden;  ///< names of items that are shown nowhere

    RibbonLayout() = default;

    /// @threads the UI thread
    RibbonLayout(const RibbonSchema& schema, const RibbonConfig& config);

    [[nodiscard]] bool isHidden(std::string_view name) const;
};

/// The item `name` as a button; nothing where there is no such item.
/// @threads the UI thread
[[nodiscard]] std::optional<RibbonButton> makeRibbonButton(const RibbonSchema& schema, std::string_view name);

/// Adds what `added` sets to `config`.
void mergeRibbonConfig(RibbonConfig& config, const RibbonConfig& added);

} // namespace VX
