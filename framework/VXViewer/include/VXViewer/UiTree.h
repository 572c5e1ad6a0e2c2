#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Export.h>

#include <string>
#include <string_view>
#include <vector>

namespace VX
{

enum class UiKind
{
    Window,
    Button,
    Checkbox,
    TextInput,
    Combo,
    TreeRow,
    ListRow,
    Text,
    ProgressBar
};

/// A widget as it was drawn. Rectangles are framebuffer pixels from the upper left corner of the window.
struct UiItem
{
    UiKind kind = UiKind::Text;
    std::string window; ///< the name of the window it is in
    std::string label;  ///< what the user reads on it or beside it; a window's name
    std::string value;  ///< the text of an input or a combo; "on" or "off"; "57 %"; "selected"
    Vector2f min{0, 0};
    Vector2f max{0, 0};
    Vector2f visibleMin{0, 0}; ///< the part that is not clipped away; empty where min >= max
    Vector2f visibleMax{0, 0};
    bool enabled = true;
    bool hovered = false; ///< the mouse is over it and a press would reach it

    [[nodiscard]] bool isVisible() const { return (visibleMax - visibleMin).minCoeff() >= 1; }
};

/// What the interface showed in the last complete frame, in drawing order: tests press widgets by it.
/// @threads the UI thread
class VXVIEWER_API UiTree
{
public:
    static UiTree& instance();

    /// Of the last complete frame.
    [[nodiscard]] const std::vector<UiItem>& items() const { return shown_; }

    /// Those with this label, of one window or (an empty name) of all.
    [[nodiscard]] std::vector<UiItem> find(std::string_view label, std::string_view window = {}) const;

    /// True while a window of this name is drawn.
    [[nodiscard]] bool hasWindow(std::string_view name) const;

    void beginFrame() { drawn_.clear(); }

    void add(UiItem item) { drawn_.push_back(std::move(item)); }

    void endFrame() { shown_.swap(drawn_); }

    void clear();

private:
    UiTree() = default;

    std::vector<UiItem> drawn_;
    std::vector<UiItem> shown_;
};

} // namespace VX
