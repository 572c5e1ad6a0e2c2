#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/Window.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace VX
{

class Viewer;
class ViewerSetup;

/// How the viewer is started.
struct LaunchParams
{
    std::string applicationName = "Quorvix";
    PixelSize size{1280, 800}; ///< of the drawing area, in units of the design for a window on the screen
    float offscreenScale = 1;  ///< pixels in a unit of the design where there is no screen
    bool hidden = false;       ///< off-screen, without a window
    bool showInterface = true; ///< false: the scene alone fills the picture, and no settings are kept
    bool resetSettings = false;
    bool serveAgents = true;                  ///< calls the step of the set-up that starts their server
    std::vector<std::filesystem::path> files; ///< begin to load before there is a window

    /// Called with the reason where there is no display and the viewer goes on off-screen; may be empty.
    std::function<void(const std::string&)> noDisplay;

    /// Takes messages about files instead of the modal message; may be empty.
    FileOpening::MessageHandler fileMessage;

    /// Called once, when all files are open (or failed) and drawn; may be empty.
    std::function<void(Viewer&)> whenLoaded;
};

/// Runs the viewer: calls the steps of `setup` in their order, opens the window and runs the loop until it is closed.
/// Openers of file formats are set before (Viewer::setFileOpener).
/// @param arguments  of the command line, without the program's name
/// @return the viewer's exit code; 1, with the reason in the log, where there is no graphics at all
/// @threads the UI thread
[[nodiscard]] VXVIEWER_API int launchViewer(std::vector<std::string> arguments, const LaunchParams& params,
                                            const ViewerSetup& setup);

} // namespace VX
