#pragma once

#include <VXMesh/Geometry.h>

#include <string>
#include <vector>

namespace VX
{

class Viewer;
struct RibbonItemInfo;

/// The pop-up with what can be done with the selected objects. It offers the ribbon items that are there and that no
/// deployment hides, and presses them through the menu.
/// @threads the UI thread
class SceneContextMenu
{
public:
    explicit SceneContextMenu(Viewer& viewer)
        : viewer_(viewer)
    {
    }

    /// Opens it with the next frame. @param position  of its corner, in pixels of the window
    void open(const Vector2f& position);

    /// Draws it if it is open, within the window. @return true in the first frame of it
    bool draw();

private:
    /// One line.
    struct Entry
    {
        const RibbonItemInfo* info = nullptr;
        bool beginsSection = false;
    };

    [[nodiscard]] std::vector<Entry> entries_() const;
    [[nodiscard]] std::string drawEntries_(const std::vector<Entry>& entries) const;
    [[nodiscard]] std::string shortcutOf_(const RibbonItemInfo& info) const;

    Viewer& viewer_;
    Vector2f position_{0, 0};
    bool openRequested_ = false;
};

} // namespace VX
