#include "RibbonLayout.h"

#include <VXViewer/Locale.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

using Names = std::vector<std::string>;

bool contains(const Names& names, std::string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// Makes the buttons of a schema, without those that are not there or hidden.
class ButtonMaker
{
public:
    ButtonMaker(const RibbonSchema& schema, const Names& hidden)
        : schema_(schema)
        , hidden_(hidden)
    {
    }

    [[nodiscard]] std::vector<RibbonButton> buttons(const Names& names) const
    {
        std::vector<RibbonButton> result;
        for (const std::string& name : names)
        {
            if (contains(hidden_, name))
                continue;
            if (auto button = makeRibbonButton(schema_, name))
                result.push_back(std::move(*button));
        }
        return result;
    }

    [[nodiscard]] std::optional<RibbonButton> button(const RibbonEntry& entry) const
    {
        std::vector<RibbonButton> items = buttons(entry.dropDown.empty() ? Names{entry.item} : entry.dropDown);
        if (items.empty())
            return std::nullopt;
        RibbonButton result;
        if (entry.dropDown.empty())
            result = std::move(items.front());
        else
            result = {nullptr,
                      entry.item,
                      Locale::translate(entry.item),
                      Locale::translate(entry.tooltip),
                      entry.icon,
                      entry.size,
                      std::move(items)};
        result.size = entry.size;
        return result;
    }

    [[nodiscard]] RibbonLayoutGroup group(const RibbonGroup& group) const
    {
        RibbonLayoutGroup result{group.name, Locale::translate(group.name), {}};
        for (const RibbonEntry& entry : group.entries)
        {
            if (auto made = button(entry))
                result.buttons.push_back(std::move(*made));
        }
        return result;
    }

private:
    const RibbonSchema& schema_;
    const Names& hidden_;
};

/// The tabs of the schema with the groups that the deployment gives them, and those that it adds.
std::vector<RibbonTab> reshapedTabs(const RibbonSchema& schema, const RibbonConfig& config)
{
    std::vector<RibbonTab> tabs = schema.tabs;
    for (const RibbonTab& change : config.tabs.value_or(std::vector<RibbonTab>()))
    {
        const auto known =
            std::find_if(tabs.begin(), tabs.end(), [&](const RibbonTab& each) { return each.name == change.name; });
        if (known == tabs.end())
            tabs.push_back(change);
        else
            known->groups = change.groups;
    }
    const Names hidden = config.hiddenTabs.value_or(Names());
    std::erase_if(tabs, [&](const RibbonTab& tab) { return contains(hidden, tab.name); });
    auto next = tabs.begin();
    for (const std::string& name : config.tabOrder.value_or(Names()))
    {
        const auto tab = std::find_if(next, tabs.end(), [&](const RibbonTab& each) { return each.name == name; });
        if (tab != tabs.end())
            next = std::rotate(next, tab, tab + 1);
    }
    return tabs;
}

template <typename T>
void take(std::optional<T>& into, const std::optional<T>& from)
{
    if (from)
        into = from;
}

} // namespace

std::optional<RibbonButton> makeRibbonButton(const RibbonSchema& schema, std::string_view name)
{
    const auto found = schema.items.find(name);
    if (found == schema.items.end() || !found->second.item)
        return std::nullopt;
    const RibbonItemInfo& info = found->second;
    return RibbonButton{info.item,
                        found->first,
                        Locale::translate(info.caption.empty() ? found->first : info.caption),
                        Locale::translate(info.tooltip),
                        info.icon,
                        RibbonItemSize::Small,
                        {}};
}

RibbonLayout::RibbonLayout(const RibbonSchema& schema, const RibbonConfig& config)
    : toolbar(config.toolbar.value_or(schema.toolbar))
    , hidden(config.hiddenItems.value_or(Names()))
{
    const ButtonMaker maker(schema, hidden);
    for (const RibbonTab& tab : reshapedTabs(schema, config))
    {
        RibbonLayoutTab shown{tab.name, Locale::translate(tab.name), tab.forType, {}};
        for (const RibbonGroup& group : tab.groups)
        {
            RibbonLayoutGroup made = maker.group(group);
            if (!made.buttons.empty())
                shown.groups.push_back(std::move(made));
        }
        if (!shown.groups.empty())
            tabs.push_back(std::move(shown));
    }
    quickAccess = maker.buttons(config.quickAccess.value_or(schema.quickAccess));
}

bool RibbonLayout::isHidden(std::string_view name) const
{
    return contains(hidden, name);
}

void mergeRibbonConfig(RibbonConfig& config, const RibbonConfig& added)
{
    take(config.drawHeader, added.drawHeader);
    take(config.drawQuickAccess, added.drawQuickAccess);
    take(config.drawToolbar, added.drawToolbar);
    take(config.drawSceneList, added.drawSceneList);
    take(config.hiddenTabs, added.hiddenTabs);
    take(config.hiddenItems, added.hiddenItems);
    take(config.tabOrder, added.tabOrder);
    take(config.tabs, added.tabs);
    take(config.quickAccess, added.quickAccess);
    take(config.toolbar, added.toolbar);
}

} // namespace VX
