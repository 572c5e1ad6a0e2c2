#include "SettingRow.h"
#include "SettingsPage.h"
#include "menu/MouseControls.h"
#include "menu/Translate.h"

#include <VXViewer/UI.h>

namespace VX
{

namespace
{

class ControlSettings final : public SettingsPage
{
public:
    void draw(Viewer&) override
    {
        settingSection(tr("Mouse"));
        drawMouseControls(ImGui::GetContentRegionAvail().x);
    }

    void reset(Viewer&) override {}
};

} // namespace

std::unique_ptr<SettingsPage> makeControlSettings()
{
    return std::make_unique<ControlSettings>();
}

} // namespace VX
