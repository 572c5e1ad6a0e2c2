#include <VXMesh/Config.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/ViewerSettingsManager.h>
#include <VXViewer/Window.h>

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

void loadWindow(const Json::Value& stored, Window& window)
{
    const Json::Value& place = stored[windowKey];
    if (!place.isObject() || !window.placement())
        return;
    const PixelRect rect{intOf(place, "x", 0), intOf(place, "y", 0), intOf(place, "width", 0),
                         intOf(place, "height", 0)};
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

} // namespace

void ViewerSettingsManager::loadSettings(Viewer& viewer) const
{
    const Json::Value settings = storedSettings();
    if (viewer.window())
        loadWindow(settings, *viewer.window());
    const Json::Value& orthographic = settings[projectionKey];
    if (orthographic.isBool())
    {
        Camera camera = viewer.view().camera();
        camera.setProjection(orthographic.asBool() ? Projection::Orthographic : Projection::Perspective);
        viewer.view().controller().setCamera(camera);
    }
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

void ViewerSettingsManager::reset() const
{
    Config::instance().setJson(configKey, Json::objectValue);
}

} // namespace VX
