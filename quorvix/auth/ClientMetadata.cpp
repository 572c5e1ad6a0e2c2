#include <quorvix/auth/ClientMetadata.h>
#include <quorvix/converter/WebAnswer.h>
#include <quorvix/setup/Version.h>

#include <VXMesh/SystemInfo.h>

#include <string>

namespace VX
{

namespace
{

void copyText(const Json::Value& source, const char* sourceName, Json::Value& metadata, const char* name)
{
    if (const auto text = WebAnswer::text(source, sourceName))
        metadata[name] = *text;
}

void addProcessor(const Json::Value& processor, Json::Value& metadata)
{
    std::string text = WebAnswer::text(processor, "CPU").value_or("");
    if (text.empty())
        return;
    if (const Json::Value& threads = WebAnswer::member(processor, "Concurrent threads"); threads.isUInt())
        text += " / " + std::to_string(threads.asUInt());
    metadata["cpu"] = text;
}

void addMonitors(const Json::Value& window, Json::Value& metadata)
{
    const Json::Value& monitor = WebAnswer::member(window, "BiggestMonitor");
    if (!monitor.isObject())
        return;
    const Json::Value& width = WebAnswer::member(monitor, "Width");
    const Json::Value& height = WebAnswer::member(monitor, "Height");
    const Json::Value& scaling = WebAnswer::member(monitor, "ScalingPercent");
    if (width.isInt() && height.isInt() && scaling.isInt())
    {
        metadata["width"] = std::to_string(width.asInt());
        metadata["height"] = std::to_string(height.asInt());
        metadata["scaling_percent"] = std::to_string(scaling.asInt());
    }
    if (const Json::Value& count = WebAnswer::member(window, "Number of monitors"); count.isInt())
        metadata["num_monitors"] = std::to_string(count.asInt());
}

} // namespace

Json::Value clientMetadata()
{
    Json::Value metadata(Json::objectValue);
    metadata["platform"] = getOSNoSpaces();
    metadata["version"] = versionNoSpaces(true);
    const Json::Value info = GetSystemInfoJson();
    copyText(info, "OS Version", metadata, "os");
    addProcessor(WebAnswer::member(info, "CPU Info"), metadata);
    const Json::Value& graphics = WebAnswer::member(info, "Graphics Info");
    copyText(graphics, "OpenGL Renderer", metadata, "gpu");
    copyText(graphics, "OpenGL Version", metadata, "gl_version");
    copyText(WebAnswer::member(info, "Memory Info"), "Physical memory total MB", metadata, "ram");
    addMonitors(WebAnswer::member(info, "Window Info"), metadata);
    return metadata;
}

} // namespace VX
