#pragma once

namespace VX
{

/// The switches of the application's menu.
struct QuorvixMenuUIConfig
{
    bool drawWelcomeWindow = true;     ///< the welcome window is drawn
    bool allowBaseShortcuts = true;    ///< the basic shortcuts exist
    bool allowHistoryShortcuts = true; ///< those of undo and redo exist
    bool drawLogo = true;              ///< the product's logo stands in the header
    bool drawGetDesktop = true;        ///< kept for layouts that name it; changes nothing

    friend bool operator==(const QuorvixMenuUIConfig&, const QuorvixMenuUIConfig&) = default;
};

} // namespace VX
