#pragma once

#include "PanelItem.h"

#include <VXMesh/Geometry.h>

namespace VX
{

/// The window that chooses the background of the scene: the theme's, one colour, or two from top to bottom. The choice
/// is kept in the settings. It is no part of the scene, and so no step of its history.
/// @threads the UI thread
class BackgroundItem : public PanelItem
{
public:
    /// Brings the stored choice into the view, which follows the theme by itself where there is none.
    explicit BackgroundItem(Viewer& viewer);

protected:
    void drawContent_() override;

private:
    enum class Kind
    {
        Theme = 0,
        OneColor = 1,
        Gradient = 2
    };

    void load_();
    void store_() const;
    void apply_() const;

    Kind kind_ = Kind::Theme;
    Color top_;
    Color bottom_;
};

} // namespace VX
