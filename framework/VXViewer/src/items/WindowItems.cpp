#include "ActionItem.h"
#include "BackgroundItem.h"
#include "ItemGroups.h"
#include "ScreenshotItem.h"
#include "menu/Translate.h"

#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/ShortcutListWindow.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/Window.h>

namespace VX
{

namespace
{

class ShortcutsItem : public RibbonMenuItem
{
public:
    explicit ShortcutsItem(Viewer& viewer)
        : RibbonMenuItem("Shortcuts")
        , viewer_(viewer)
    {
    }

    void press() override
    {
        if (window_.isOpen())
            window_.close();
        else
            window_.open();
        viewer_.incrementForceRedrawFrames(2);
    }

    [[nodiscard]] bool isActive() const override { return window_.isOpen(); }

    void drawPanel() override
    {
        const auto& menu = viewer_.getMenuPlugin();
        if (menu && menu->shortcutManager())
            window_.draw(*menu->shortcutManager());
    }

private:
    Viewer& viewer_;
    ShortcutListWindow window_;
};

bool canFillScreen(const Viewer& viewer)
{
    return viewer.window() && viewer.window()->canFillScreen();
}

} // namespace

RibbonItems makeWindowItems(Viewer& viewer)
{
    return {
        std::make_shared<BackgroundItem>(viewer),
        std::make_shared<ScreenshotItem>(viewer),
        std::make_shared<ActionItem>(
            "Full Screen",
            ItemActions{.press = [&viewer] { viewer.window()->setFullScreen(!viewer.window()->isFullScreen()); },
                        .unavailableReason =
                            [&viewer]
                        {
                            return canFillScreen(viewer) ? std::string()
                                                         : tr("This window is not on a screen that it could fill.");
                        },
                        .isActive = [&viewer] { return canFillScreen(viewer) && viewer.window()->isFullScreen(); }}),
        std::make_shared<ShortcutsItem>(viewer),
    };
}

} // namespace VX
