#pragma once

#include <VXViewer/RibbonMenuItem.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

/// An item and what the user sees of it. The texts are English and shown translated.
struct RibbonItemInfo
{
    std::shared_ptr<RibbonMenuItem> item; ///< null: named by a file, but not there; it is not shown then
    std::string caption;                  ///< empty: the name
    std::string tooltip;
    std::string icon;
    std::vector<std::string> keywords; ///< the command search finds it by these too
};

enum class RibbonItemSize
{
    Large, ///< a tall button, its caption below the icon
    Small  ///< a row of three, its caption beside the icon
};

/// One place of a group: an item or, with `dropDown`, a button that opens a list of items.
struct RibbonEntry
{
    std::string item; ///< the item's name; the caption of a drop-down
    RibbonItemSize size = RibbonItemSize::Large;
    std::vector<std::string> dropDown;
    std::string icon;    ///< of the drop-down
    std::string tooltip; ///< of the drop-down
};

struct RibbonGroup
{
    std::string name;
    std::vector<RibbonEntry> entries;
};

struct RibbonTab
{
    std::string name;
    std::string forType; ///< shown while an object of this `Object::typeName` is selected; empty: always
    std::vector<RibbonGroup> groups;
};

/// Everything that the ribbon can show.
struct RibbonSchema
{
    std::map<std::string, RibbonItemInfo, std::less<>> items;
    std::vector<RibbonTab> tabs;
    std::vector<std::string> quickAccess;
    std::vector<std::string> toolbar; ///< as it is before the user changes it
    int toolbarVersion = 1;           ///< of `toolbar`; lists saved with a lower one are migrated
};

} // namespace VX
