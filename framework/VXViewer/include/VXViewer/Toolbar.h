#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/Window.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

class RibbonButtons;
struct RibbonLayout;

/// The strip of favourite items over the scene. The user chooses them in a small window; the choice is kept in the
/// user's configuration under "toolbar": {"items": [names], "version": number}.
/// @threads the UI thread
class VXVIEWER_API Toolbar
{
public:
    /// By version: edits a list that was saved with a lower version.
    using Migrations = std::map<int, std::function<void(std::vector<std::string>&)>>;

    Toolbar();
    ~Toolbar();

    Toolbar(const Toolbar&) = delete;
    Toolbar& operator=(const Toolbar&) = delete;

    /// Those with a version above that of the saved list edit it, in ascending order, when it is read.
    void setItemsListMigrations(const Migrations& migrations);

    /// The names of the chosen items, also of those that are not there at present.
    [[nodiscard]] const std::vector<std::string>& items() const;

    /// Chooses `names` and saves the choice.
    void setItems(std::vector<std::string> names);

    /// The choice is the program's own again, and nothing is saved of it.
    void resetItems();

    /// The program's own choice, and the version of its list.
    void setDefaults(std::vector<std::string> names, int version);

    /// Reads the choice from the configuration again.
    void reload();

    /// Shows the window that changes the choice.
    void openCustomize();

    /// Draws the strip into the top of `area` where it has room, and the window where it is open.
    void draw(const PixelRect& area, const RibbonLayout& layout, RibbonButtons& buttons);

    /// How far the strip reaches into its area, in pixels, also while a window lies over it.
    [[nodiscard]] static int depth();

private:
    struct State;

    void drawStrip_(const PixelRect& area, const RibbonLayout& layout, RibbonButtons& buttons);
    void load_() const;
    void save_();
    [[nodiscard]] int version_() const;

    std::unique_ptr<State> state_;
};

} // namespace VX
