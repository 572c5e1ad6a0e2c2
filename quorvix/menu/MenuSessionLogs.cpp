#include <quorvix/menu/AllowTelemetrySetting.h>
#include <quorvix/menu/MenuSessionLogs.h>
#include <quorvix/telemetry/SessionLogs.h>

#include <VXMesh/StringConvert.h>
#include <VXViewer/ColorTheme.h>
#include <VXViewer/FileDialogSignals.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/MainLoop.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/Viewer.h>

#include <fmt/format.h>

#include <filesystem>
#include <vector>

namespace VX
{

namespace
{

constexpr double secondsBetweenFlushes = 60;

void logHistory(const HistoryStore& store, HistoryChange change)
{
    if (change == HistoryChange::ActionAdded && !store.isScopeOpen())
        SessionLogs::logAction(fmt::format("History Added: {}", store.lastActionName()), false);
}

void logTheme()
{
    const bool isPreset = ColorTheme::getType() == ColorTheme::Type::Preset;
    const std::string name = isPreset ? ColorTheme::getPresetName(ColorTheme::getPreset()) : "Custom";
    SessionLogs::logAction("Color Theme Changed: " + name, false);
}

void logSave(const std::vector<std::filesystem::path>& files)
{
    SessionLogs::logAction("Save " + commonFilesName(files), false);
}

} // namespace

MenuSessionLogs::MenuSessionLogs(RibbonMenu& menu, Viewer& viewer)
    : history_(viewer.getGlobalHistoryStore()->changed.connect(logHistory))
    , theme_(ColorTheme::onChanged(logTheme))
    , save_(FileDialogSignals::instance().onSave.connect(logSave))
    , setting_(std::make_shared<AllowTelemetrySetting>())
    , flushTimer_(viewer.loop().callEvery(secondsBetweenFlushes, [] { SessionLogs::flushIfNeeded(false); }))
{
    menu.setSearchFocusedCallback([] { SessionLogs::logAction("Search Focused", false); });
    menu.setSearchActivatedCallback([] { SessionLogs::logAction("Search Tool Activated", false); });
    menu.setSceneContextCallback([] { SessionLogs::logAction("Scene Context Opened", false); });
    ViewerSettingsPlugin::instance()->addComboSettings(ViewerSettingsPlugin::TabType::Application, setting_);
}

MenuSessionLogs::~MenuSessionLogs()
{
    ViewerSettingsPlugin::instance()->removeSettings(setting_);
}

} // namespace VX
