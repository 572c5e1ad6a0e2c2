#pragma once

#include <boost/signals2/connection.hpp>

#include <memory>

namespace VX
{

class AllowTelemetrySetting;
class RibbonMenu;
class Viewer;

/// Reports to `SessionLogs` what the user does in the menu, the scene and the dialogs, sends what was gathered once a
/// minute also while nothing is drawn, and offers the switch for all that in the settings.
/// @threads the UI thread
class MenuSessionLogs
{
public:
    /// @param menu  its callbacks stay set as long as it lives
    MenuSessionLogs(RibbonMenu& menu, Viewer& viewer);

    /// Takes the switch out of the settings.
    ~MenuSessionLogs();

    MenuSessionLogs(const MenuSessionLogs&) = delete;
    MenuSessionLogs& operator=(const MenuSessionLogs&) = delete;

private:
    boost::signals2::scoped_connection history_;
    boost::signals2::scoped_connection theme_;
    boost::signals2::scoped_connection save_;
    std::shared_ptr<AllowTelemetrySetting> setting_;
    std::shared_ptr<void> flushTimer_;
};

} // namespace VX
