#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/Window.h>

#include <functional>
#include <string>
#include <vector>

namespace VX
{

/// What the command search finds. All that is shown is in the user's language.
struct RibbonSearchCommand
{
    std::string name; ///< of the ribbon item
    std::string caption;
    std::string tooltip;
    std::string icon;
    std::string path;                  ///< "Mesh > Edit": tab and group
    std::string shortcut;              ///< "Ctrl+Z"; may be empty
    std::string unavailableReason;     ///< empty: can be run
    std::vector<std::string> keywords; ///< what it is found by too, as its English caption
};

/// The field in the header of the ribbon that finds items by their name, and the list of what it found.
/// @threads the UI thread
class VXVIEWER_API RibbonSearch
{
public:
    /// @param commands  asked whenever the text changes
    /// @param press  runs the item of a name
    RibbonSearch(std::function<std::vector<RibbonSearchCommand>()> commands,
                 std::function<void(const std::string&)> press);

    /// Called when the field gets the keyboard.
    void setFocusedCallback(std::function<void()> callback) { focused_ = std::move(callback); }

    /// Called when an item is run from the results, before it is.
    void setActivatedCallback(std::function<void()> callback) { activated_ = std::move(callback); }

    /// Puts the keyboard into the field with the next frame.
    void focus();

    void close();

    /// True from when the field has the keyboard until it is left.
    [[nodiscard]] bool isOpen() const { return open_; }

    /// Draws the field into the current window. @param width  in pixels
    void drawField(float width);

    /// Draws the results under the field, over all other windows, within `area`. Call it behind them. Where the field
    /// was not drawn in this frame, it comes with the results.
    void drawResults(const PixelRect& area);

private:
    struct Hit
    {
        RibbonSearchCommand command;
        int score = 0;
    };

    void drawInput_(float width);
    void find_();
    void handleKeys_();
    void drawRows_(float room);
    bool drawRow_(std::size_t index);
    void run_(std::size_t index);

    std::function<std::vector<RibbonSearchCommand>()> commands_;
    std::function<void(const std::string&)> press_;
    std::function<void()> focused_;
    std::function<void()> activated_;
    std::string text_;
    std::vector<Hit> hits_;
    std::size_t selected_ = 0;
    bool open_ = false;
    bool begun_ = false; ///< the field has had the keyboard since it was opened
    bool focusRequested_ = false;
    bool fieldDrawn_ = false;
    bool fieldActive_ = false;
    bool scrollToSelected_ = false;
    float left_ = 0; ///< of the field, in pixels
    float bottom_ = 0;
};

} // namespace VX
