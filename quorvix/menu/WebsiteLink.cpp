#include <quorvix/menu/WebsiteLink.h>
#include <quorvix/setup/Deployment.h>

#include <VXViewer/OpenLink.h>

namespace VX
{

void openWebsitePage(const std::string& path)
{
    OpenLink(deployment().website + path);
}

void openDownloadPage()
{
    openWebsitePage("/download");
}

} // namespace VX
