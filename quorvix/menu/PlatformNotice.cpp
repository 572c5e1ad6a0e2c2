#include <quorvix/menu/PlatformNotice.h>
#include <quorvix/menu/WebsiteLink.h>
#include <quorvix/setup/Translate.h>

#include <VXMesh/StringConvert.h>
#include <VXMesh/SystemInfo.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonNotification.h>

#include <spdlog/spdlog.h>

#include <string>

namespace VX
{

namespace
{

constexpr float lifeTimeSec = 10;

} // namespace

void showPlatformNotice(RibbonMenu& menu)
{
    const std::string platform = toLower(getOSNoSpaces());
    const std::string cpuName = toLower(GetCpuId());
    spdlog::debug("\nplatform: \"{}\"\n cpuName: \"{}\"", platform, cpuName);
    if (platform != "apple_x86_64" || !cpuName.starts_with("apple"))
        return;
    RibbonNotification notification;
    notification.onButtonClick = openDownloadPage;
    notification.buttonName = Product::tr("Download");
    notification.header = Product::tr("Architecture Inconsistence");
    notification.text = Product::tr("This version of Quorvix is for Intel x86 architecture CPUs. Please download the "
                                    "version of Quorvix for Apple Silicon for the best performance.");
    notification.type = NotificationType::Warning;
    notification.lifeTimeSec = lifeTimeSec;
    notification.tags = allNotificationTags;
    menu.pushNotification(notification);
}

} // namespace VX
