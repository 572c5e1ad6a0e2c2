#pragma once

#include <VXViewer/Export.h>

#include <string>

namespace VX
{

class SceneView;

/// A bar of a round length.
struct ScaleBar
{
    double length = 0; ///< in scene units, which are millimetres: 1, 2 or 5 times a power of ten
    double pixels = 0;
    std::string text; ///< "20 mm", "5 m", "50 µm"
};

/// The longest bar that is not longer than `mostPixels`.
/// @param pixelSize  of a pixel in scene units, more than 0
[[nodiscard]] VXVIEWER_API ScaleBar scaleBar(double pixelSize, double mostPixels);

/// Draws a bar into the lower left corner of the scene, under all windows, where the view's options want it. In a
/// perspective view it holds for the depth of what is in the middle of the view's attention, the camera's target.
/// @threads the UI thread, within a frame
void drawScaleIndicator(const SceneView& view);

} // namespace VX
