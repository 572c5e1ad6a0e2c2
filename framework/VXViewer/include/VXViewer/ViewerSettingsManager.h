#pragma once

#include <VXViewer/Export.h>

#include <string>

namespace VX
{

class Viewer;

/// Keeps the settings of the viewer in the user's configuration, under "viewer": the window's place, the camera's
/// projection, numbers of other parts by key.
/// @threads the UI thread
class VXVIEWER_API ViewerSettingsManager
{
public:
    /// Brings the stored settings into `viewer`; what is not stored stays.
    void loadSettings(Viewer& viewer) const;

    /// Stores the settings that `viewer` has now.
    void saveSettings(const Viewer& viewer) const;

    /// The number stored under `key`; `defaultValue` where there is none.
    [[nodiscard]] int loadInt(const std::string& key, int defaultValue) const;

    void saveInt(const std::string& key, int value) const;

    /// Forgets all stored settings of the viewer.
    void reset() const;
};

} // namespace VX
