#pragma once

#include <quorvix/menu/StartupModal.h>

namespace VX
{

class Viewer;

/// Lets a new user choose the language and the colours, once: the setting "QuickSetupVersion" tells that it was shown.
/// @threads the UI thread, within a frame
class QuickSetupWindow
{
public:
    /// Opens the window where it is due; the first call decides.
    void openIfDue(const Viewer& viewer);

    [[nodiscard]] bool isShown() const { return modal_.isOpen(); }

    /// Draws the window while it is open.
    void draw();

private:
    [[nodiscard]] static bool drawExitButton_();
    static void drawLanguage_();
    static void drawTheme_();
    static void drawFooter_();
    [[nodiscard]] bool isClosedByUser_();

    StartupModal modal_{"##quickSetupWindow"};
    bool pending_ = true;
    /// A list of choices was open in the last frame: Escape closes that alone.
    bool listOpen_ = false;
};

} // namespace VX
