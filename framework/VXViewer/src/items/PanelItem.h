#pragma once

#include <VXViewer/RibbonMenuItem.h>

namespace VX
{

class Viewer;

/// An item that shows a small window beside the scene while it is active.
/// @threads the UI thread
class PanelItem : public RibbonMenuItem
{
public:
    struct Look
    {
        const char* title; ///< in English
        float width;       ///< in units of the design
    };

    PanelItem(std::string name, Viewer& viewer, Look look);

    /// Opens or closes the window.
    void press() final;

    [[nodiscard]] bool isActive() const final { return open_; }

    void deactivate() final;
    void drawPanel() final;

protected:
    virtual void drawContent_() = 0;

    virtual void opened_() {}

    virtual void closed_() {}

    void close_();

    [[nodiscard]] Viewer& viewer_() const { return owner_; }

private:
    Viewer& owner_;
    Look look_;
    bool open_ = false;
    bool appearing_ = false;
};

} // namespace VX
