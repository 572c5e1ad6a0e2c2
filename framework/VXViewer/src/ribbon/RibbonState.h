#pragma once

#include "ActiveItemList.h"
#include "RibbonButtons.h"
#include "RibbonLayout.h"
#include "RibbonTabs.h"

#include <VXViewer/RibbonConfig.h>
#include <VXViewer/RibbonFontManager.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonNotifier.h>
#include <VXViewer/RibbonSearch.h>
#include <VXViewer/Toolbar.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace VX
{

/// What a ribbon menu holds.
struct RibbonMenu::RibbonState
{
    RibbonConfig config;
    Toolbar toolbar;
    RibbonFontManager fonts;
    std::function<void()> searchFocused;
    std::function<void()> searchActivated;
    std::function<void()> sceneContext;

    /// From `init` to `shutdown`.
    struct Session
    {
        RibbonLayout layout;
        RibbonTabs tabs;
        RibbonButtons buttons;
        ActiveItemList activeItems;
        std::optional<RibbonNotifier> notifier;
        std::optional<RibbonSearch> search;
    };

    std::optional<Session> session;

    /// What the layout was made of.
    std::uint64_t layoutRevision = 0;
    std::string layoutLanguage;

    bool ownsSchema = false; ///< the schema was filled by `init`
    bool collapsed = false;
    bool overlay = false; ///< the body is open over the scene
    bool overlayAppearing = false;
    bool altAlone = false; ///< Alt is down, and nothing else was pressed since
    bool firstSignInFrame = false;
};

/// What the command search can find.
[[nodiscard]] std::vector<RibbonSearchCommand> ribbonSearchCommands(const RibbonLayout& layout,
                                                                    const ShortcutManager* shortcuts);

} // namespace VX
