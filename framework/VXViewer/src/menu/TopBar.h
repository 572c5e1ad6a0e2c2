#pragma once

#include <string>

namespace VX
{

class ImGuiMenu;
class Viewer;

/// The bar at the top: files at the left, views behind them.
/// @threads the UI thread
class TopBar
{
public:
    explicit TopBar(Viewer& viewer)
        : viewer_(viewer)
    {
    }

    /// Draws into the current window.
    void draw(ImGuiMenu& menu);

private:
    void drawViews_();
    void drawViewButtons_();
    void drawViewChoice_(); ///< where the buttons do not fit
    void drawProjections_();

    Viewer& viewer_;
};

} // namespace VX
