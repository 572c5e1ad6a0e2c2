#pragma once

#include <VXViewer/Export.h>

#include <boost/signals2/connection.hpp>

#include <string>

namespace VX
{

class Viewer;

/// Keeps the settings of the viewer in the user's configuration, under "viewer": the language, the size of the
/// interface, how the scene is drawn, the window's place, numbers and texts of other parts by key. A change of the
/// language is stored at once, whoever makes it; the colour theme keeps itself (ColorTheme.h).
/// @threads the UI thread
class VXVIEWER_API ViewerSettingsManager
{
public:
    ViewerSettingsManager();

    /// Brings the stored settings into `viewer` and the interface; what is not stored stays.
    void loadSettings(Viewer& viewer);

    /// Stores the settings that `viewer` has now.
    void saveSettings(const Viewer& viewer) const;

    /// The number stored under `key`; `defaultValue` where there is none.
    [[nodiscard]] int loadInt(const std::string& key, int defaultValue) const;

    void saveInt(const std::string& key, int value) const;

    /// The text stored under `key`; `defaultValue` where there is none.
    [[nodiscard]] std::string loadString(const std::string& key, const std::string& defaultValue) const;

    void saveString(const std::string& key, const std::string& value) const;

    /// Forgets all stored settings of the viewer.
    void reset() const;

private:
    bool loading_ = false;
    boost::signals2::scoped_connection languageConnection_;
};

} // namespace VX
