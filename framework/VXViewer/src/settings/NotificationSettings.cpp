#include "NotificationSettings.h"

#include "SettingRow.h"
#include "SettingsKeys.h"
#include "menu/Translate.h"

#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonNotification.h>
#include <VXViewer/RibbonNotifier.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>

#include <array>

namespace VX
{

namespace
{

struct Kind
{
    NotificationTag tag;
    const char* name;
};

constexpr std::array kinds{Kind{NotificationTag::General, translatable("What Just Happened")},
                           Kind{NotificationTag::Result, translatable("Results of Tools")},
                           Kind{NotificationTag::Service, translatable("Online Services")},
                           Kind{NotificationTag::Advice, translatable("Advice")}};

RibbonNotifier* notifierOf(const Viewer& viewer)
{
    const auto* menu = dynamic_cast<const RibbonMenu*>(viewer.getMenuPlugin().get());
    return menu ? menu->notifier() : nullptr;
}

void setTags(const Viewer& viewer, RibbonNotifier& notifier, unsigned tags)
{
    notifier.setShownTags(tags);
    if (viewer.settingsManager())
        viewer.settingsManager()->saveInt(SettingsKey::notificationTags, static_cast<int>(tags));
}

} // namespace

void loadNotificationSettings(const Viewer& viewer, RibbonNotifier& notifier)
{
    const auto all = static_cast<int>(allNotificationTags);
    if (viewer.settingsManager())
        notifier.setShownTags(
            static_cast<unsigned>(viewer.settingsManager()->loadInt(SettingsKey::notificationTags, all) & all));
}

void drawNotificationSettings(const Viewer& viewer)
{
    RibbonNotifier* notifier = notifierOf(viewer);
    if (!notifier)
        return;
    settingSection(tr("Notifications on the Screen"));
    for (const Kind& kind : kinds)
    {
        const auto bit = static_cast<unsigned>(kind.tag);
        const unsigned tags = notifier->shownTags();
        bool shown = (tags & bit) != 0;
        if (settingSwitch(tr(kind.name), tr("The history keeps those that are not shown"), true, shown))
            setTags(viewer, *notifier, shown ? tags | bit : tags & ~bit);
    }
}

void resetNotificationSettings(const Viewer& viewer)
{
    if (RibbonNotifier* notifier = notifierOf(viewer))
        setTags(viewer, *notifier, allNotificationTags);
}

} // namespace VX
