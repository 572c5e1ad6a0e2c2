#pragma once

#include "tests/support/TempConfig.h"

#include <VXViewer/OffscreenWindow.h>

#include <memory>

namespace VX
{
class ImGuiMenu;
class Viewer;
} // namespace VX

namespace VX::Test
{

/// The process's viewer with an off-screen window and settings of its own until the end of the scope. Without a menu
/// the scene fills the window.
class ViewerSession
{
public:
    static constexpr PixelSize usualSize{1000, 700};

    explicit ViewerSession(std::shared_ptr<ImGuiMenu> menu, PixelSize size = usualSize, float scale = 1);
    ~ViewerSession();

    ViewerSession(const ViewerSession&) = delete;
    ViewerSession& operator=(const ViewerSession&) = delete;

    [[nodiscard]] Viewer& viewer() const { return viewer_; }

    [[nodiscard]] OffscreenWindow& window() const;

private:
    TempConfig config_;
    Viewer& viewer_;
};

} // namespace VX::Test
