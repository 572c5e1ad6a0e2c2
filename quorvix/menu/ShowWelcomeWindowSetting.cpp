#include <quorvix/menu/ShowWelcomeWindowSetting.h>
#include <quorvix/setup/Translate.h>

#include <VXMesh/Config.h>
#include <VXViewer/UI.h>

namespace VX
{

ShowWelcomeWindowSetting::ShowWelcomeWindowSetting(bool& showOnStartup)
    : showOnStartup_(showOnStartup)
{
}

const char* ShowWelcomeWindowSetting::getName()
{
    return translatable("Show Welcome Window");
}

void ShowWelcomeWindowSetting::draw(float)
{
    if (UI::checkbox(Product::tr("Show Welcome Window"), showOnStartup_))
        Config::instance().setBool(configKey, showOnStartup_);
    UI::tooltip(Product::tr("Show welcome window when application starts."));
}

void ShowWelcomeWindowSetting::reset()
{
    showOnStartup_ = true;
}

} // namespace VX
