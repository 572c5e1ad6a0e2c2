#include "RibbonJson.h"

#include <VXMesh/Json.h>
#include <VXMesh/StringConvert.h>
#include <VXMesh/SystemPath.h>
#include <VXViewer/RibbonSchemaHolder.h>

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

namespace VX
{

namespace
{

struct Holder
{
    RibbonSchema schema;
    std::uint64_t revision = 1;

    static Holder& instance()
    {
        static Holder holder;
        return holder;
    }
};

tl::unexpected<std::string> damaged(const std::filesystem::path& path, const std::string& what)
{
    return tl::unexpected("The ribbon file \"" + utf8string(path.filename()) + "\" is damaged: " + what + '.');
}

/// What a file says of an item.
struct Look
{
    std::string name;
    RibbonItemInfo info;
};

std::optional<Look> lookOf(const Json::Value& value)
{
    auto name = RibbonJson::name(RibbonJson::member(value, "name"));
    if (!name)
        return std::nullopt;
    const auto text = [&](const char* key)
    { return RibbonJson::name(RibbonJson::member(value, key)).value_or(std::string()); };
    Look look{std::move(*name), {nullptr, text("caption"), text("tooltip"), text("icon"), {}}};
    look.info.keywords = RibbonJson::names(RibbonJson::member(value, "keywords")).value_or(std::vector<std::string>());
    return look;
}

/// Puts `groups` to those of `tab`.
void mergeGroups(RibbonTab& tab, std::vector<RibbonGroup> groups)
{
    for (RibbonGroup& group : groups)
    {
        const auto known = std::find_if(tab.groups.begin(), tab.groups.end(),
                                        [&](const RibbonGroup& each) { return each.name == group.name; });
        if (known == tab.groups.end())
            tab.groups.push_back(std::move(group));
        else
            known->entries.insert(known->entries.end(), std::make_move_iterator(group.entries.begin()),
                                  std::make_move_iterator(group.entries.end()));
    }
}

void mergeTabs(std::vector<RibbonTab>& tabs, std::vector<RibbonTab> added)
{
    for (RibbonTab& tab : added)
    {
        const auto known =
            std::find_if(tabs.begin(), tabs.end(), [&](const RibbonTab& each) { return each.name == tab.name; });
        if (known == tabs.end())
            tabs.push_back(std::move(tab));
        else
            mergeGroups(*known, std::move(tab.groups));
    }
}

void append(std::vector<std::string>& names, const std::vector<std::string>& added)
{
    names.insert(names.end(), added.begin(), added.end());
}

std::filesystem::path installedFolder()
{
    const auto executable = SystemPath::getExecutablePath();
    return executable ? executable->parent_path().parent_path() / "share" / "VXViewer" / "ribbon"
                      : std::filesystem::path();
}

} // namespace

RibbonSchema& RibbonSchemaHolder::schema()
{
    return Holder::instance().schema;
}

void RibbonSchemaHolder::addItem(std::shared_ptr<RibbonMenuItem> item)
{
    const std::string& name = item->name();
    schema().items[name].item = std::move(item);
    markChanged();
}

tl::expected<void, std::string> RibbonSchemaHolder::addFile(const std::filesystem::path& path)
{
    const auto root = deserializeJsonValue(path);
    if (!root)
        return tl::unexpected(root.error());
    if (!root->isObject())
        return damaged(path, "it is no object");
    std::vector<std::string> wrong;
    std::vector<Look> looks;
    for (const Json::Value& value : RibbonJson::member(*root, "items"))
    {
        if (auto look = lookOf(value))
            looks.push_back(std::move(*look));
        else
            wrong.emplace_back("an item without a \"name\"");
    }
    std::vector<RibbonTab> tabs = RibbonJson::tabs(RibbonJson::member(*root, "tabs"), &wrong);
    const Json::Value& version = RibbonJson::member(*root, "toolbarVersion");
    if (!version.isNull() && (!version.isInt() || version.asInt() < 1))
        wrong.emplace_back("a \"toolbarVersion\" that is no number from 1 up");
    if (!wrong.empty())
        return damaged(path, wrong.front());

    RibbonSchema& into = schema();
    for (Look& look : looks)
    {
        RibbonItemInfo& info = into.items[look.name];
        look.info.item = info.item;
        info = std::move(look.info);
    }
    mergeTabs(into.tabs, std::move(tabs));
    append(into.quickAccess,
           RibbonJson::names(RibbonJson::member(*root, "quickAccess")).value_or(std::vector<std::string>()));
    append(into.toolbar, RibbonJson::names(RibbonJson::member(*root, "toolbar")).value_or(std::vector<std::string>()));
    if (version.isInt())
        into.toolbarVersion = std::max(into.toolbarVersion, version.asInt());
    markChanged();
    return {};
}

tl::expected<void, std::string> RibbonSchemaHolder::addInstalledFiles()
{
    const std::filesystem::path folder = installedFolder();
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error))
    {
        if (entry.path().extension() == ".json")
            files.push_back(entry.path());
    }
    if (files.empty())
        return tl::unexpected("Cannot find the layout of the ribbon in \"" + utf8string(folder) + "\".");
    std::sort(files.begin(), files.end());
    tl::expected<void, std::string> result;
    for (const std::filesystem::path& file : files)
    {
        const auto added = addFile(file);
        if (!added && result)
            result = tl::unexpected(added.error());
    }
    return result;
}

const RibbonItemInfo* RibbonSchemaHolder::find(std::string_view name)
{
    const auto found = schema().items.find(name);
    return found != schema().items.end() && found->second.item ? &found->second : nullptr;
}

void RibbonSchemaHolder::reset()
{
    schema() = {};
    markChanged();
}

void RibbonSchemaHolder::markChanged()
{
    ++Holder::instance().revision;
}

std::uint64_t RibbonSchemaHolder::revision()
{
    return Holder::instance().revision;
}

} // namespace VX
