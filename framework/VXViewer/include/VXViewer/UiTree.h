#pragma once

#include <VXMesh/Geometry.h>
#include <VXViewer/Export.h>

#include <cstddef>
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
    ProgressBar,
    IconButton,
    Icon,
    Radio,
    Slider,
    Drag,
    CollapsingHeader,
    Tab,
    Table,
    TableRow
};

/// A widget as it was drawn. Rectangles are framebuffer pixels from the upper left corner of the window.
struct UiItem
{
    UiKind kind = UiKind::Text;
    std::string window; ///< the name of the window it is in
    std::string label;  ///< what the user reads on it or beside it; a window's name
    std::string value;  ///< the text of an input, a combo or a number; "on" or "off"; "57 %"; "selected"; "open";
                        ///< the cells of a row of a table, a tab between them; an icon's name
    Vector2f min{0, 0};
    Vector2f max{0, 0};
    Vector2f visibleMin{0, 0}; ///< the part that is not clipped away; empty where min >= max
    Vector2f visibleMax{0, 0};
    bool enabled = true;
    bool focused = false; ///< the ring of the keyboard is around it
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

    /// How many widgets of the frame that is drawn are there already.
    [[nodiscard]] std::size_t drawnCount() const { return drawn_.size(); }

    /// Widget number `index` of that frame; null where there is none yet.
    [[nodiscard]] const UiItem* drawnAt(std::size_t index) const
    {
        return index < drawn_.size() ? &drawn_[index] : nullptr;
    }

    /// Names widget number `index` of the frame that is drawn, where what it is stands beside it; one that has a label
    /// of its own keeps it.
    void nameDrawn(std::size_t index, const std::string& label);

    void endFrame() { shown_.swap(drawn_); }

    void clear();

private:
    UiTree() = default;

    std::vector<UiItem> drawn_;
    std::vector<UiItem> shown_;
};

} // namespace VX
