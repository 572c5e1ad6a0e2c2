#pragma once

#include "PanelItem.h"

#include <VXViewer/Image.h>

namespace VX
{

/// The window that makes a picture of the scene, without the interface, and saves or copies it.
/// @threads the UI thread
class ScreenshotItem : public PanelItem
{
public:
    explicit ScreenshotItem(Viewer& viewer);

protected:
    void opened_() override;
    void drawContent_() override;

private:
    void drawSize_();
    [[nodiscard]] Image capture_();
    void save_();
    void copy_();

    PixelSize size_;
    bool transparent_ = false;
};

} // namespace VX
