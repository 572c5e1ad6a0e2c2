#pragma once

#include <VXViewer/Export.h>

#include <string>

namespace VX
{

class ShortcutManager;

/// The window that lists the keys of the interface by category, with a field that filters them.
/// @threads the UI thread
class VXVIEWER_API ShortcutListWindow
{
public:
    /// Shows the window with the next frame.
    void open();

    void close();

    [[nodiscard]] bool isOpen() const { return open_; }

    /// Draws the window if it is open; it waits while another modal window is.
    void draw(const ShortcutManager& shortcuts);

private:
    void drawList_(const ShortcutManager& shortcuts) const;

    std::string filter_;
    bool open_ = false;
    bool appearing_ = false;
};

} // namespace VX
