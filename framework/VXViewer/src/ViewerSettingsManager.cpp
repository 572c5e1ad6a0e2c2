#include "settings/SettingsKeys.h"
#include "settings/ViewSettings.h"

#include <VXMesh/Config.h>
#include <VXViewer/ColorTheme.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/Locale.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>
#include <VXViewer/Window.h>

#include <algorithm>
#include <optional>

namespace VX
{

namespace
{

constexpr const char* configKey = "viewer";
constexpr const char* windowKey = "window";
constexpr const char* projectionKey = "orthographic";

Json::Value storedSettings()
{
    Json::Value settings = Config::instance().getJson(configKey, Json::objectValue);
    return settings.isObject() ? settings : Json::Value(Json::objectValue);
}

int intOf(const Json::Value& object, const char* key, int defaultValue)
{
    const Json::Value& value = object[key];
    return value.isInt() ? value.asInt() : defaultValue;
}

void loadWindow(const Json::Value& settings, Window& window)
{
    const Json::Value& place = settings[windowKey];
    if (!place.isObject() || !window.placement())
        return;
    // What a window system counts with.
    constexpr int largest = 32767;
    const auto stored = [&](const char* key) { return std::clamp(intOf(place, key, 0), -largest, largest); };
    const PixelRect rect{stored("x"), stored("y"), stored("width"), stored("height")};
    constexpr int smallest = 200;
    if (rect.width >= smallest && rect.height >= smallest)
        window.setPlacement(rect);
    const Json::Value& maximized = place["maximized"];
    if (maximized.isBool() && maximized.asBool())
        window.maximize();
}

void saveWindow(Json::Value& settings, const Window& window)
{
    const std::optional<PixelRect> rect = window.placement();
    if (!rect)
        return;
    Json::Value& place = settings[windowKey];
    if (!place.isObject())
        place = Json::objectValue;
    place["maximized"] = window.isMaximized();
    // The place that a maximised window goes back to is not known: the one from before stays.
    if (window.isMaximized())
        return;
    place["x"] = rect->x;
    place["y"] = rect->y;
    place["width"] = rect->width;
    place["height"] = rect->height;
}

void loadProjection(const Json::Value& stored, Viewer& viewer)
{
    const Json::Value& orthographic = stored[projectionKey];
    if (!orthographic.isBool())
        return;
    Camera camera = viewer.view().camera();
    camera.setProjection(orthographic.asBool() ? Projection::Orthographic : Projection::Perspective);
    viewer.view().controller().setCamera(camera);
}

} // namespace

ViewerSettingsManager::ViewerSettingsManager()
    : languageConnection_(Locale::onChanged(
          [this]
          {
              if (!loading_)
                  saveString(SettingsKey::language, Locale::getName());
          }))
{
}

void ViewerSettingsManager::loadSettings(Viewer& viewer)
{
    loading_ = true;
    const Json::Value settings = storedSettings();
    if (const std::string language = loadString(SettingsKey::language, {}); !language.empty())
        Locale::set(language);
    if (const int percent = loadInt(SettingsKey::uiScalePercent, 0); percent > 0)
        UI::setUserScale(static_cast<float>(percent) / 100);
    ColorTheme::restore();
    if (viewer.window())
        loadWindow(settings, *viewer.window());
    loadProjection(settings, viewer);
    loadViewSettings(*this, viewer);
    if (viewer.getMenuPlugin())
        viewer.getMenuPlugin()->settingsLoaded();
    loading_ = false;
}

void ViewerSettingsManager::saveSettings(const Viewer& viewer) const
{
    Json::Value settings = storedSettings();
    settings[projectionKey] = viewer.view().camera().projection() == Projection::Orthographic;
    if (viewer.window())
        saveWindow(settings, *viewer.window());
    Config::instance().setJson(configKey, settings);
}

int ViewerSettingsManager::loadInt(const std::string& key, int defaultValue) const
{
    const Json::Value settings = storedSettings();
    return intOf(settings, key.c_str(), defaultValue);
}

void ViewerSettingsManager::saveInt(const std::string& key, int value) const
{
    Json::Value settings = storedSettings();
    settings[key] = value;
    Config::instance().setJson(configKey, settings);
}

std::string ViewerSettingsManager::loadString(const std::string& key, const std::string& defaultValue) const
{
    const Json::Value settings = storedSettings();
    const Json::Value& value = settings[key];
    return value.isString() ? value.asString() : defaultValue;
}

void ViewerSettingsManager::saveString(const std::string& key, const std::string& value) const
{
    Json::Value settings = storedSettings();
    settings[key] = value;
    Config::instance().setJson(configKey, settings);
}

void ViewerSettingsManager::reset() const
{
    Config::instance().setJson(configKey, Json::objectValue);
}

} // namespace VX
