#include "ScreenshotItem.h"

#include "dialog/ImageClipboard.h"
#include "menu/Translate.h"

#include <VXMesh/StringConvert.h>
#include <VXViewer/FileDialog.h>
#include <VXViewer/FileDialogSignals.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/ImageFile.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <imgui.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace VX
{

namespace
{

constexpr float panelWidth = 240;
constexpr float fieldWidth = 120;
constexpr int smallestSide = 16;
/// What all graphics can draw that the program runs on.
constexpr int largestSide = 8192;

void report(const std::string& error)
{
    if (const auto& menu = getViewerInstance().getMenuPlugin())
        menu->showModalMessage(error, NotificationType::Error);
}

void write(const std::filesystem::path& path, Image image)
{
    ProgressBar::orderWriting(trf("Saving {}", utf8string(path.filename())),
                              [path, picture = std::make_shared<Image>(std::move(image))](
                                  const ProgressCallback& progress) -> ProgressBar::Finish
                              {
                                  // It is written in one go.
                                  if (!progress(1))
                                      return {};
                                  const auto written = writePng(path, *picture);
                                  if (!written)
                                      return [error = written.error()] { report(error); };
                                  return [path] { FileDialogSignals::instance().onSave({path}); };
                              });
}

bool sideField(const std::string& label, int& side)
{
    auto value = static_cast<float>(side);
    ImGui::SetNextItemWidth(UI::px(fieldWidth));
    if (!UI::drag(label, value, 1, smallestSide, largestSide, {.unit = "px", .decimals = 0}))
        return false;
    side = std::clamp(static_cast<int>(std::lround(value)), smallestSide, largestSide);
    return true;
}

} // namespace

ScreenshotItem::ScreenshotItem(Viewer& viewer)
    : PanelItem("Screenshot", viewer, {translatable("Screenshot"), panelWidth})
{
}

void ScreenshotItem::opened_()
{
    if (!size_.isEmpty())
        return;
    const PixelRect& area = viewer_().view().area();
    size_ = {std::clamp(area.width, smallestSide, largestSide), std::clamp(area.height, smallestSide, largestSide)};
}

void ScreenshotItem::drawContent_()
{
    drawSize_();
    UI::checkbox(tr("Transparent background"), transparent_);
    ImGui::Dummy({0, UI::px(4)});
    if (UI::primaryButton(tr("Save")))
        save_();
    UI::tooltip(tr("Saves the picture to a PNG file"));
    ImGui::SameLine();
    const std::string reason = whyNoImageClipboard(viewer_().window());
    const UI::ScopedDisabled disabled(!reason.empty());
    if (UI::button(tr("Copy")))
        copy_();
    UI::tooltip(reason.empty() ? tr("Puts the picture on the clipboard") : reason);
}

void ScreenshotItem::drawSize_()
{
    sideField(tr("Width"), size_.width);
    sideField(tr("Height"), size_.height);
    if (UI::button(tr("Size of the View")))
    {
        size_ = {};
        opened_();
    }
    UI::tooltip(tr("Takes the size that the scene has in the window"));
}

Image ScreenshotItem::capture_()
{
    SceneView& view = viewer_().view();
    view.options().transparentBackground = transparent_;
    Image image = view.capture(size_);
    view.options().transparentBackground = false;
    return image;
}

void ScreenshotItem::save_()
{
    FileDialogRequest request;
    request.mode = FileDialogRequest::Mode::SaveFile;
    request.title = tr("Save Picture");
    request.filters = {{"PNG", {".png"}}};
    request.fileName = utf8string(pathFromUtf8(viewer_().sceneName()).stem());
    viewer_().getMenuPlugin()->fileDialog().show(std::move(request), [image = capture_()](const auto& paths)
                                                 { write(paths.front(), image); });
}

void ScreenshotItem::copy_()
{
    ProgressBar::orderWriting(
        tr("Copying the picture"),
        [picture = std::make_shared<Image>(capture_())](const ProgressCallback&) -> ProgressBar::Finish
        {
            const auto copied = copyToClipboard(*picture);
            if (!copied)
                return [error = copied.error()] { report(error); };
            return {};
        });
}

} // namespace VX
