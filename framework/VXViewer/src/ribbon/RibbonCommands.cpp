#include "RibbonState.h"

#include <VXViewer/Locale.h>
#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/ShortcutManager.h>

#include <set>
#include <utility>

namespace VX
{

namespace
{

/// Collects the commands of a layout, each with the first place where it is found.
class Collector
{
public:
    explicit Collector(const ShortcutManager* shortcuts)
        : shortcuts_(shortcuts)
    {
    }

    void add(const RibbonButton& button, const std::string& path)
    {
        for (const RibbonButton& each : button.dropDown)
            add(each, path + " > " + button.caption);
        if (!button.item || !names_.insert(button.name).second)
            return;
        // The layout may be older than the schema until the next frame.
        const RibbonItemInfo* info = RibbonSchemaHolder::find(button.name);
        if (!info)
            return;
        RibbonSearchCommand command{button.name,
                                    button.caption,
                                    button.tooltip,
                                    button.icon,
                                    path,
                                    shortcuts_ ? shortcuts_->keyOf(button.name) : std::string(),
                                    button.item->unavailableReason(),
                                    info->keywords};
        for (const std::string& keyword : info->keywords)
            command.keywords.push_back(Locale::translate(keyword));
        command.keywords.push_back(info->caption.empty() ? button.name : info->caption);
        commands.push_back(std::move(command));
    }

    std::vector<RibbonSearchCommand> commands;

private:
    const ShortcutManager* shortcuts_;
    std::set<std::string> names_;
};

} // namespace

std::vector<RibbonSearchCommand> ribbonSearchCommands(const RibbonLayout& layout, const ShortcutManager* shortcuts)
{
    Collector collector(shortcuts);
    for (const RibbonLayoutTab& tab : layout.tabs)
    {
        for (const RibbonLayoutGroup& group : tab.groups)
        {
            for (const RibbonButton& button : group.buttons)
                collector.add(button, tab.caption + " > " + group.caption);
        }
    }
    for (const RibbonButton& button : layout.quickAccess)
        collector.add(button, {});
    return std::move(collector.commands);
}

} // namespace VX
