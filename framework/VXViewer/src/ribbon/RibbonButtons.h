#pragma once

#include "RibbonFocus.h"
#include "RibbonLayout.h"

#include <imgui.h>

#include <memory>
#include <string>

namespace VX
{

class ShortcutManager;

enum class RibbonButtonForm
{
    Large, ///< the caption in two lines below the icon
    Small, ///< the caption beside the icon
    Icon,  ///< the icon alone
    Row    ///< of a list: icon, caption, shortcut at the right
};

/// Draws items as buttons and takes their presses.
/// @threads the UI thread, within a frame but for `takePressed`
class RibbonButtons
{
public:
    /// Of everything but large buttons, in units.
    static constexpr float height = 28;
    static constexpr float largeHeight = 56;

    /// Shows the keys of `shortcuts` from now on, which may be null.
    void setShortcuts(const ShortcutManager* shortcuts) { shortcuts_ = shortcuts; }

    /// The width that `button` needs, in pixels.
    [[nodiscard]] float width(const RibbonButton& button, RibbonButtonForm form) const;

    /// Draws `button` at the cursor, an item of `width` pixels.
    void draw(const RibbonButton& button, RibbonButtonForm form, float width);

    /// Draws a button that looks like those of items. @param active  drawn as pressed in
    /// @return true when it was pressed
    bool drawPlain(const char* id, const RibbonButton& look, RibbonButtonForm form, float width, bool active = false);

    /// The item that was pressed since the last call; null: none was. It is run once the windows are drawn, as it may
    /// change all that is shown.
    [[nodiscard]] std::shared_ptr<RibbonMenuItem> takePressed();

    /// True until that call.
    [[nodiscard]] bool hasPressed() const { return pressed_ != nullptr; }

    [[nodiscard]] RibbonFocus& focus() { return focus_; }

private:
    void drawDropDown_(const RibbonButton& button);
    void drawTooltip_(const RibbonButton& button, const std::string& reason) const;

    const ShortcutManager* shortcuts_ = nullptr;
    RibbonFocus focus_;
    std::shared_ptr<RibbonMenuItem> pressed_;
};

/// Places the next window, `width` pixels wide, below the item before, and within the program's window.
void placeBelowItem(float width);

} // namespace VX
