#pragma once

#include "RibbonLayout.h"

#include <VXViewer/Window.h>

#include <string>

namespace VX
{

class Toolbar;

/// The window in which the user chooses the items of the toolbar.
/// @threads the UI thread, within a frame but for `open`
class ToolbarWindow
{
public:
    void open() { open_ = true; }

    [[nodiscard]] bool isOpen() const { return open_; }

    /// Draws the window, if it is open: at first in the middle of `area`, and always inside the program's window.
    void draw(Toolbar& toolbar, const PixelRect& area, const RibbonLayout& layout);

private:
    static void drawChosen_(Toolbar& toolbar, const RibbonLayout& layout);
    void drawOffered_(Toolbar& toolbar, const RibbonLayout& layout);

    std::string filter_;
    bool open_ = false;
};

} // namespace VX
