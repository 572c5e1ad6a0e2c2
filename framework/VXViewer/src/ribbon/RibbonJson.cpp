#include "RibbonJson.h"

#include <algorithm>
#include <utility>

namespace VX::RibbonJson
{

namespace
{

using Wrong = std::vector<std::string>;

void note(Wrong* wrong, std::string what)
{
    if (wrong)
        wrong->push_back(std::move(what));
}

RibbonItemSize sizeOf(const Json::Value& entry, RibbonItemSize usual, Wrong* wrong)
{
    const Json::Value& size = member(entry, "size");
    if (size.isNull())
        return usual;
    if (size.isString() && size.asString() == "small")
        return RibbonItemSize::Small;
    if (!size.isString() || size.asString() != "large")
        note(wrong, "a \"size\" that is neither \"large\" nor \"small\"");
    return RibbonItemSize::Large;
}

std::string textOf(const Json::Value& entry, const char* key)
{
    return name(member(entry, key)).value_or(std::string());
}

std::optional<RibbonEntry> entryOf(const Json::Value& value, Wrong* wrong)
{
    RibbonEntry entry;
    if (auto plain = name(value))
    {
        entry.item = std::move(*plain);
        return entry;
    }
    entry.size = sizeOf(value, RibbonItemSize::Large, wrong);
    if (auto item = name(member(value, "name")))
    {
        entry.item = std::move(*item);
        return entry;
    }
    auto caption = name(member(value, "dropDown"));
    auto items = names(member(value, "items"));
    if (!caption || !items || items->empty())
        return std::nullopt;
    entry.item = std::move(*caption);
    entry.dropDown = std::move(*items);
    entry.icon = textOf(value, "icon");
    entry.tooltip = textOf(value, "tooltip");
    return entry;
}

std::optional<RibbonGroup> groupOf(const Json::Value& value, Wrong* wrong)
{
    auto groupName = name(member(value, "name"));
    const Json::Value& items = member(value, "items");
    if (!groupName || !items.isArray())
        return std::nullopt;
    RibbonGroup group{std::move(*groupName), {}};
    const Json::ArrayIndex count = std::min(items.size(), maxNames);
    for (Json::ArrayIndex i = 0; i < count; ++i)
    {
        if (auto entry = entryOf(items[i], wrong))
            group.entries.push_back(std::move(*entry));
        else
            note(wrong, "an entry of the group \"" + group.name + "\" that is neither an item nor a drop-down");
    }
    return group;
}

std::optional<RibbonTab> tabOf(const Json::Value& value, Wrong* wrong)
{
    auto tabName = name(member(value, "name"));
    const Json::Value& groups = member(value, "groups");
    if (!tabName || !groups.isArray())
        return std::nullopt;
    RibbonTab tab{std::move(*tabName), textOf(value, "forType"), {}};
    const Json::ArrayIndex count = std::min(groups.size(), maxGroups);
    for (Json::ArrayIndex i = 0; i < count; ++i)
    {
        if (auto group = groupOf(groups[i], wrong))
            tab.groups.push_back(std::move(*group));
        else
            note(wrong, "a group of the tab \"" + tab.name + "\" without a \"name\" or \"items\"");
    }
    return tab;
}

} // namespace

const Json::Value& member(const Json::Value& value, const char* key)
{
    return value.isObject() ? value[key] : Json::Value::nullSingleton();
}

std::optional<std::string> name(const Json::Value& value)
{
    const char* begin = nullptr;
    const char* end = nullptr;
    if (!value.isString() || !value.getString(&begin, &end))
        return std::nullopt;
    const auto length = static_cast<std::size_t>(end - begin);
    if (length == 0 || length > maxNameBytes)
        return std::nullopt;
    return std::string(begin, end);
}

std::optional<std::vector<std::string>> names(const Json::Value& value)
{
    if (!value.isArray())
        return std::nullopt;
    std::vector<std::string> result;
    const Json::ArrayIndex count = std::min(value.size(), maxNames);
    for (Json::ArrayIndex i = 0; i < count; ++i)
    {
        if (auto each = name(value[i]))
            result.push_back(std::move(*each));
    }
    return result;
}

std::vector<RibbonTab> tabs(const Json::Value& value, Wrong* wrong)
{
    std::vector<RibbonTab> result;
    const Json::ArrayIndex count = value.isArray() ? std::min(value.size(), maxTabs) : 0;
    for (Json::ArrayIndex i = 0; i < count; ++i)
    {
        if (auto tab = tabOf(value[i], wrong))
            result.push_back(std::move(*tab));
        else
            note(wrong, "a tab without a \"name\" or \"groups\"");
    }
    return result;
}

} // namespace VX::RibbonJson
