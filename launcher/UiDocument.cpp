#include "launcher/UiDocument.h"

#include "launcher/BatchOutput.h"
#include <quorvix/setup/QuorvixConfig.h>

#include <VXMesh/FileError.h>
#include <VXMesh/Json.h>
#include <VXMesh/UserFolders.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/Viewer.h>

#include <fmt/format.h>

#include <array>
#include <cstdio>
#include <system_error>
#include <utility>

namespace VX
{

namespace
{

std::optional<std::filesystem::path> chooseFile(const UiDocumentSources& sources)
{
    if (sources.argument)
        return sources.argument;
    for (const std::filesystem::path& file : std::array{sources.user, sources.system})
    {
        std::error_code error;
        if (std::filesystem::exists(std::filesystem::symlink_status(file, error)))
            return file;
    }
    return std::nullopt;
}

/// @param isFailure  whether the program is to end with 1 where nobody looks at a window
void report(const std::string& text, bool isFailure)
{
    Viewer& viewer = getViewerInstance();
    if (viewer.glfwWindow() && viewer.getMenuPlugin())
    {
        viewer.getMenuPlugin()->showModalMessage(text, isFailure ? NotificationType::Error : NotificationType::Warning);
        return;
    }
    fmt::print(stderr, "{}\n", text);
    if (isFailure)
        noteFailure(viewer);
}

} // namespace

UiDocumentSources uiDocumentSources(std::optional<std::filesystem::path> argument)
{
    return {std::move(argument), getUserConfigDir() / "ui.json", "/etc/quorvix/ui.json"};
}

tl::expected<std::optional<Json::Value>, std::string> readUiDocument(const UiDocumentSources& sources)
{
    const auto file = chooseFile(sources);
    if (!file)
        return std::nullopt;
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(*file, error);
    if (!error && size > largestUiDocument)
        return tl::unexpected(fileErrorText("use", *file, "it is larger than 1 MiB."));
    auto document = deserializeJsonValue(*file);
    if (!document)
        return tl::unexpected(std::move(document.error()));
    if (!document->isObject())
        return tl::unexpected(fileErrorText("use", *file, "a document of the interface is a JSON object."));
    return std::move(*document);
}

void applyUiDocumentWhenReady(UiDocumentSources sources)
{
    CommandLoop::appendCommand(
        [sources = std::move(sources)]
        {
            const auto document = readUiDocument(sources);
            if (!document)
                report(document.error(), sources.argument.has_value());
            else if (*document)
                applyQuorvixConfig(createQuorvixConfigFromJson(**document));
        },
        StartPosition::MenuReady);
}

} // namespace VX
