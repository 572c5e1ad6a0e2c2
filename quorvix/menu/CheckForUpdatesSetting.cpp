#include <quorvix/menu/CheckForUpdatesSetting.h>
#include <quorvix/setup/Translate.h>

#include <VXMesh/Config.h>
#include <VXViewer/UI.h>

namespace VX
{

namespace
{

constexpr const char* configKey = "checkForUpdates";

} // namespace

bool CheckForUpdatesSetting::isOn()
{
    return Config::instance().getBool(configKey, true);
}

const char* CheckForUpdatesSetting::getName()
{
    return translatable("Behavior");
}

void CheckForUpdatesSetting::draw(float)
{
    bool on = isOn();
    if (UI::checkbox(Product::tr("Check for Updates"), on))
        Config::instance().setBool(configKey, on);
    UI::tooltip(Product::tr("Ask for the latest version once each time the application starts. Nothing is sent when "
                            "this is off."));
}

void CheckForUpdatesSetting::reset()
{
    Config::instance().setBool(configKey, true);
}

} // namespace VX
