#pragma once

#include <VXViewer/Export.h>

#include <functional>
#include <string>

namespace VX
{

class Viewer;

/// What makes a program of the bare viewer, step by step; `launchViewer` calls the steps in the order in which they
/// stand here. A derived class replaces the steps that it does otherwise.
/// @threads the UI thread
class VXVIEWER_API ViewerSetup
{
public:
    ViewerSetup() = default;
    virtual ~ViewerSetup();
    ViewerSetup(const ViewerSetup&) = delete;
    ViewerSetup& operator=(const ViewerSetup&) = delete;

    /// Gives the viewer its menu.
    virtual void setupBasePlugins(Viewer* viewer) const;

    /// Adds the overlay of frame statistics, shown and hidden with F3.
    virtual void setupFrameStatistics(Viewer* viewer) const;

    /// Adds the overlay that lists what the mouse does, shown and hidden with F1.
    virtual void setupMouseControls(Viewer* viewer) const;

    /// Gives the viewer its settings manager, with what is stored, and the application its name.
    /// @param reset  forget what earlier runs stored
    virtual void setupSettingsManager(Viewer* viewer, const std::string& applicationName, bool reset) const;

    /// Configures the viewer for the program that it is part of; nothing here.
    virtual void setupConfiguration(Viewer* viewer) const;

    /// Loads the libraries in the folder "extensions" beside the executable, by name, and calls the function
    /// `vxExtensionEntry` of each.
    virtual void setupExtendedLibraries() const;

    /// Calls the function `vxExtensionExit` of each and unloads them, in reverse order.
    virtual void unloadExtendedLibraries() const;

    /// Starts the server for agents, on the port that "-mcpPort" among the viewer's arguments names, else on 7431 or
    /// the next one that is free. A port named that is taken closes the viewer with exit code 2 and a sentence on
    /// standard error. @return false: none was started
    [[nodiscard]] virtual bool setupMcp() const;

    /// Stops it. @return false: none was running
    [[nodiscard]] virtual bool shutdownMcp() const;

    /// Called once, when the viewer is set up and before its loop starts.
    std::function<void()> startCallback;

    /// Called once at the end, after the viewer has closed.
    std::function<void()> shutdownCallback;
};

} // namespace VX
