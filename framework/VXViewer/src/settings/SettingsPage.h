#pragma once

#include <memory>
#include <string>

namespace VX
{

class Viewer;

/// The settings of the viewer itself on one tab of the settings window. What is changed holds and is stored at once.
/// @threads the UI thread
class SettingsPage
{
public:
    SettingsPage() = default;
    virtual ~SettingsPage() = default;
    SettingsPage(const SettingsPage&) = delete;
    SettingsPage& operator=(const SettingsPage&) = delete;

    virtual void draw(Viewer& viewer) = 0;

    /// Brings all back to their defaults.
    virtual void reset(Viewer& viewer) = 0;
};

/// Language, colours, size of the interface, notifications.
std::unique_ptr<SettingsPage> makeApplicationSettings();

/// How the scene is drawn.
std::unique_ptr<SettingsPage> makeViewSettings();

/// What the mouse does, which is not to be changed but to be read.
std::unique_ptr<SettingsPage> makeControlSettings();

} // namespace VX
