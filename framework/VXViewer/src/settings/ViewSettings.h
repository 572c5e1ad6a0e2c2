#pragma once

#include "SettingsPage.h"

namespace VX
{

class ViewerSettingsManager;

/// Brings what is stored of how the scene is drawn into `viewer`; what is not stored stays.
void loadViewSettings(const ViewerSettingsManager& manager, Viewer& viewer);

} // namespace VX
